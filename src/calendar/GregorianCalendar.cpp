#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "DayNumbers.h"
#include "Exactly.h"

#include <algorithm>
#include <climits>
#include <iterator>

namespace tarn {
namespace {
// In the order of the field numbers. The greatest minimum is the minimum.
constexpr int minima[] = {0, 1, 0, 1, 0, 1, 1, 1, -1, 0, 0, 0, 0, 0, 0, -43200000, 0};
constexpr int leastMaxima[] = {1, 292269054, 11, 52, 4, 28, 365, 7, 4, 1, 11, 23, 59, 59, 999, 43200000, 3600000};
constexpr int maxima[] = {1, 292278994, 11, 53, 6, 31, 366, 7, 6, 1, 11, 23, 59, 59, 999, 43200000, 3600000};

constexpr int unset = 0;
constexpr int computed = 1;
} // namespace

GregorianCalendar::GregorianCalendar() = default;
GregorianCalendar::GregorianCalendar(const TimeZone& zone) : Calendar(zone) {}

Cloneable* GregorianCalendar::Clone() const { return new GregorianCalendar(*this); }

void GregorianCalendar::set(unsigned field, int value) { store(field, value); }

inline void GregorianCalendar::store(unsigned field, int value)
{
    if (nextStamp_ == INT_MAX)
        renumberStamps();
    isTimeSet_ = false;
    fields_[field] = value;
    stamps_[field] = nextStamp_++;
    areFieldsSet_ = false;
}

// Two thousand million sets use the stamps up. The least numbers of the same order make room again.
[[gnu::noinline, gnu::cold]] void GregorianCalendar::renumberStamps()
{
    int old[FieldCount];
    std::copy(std::begin(stamps_), std::end(stamps_), old);
    for (int& stamp : stamps_)
        if (stamp > computed)
            stamp = 2 + static_cast<int>(std::count_if(std::begin(old), std::end(old), [&stamp](int other) {
                        return other > computed && other < stamp;
                    }));
    nextStamp_ = 2 + FieldCount;
}

template <int... fields, class... Values> inline void GregorianCalendar::setEach(Values... values)
{
    if (isExactly(*this))
        (store(fields, values), ...);
    else
        (set(fields, values), ...);
}

void GregorianCalendar::set(int year, int month, int date)
{
    setEach<FieldYear, FieldMonth, FieldDayOfMonth>(year, month, date);
}

void GregorianCalendar::set(int year, int month, int date, int hour, int minute)
{
    setEach<FieldYear, FieldMonth, FieldDayOfMonth, FieldHourOfDay, FieldMinute>(year, month, date, hour, minute);
}

void GregorianCalendar::set(int year, int month, int date, int hour, int minute, int second)
{
    setEach<FieldYear, FieldMonth, FieldDayOfMonth, FieldHourOfDay, FieldMinute, FieldSecond>(year, month, date, hour,
                                                                                              minute, second);
}

void GregorianCalendar::Clear()
{
    std::ranges::fill(fields_, 0);
    std::ranges::fill(stamps_, unset);
    isTimeSet_ = areFieldsSet_ = areAllFieldsSet_ = false;
}

void GregorianCalendar::Clear(int field)
{
    fields_[field] = 0;
    stamps_[field] = unset;
    isTimeSet_ = areFieldsSet_ = areAllFieldsSet_ = false;
}

int GregorianCalendar::getMinimum(int field) { return minima[field]; }
int GregorianCalendar::getMaximum(int field) { return maxima[field]; }
int GregorianCalendar::getGreatestMinimum(int field) { return minima[field]; }
int GregorianCalendar::getLeastMaximum(int field) { return leastMaxima[field]; }
int GregorianCalendar::getActualMinimum(int field) { return getMinimum(field); }

void GregorianCalendar::setGregorianChange(const Time& cutover)
{
    GregorianCalendarBase::setGregorianChange(cutover, zone_);
}

bool GregorianCalendar::InDaylightTime()
{
    if (!zone_.UseDaylightTime())
        return false;
    complete();
    return internalGet(FieldDstOffset) != 0;
}

int GregorianCalendar::getISOYear()
{
    complete();
    const int year = internalGet(FieldYear);
    const int week = internalGet(FieldWeekOfYear);
    if (internalGet(FieldMonth) != January)
        return week == 1 ? year + 1 : year;
    return week >= 52 ? year - 1 : year;
}

int GregorianCalendar::monthLength(int month, int year) const
{
    return daysInMonth[isLeapYear(year)][floorRemainder(month, 12)];
}

int GregorianCalendar::monthLength(int month) const { return monthLength(month, astronomicalYear()); }

int GregorianCalendar::yearLength() const { return yearLength(internalGet(FieldYear)); }

int GregorianCalendar::astronomicalYear() const
{
    const int year = internalGet(FieldYear);
    return internalGet(FieldEra) == AD ? year : wrappingSubtract(1, year);
}

std::int64_t GregorianCalendar::millisToJulianDay(std::int64_t millis)
{
    return floorQuotient(millis, millisPerDay) + epochJulianDay;
}

std::int64_t GregorianCalendar::JulianDayToMillis(std::int64_t julianDay)
{
    return wrappingMultiply(wrappingSubtract(julianDay, epochJulianDay), millisPerDay);
}

GregorianCalendar::DayOfWeek GregorianCalendar::julianDayToDayOfWeek(std::int64_t julianDay)
{
    const std::int64_t next = wrappingAdd(julianDay, 1);
    const int rest = next == static_cast<int>(next) ? static_cast<int>(next) % 7 : static_cast<int>(next % 7);
    return static_cast<DayOfWeek>(rest < 0 ? rest + 8 : rest + 1);
}

bool GregorianCalendar::boundsCheck(int value, int field)
{
    return getMinimum(field) <= value && value <= getMaximum(field);
}

bool GregorianCalendar::validateFields()
{
    for (int field = 0; field < FieldCount; ++field) {
        const bool dependsOnDate = field == FieldDayOfMonth || field == FieldDayOfYear;
        if (isSet(field) && !dependsOnDate && !boundsCheck(fields_[field], field))
            return false;
    }
    const int day = fields_[FieldDayOfMonth];
    if (isSet(FieldDayOfMonth) && (day < getMinimum(FieldDayOfMonth) || day > monthLength(fields_[FieldMonth])))
        return false;
    const int dayOfYear = fields_[FieldDayOfYear];
    if (isSet(FieldDayOfYear) && (dayOfYear < 1 || dayOfYear > yearLength()))
        return false;
    return !isSet(FieldDayOfWeekInMonth) || fields_[FieldDayOfWeekInMonth] != 0;
}

std::int64_t GregorianCalendar::getEpochDay()
{
    complete();
    const std::int64_t offset = (std::int64_t(internalGet(FieldZoneOffset)) + internalGet(FieldDstOffset)) / 1000;
    return floorDivide(time_ / 1000 + offset, std::int64_t(86400));
}
} // namespace tarn
