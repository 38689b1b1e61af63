#include <tarn/Calendar.h>

#include "WorkingCopy.h"

namespace tarn {
Calendar::Calendar() : zone_(TimeZone::current()) {}
Calendar::Calendar(const TimeZone& zone) : zone_(zone) {}

void Calendar::roll(unsigned field, int amount)
{
    for (; amount > 0; --amount)
        roll(field, true);
    for (; amount < 0; ++amount)
        roll(field, false);
}

int Calendar::getActualMinimum(int field)
{
    int value = getGreatestMinimum(field);
    const int end = getMinimum(field);
    if (value == end)
        return value;

    const WorkingCopy<Calendar> copy(*this);
    int result = value;
    for (; value >= end; --value) {
        copy->set(static_cast<unsigned>(field), value);
        if (copy->get(static_cast<unsigned>(field)) != value)
            break;
        result = value;
    }
    return result;
}

int Calendar::completed(unsigned field) const
{
    const_cast<Calendar*>(this)->complete();
    return internalGet(field);
}

void Calendar::setTimeInMillis(std::int64_t time)
{
    time_ = time;
    isTimeSet_ = true;
    areFieldsSet_ = false;
    computeFields();
    areFieldsSet_ = areAllFieldsSet_ = true;
}

void Calendar::updateTime()
{
    computeTime();
    if (lenient_ || !areAllFieldsSet_)
        areFieldsSet_ = false;
    isTimeSet_ = true;
}
} // namespace tarn
