// Moving along the fields, and how far they go.

#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "DayNumbers.h"
#include "WorkingCopy.h"

#include <algorithm>

namespace tarn {
namespace {
constexpr std::int64_t halfDay = 12 * millisPerHour;

std::int64_t unitOf(unsigned field)
{
    switch (field) {
    case Calendar::FieldWeekOfYear:
    case Calendar::FieldWeekOfMonth:
    case Calendar::FieldDayOfWeekInMonth:
        return 7 * millisPerDay;
    case Calendar::FieldDayOfMonth:
    case Calendar::FieldDayOfYear:
    case Calendar::FieldDayOfWeek:
        return millisPerDay;
    case Calendar::FieldAmPm:
        return halfDay;
    case Calendar::FieldHour:
    case Calendar::FieldHourOfDay:
        return millisPerHour;
    case Calendar::FieldMinute:
        return 60000;
    case Calendar::FieldSecond:
        return 1000;
    default:
        return 1;
    }
}
} // namespace

void GregorianCalendar::add(unsigned field, int amount)
{
    if (amount == 0)
        return;
    complete();
    switch (field) {
    case FieldEra:
        set(FieldEra, static_cast<int>(std::clamp<std::int64_t>(std::int64_t(internalGet(FieldEra)) + amount, BC, AD)));
        break;
    case FieldYear:
        addYears(amount);
        break;
    case FieldMonth:
        addMonths(amount);
        break;
    default:
        addTime(amount * unitOf(field), unitOf(field) >= halfDay || field >= FieldZoneOffset);
    }
}

void GregorianCalendar::addYears(int amount)
{
    const int era = internalGet(FieldEra);
    const std::int64_t year = internalGet(FieldYear) + (era == AD ? std::int64_t(amount) : -std::int64_t(amount));
    if (year > 0) {
        set(FieldYear, static_cast<int>(year));
    } else {
        set(FieldYear, static_cast<int>(1 - year));
        set(FieldEra, era == AD ? BC : AD);
    }
    pinDayOfMonth();
}

void GregorianCalendar::addMonths(int amount)
{
    const std::int64_t months = std::int64_t(internalGet(FieldMonth)) + amount;
    const std::int64_t years = floorQuotient(months, 12);
    set(FieldYear, wrappingAdd(internalGet(FieldYear), static_cast<int>(years)));
    set(FieldMonth, static_cast<int>(months - 12 * years));
    pinDayOfMonth();
}

void GregorianCalendar::addTime(std::int64_t delta, bool keepClock)
{
    const int before = internalGet(FieldDstOffset);
    setTimeInMillis(wrappingAdd(time_, delta));
    if (keepClock && delta != 0)
        setTimeInMillis(wrappingAdd(time_, std::int64_t(before) - internalGet(FieldDstOffset)));
}

void GregorianCalendar::pinDayOfMonth()
{
    const int length = monthLength(internalGet(FieldMonth));
    if (internalGet(FieldDayOfMonth) > length)
        set(FieldDayOfMonth, length);
}

int GregorianCalendar::getActualMaximum(int field)
{
    switch (field) {
    case FieldDayOfMonth:
        complete();
        return monthLength(internalGet(FieldMonth));
    case FieldDayOfYear:
        complete();
        return yearLength();
    case FieldWeekOfYear:
    case FieldWeekOfMonth:
    case FieldDayOfWeekInMonth:
        complete();
        return BaseGetActualMaximum(field);
    case FieldYear:
        complete();
        return greatestYear();
    default:
        return getMaximum(field);
    }
}

int GregorianCalendar::BaseGetActualMaximum(int field)
{
    int value = getLeastMaximum(field);
    const int end = getMaximum(field);
    if (value == end)
        return value;

    const WorkingCopy<GregorianCalendar> copy(*this);
    if (field == FieldWeekOfYear || field == FieldWeekOfMonth)
        copy->set(FieldDayOfWeek, firstDayOfWeek_);
    int result = value;
    for (; value <= end; ++value) {
        copy->set(static_cast<unsigned>(field), value);
        if (copy->get(static_cast<unsigned>(field)) != value)
            break;
        result = value;
    }
    return result;
}

// The last year in which this date and time of day is an instant.
int GregorianCalendar::greatestYear()
{
    const WorkingCopy<GregorianCalendar> copy(*this);
    const int era = copy->internalGet(FieldEra);
    const std::int64_t time = copy->time_;
    int low = 292269054;
    int high = 292278995;
    while (low + 1 < high) {
        const int middle = (low + high) / 2;
        copy->set(FieldYear, middle);
        if (copy->get(FieldYear) == middle && copy->internalGet(FieldEra) == era) {
            low = middle;
        } else {
            copy->setTimeInMillis(time);
            high = middle;
        }
    }
    return low;
}
} // namespace tarn
