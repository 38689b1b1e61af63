// From the fields to the instant.

#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "DayNumbers.h"

#include <algorithm>

namespace tarn {
namespace {
// No date in range has this day number; the comparison with it changes nothing.
constexpr std::int64_t neverReached = -106749550580;
} // namespace

void GregorianCalendar::computeTime()
{
    if (!lenient_)
        validateFields(); // The answer is ignored: calendars that are not lenient compute from any fields too.

    const Era era = isSet(FieldEra) && fields_[FieldEra] == BC ? BC : AD;
    int year = isSet(FieldYear) ? fields_[FieldYear] : 1970;
    if (era == BC)
        year = wrappingSubtract(1, year);

    const bool gregorian = isGregorian(year);
    std::int64_t julianDay = computeJulianDay(gregorian, year);
    std::int64_t millis = JulianDayToMillis(julianDay);
    if (gregorian != (millis >= normalizedGregorianCutover()) && julianDay != neverReached) {
        julianDay = computeJulianDay(!gregorian, year);
        millis = JulianDayToMillis(julianDay);
    }
    const std::int64_t timeOfDay = millisInDayOfFields();
    millis = wrappingAdd(millis, timeOfDay);

    int zoneOffset = fields_[FieldZoneOffset];
    int dstOffset = fields_[FieldDstOffset];
    if (stamps_[FieldZoneOffset] < 2) {
        zoneOffset = zone_.GetStandardOffset();
        dstOffset = wrappingSubtract(localOffset(era, julianDay, millis, timeOfDay), zoneOffset);
    }
    time_ = wrappingSubtract(wrappingSubtract(millis, zoneOffset), dstOffset);
}

int GregorianCalendar::localOffset(Era era, std::int64_t julianDay, std::int64_t millis, std::int64_t timeOfDay)
{
    int millisInDay = 0;
    const std::int64_t day = splitDay(millis, millisInDay);
    DayOfWeek dayOfWeek;
    if (!lenient_ && isSet(FieldMonth) && isSet(FieldDayOfMonth) && timeOfDay == millisInDay) {
        dayOfWeek = julianDayToDayOfWeek(julianDay);
    } else {
        storeFieldsOfDay(day, millis >= normalizedGregorianCutover(), true);
        dayOfWeek = static_cast<DayOfWeek>(fields_[FieldDayOfWeek]);
    }
    return zone_.GetOffset(era, fields_[FieldYear], static_cast<Month>(fields_[FieldMonth]), fields_[FieldDayOfMonth],
                           dayOfWeek, millisInDay);
}

std::int64_t GregorianCalendar::millisInDayOfFields() const
{
    std::int64_t hour = 0;
    const int hourOfDayStamp = stamps_[FieldHourOfDay];
    const int hourStamp = stamps_[FieldHour];
    if (std::max(hourOfDayStamp, hourStamp) != 0)
        hour = hourOfDayStamp >= hourStamp ? fields_[FieldHourOfDay]
                                           : fields_[FieldHour] + 12 * std::int64_t(fields_[FieldAmPm]);
    const auto valueOf = [this](int field) { return isSet(field) ? fields_[field] : 0; };
    return ((hour * 60 + valueOf(FieldMinute)) * 60 + valueOf(FieldSecond)) * 1000 + valueOf(FieldMillisecond);
}

// The later of two fields that only count together; 0 when one is missing.
int GregorianCalendar::aggregateStamp(int a, int b) { return a == 0 || b == 0 ? 0 : std::max(a, b); }

std::int64_t GregorianCalendar::computeJulianDay(bool gregorian, int year) const
{
    const int dayOfWeekStamp = stamps_[FieldDayOfWeek];
    const int dayOfMonth = stamps_[FieldDayOfMonth];
    const int monthStamp = stamps_[FieldMonth];
    const int weekOfMonth = aggregateStamp(stamps_[FieldWeekOfMonth], dayOfWeekStamp);
    const int weekdayInMonth = aggregateStamp(stamps_[FieldDayOfWeekInMonth], dayOfWeekStamp);
    const int dayOfYear = stamps_[FieldDayOfYear];
    const int weekOfYear = aggregateStamp(stamps_[FieldWeekOfYear], dayOfWeekStamp);
    const int best = std::max({dayOfMonth, monthStamp, weekOfMonth, weekdayInMonth, dayOfYear, weekOfYear});

    if (best == 0)
        return julianDayBeforeYear(gregorian, year) + 1;
    // Equal stamps were computed, or set with the same weekday: months go before the rest of the year.
    if (best == dayOfMonth || best == monthStamp || best == weekOfMonth || best == weekdayInMonth) {
        int month = monthStamp != 0 ? fields_[FieldMonth] : static_cast<int>(January);
        if (month < January || month > December)
            year = wrappingAdd(year, floorDivide(month, 12, month));
        const std::int64_t before =
            julianDayBeforeYear(gregorian, year) + daysBeforeMonth[isLeapIn(gregorian, year)][month];
        if (best == dayOfMonth || best == monthStamp)
            return before + (dayOfMonth != 0 ? fields_[FieldDayOfMonth] : 1);
        return before + (best == weekOfMonth ? dateOfWeek(before, FieldWeekOfMonth) : dateOfWeekday(before, year));
    }
    const std::int64_t before = julianDayBeforeYear(gregorian, year);
    return before + (best == dayOfYear ? fields_[FieldDayOfYear] : dateOfWeek(before, FieldWeekOfYear));
}

// The date, counted from the day after `before`, of FieldDayOfWeek in the week that this day lies in.
// `first` is the place of that day in its week.
std::int64_t GregorianCalendar::dateInFirstWeek(std::int64_t before, std::int64_t& first) const
{
    first = std::int64_t(julianDayToDayOfWeek(before + 1)) - firstDayOfWeek_;
    if (first < 0)
        first += 7;
    const std::int64_t place = isSet(FieldDayOfWeek) ? std::int64_t(fields_[FieldDayOfWeek]) - firstDayOfWeek_ : 0;
    return 1 - first + place;
}

std::int64_t GregorianCalendar::dateOfWeek(std::int64_t before, int weekField) const
{
    std::int64_t first = 0;
    std::int64_t date = dateInFirstWeek(before, first);
    if (7 - first < minimalDaysInFirstWeek_)
        date += 7;
    return date + 7 * (std::int64_t(fields_[weekField]) - 1);
}

std::int64_t GregorianCalendar::dateOfWeekday(std::int64_t before, int year) const
{
    std::int64_t first = 0;
    std::int64_t date = dateInFirstWeek(before, first);
    if (date < 1)
        date += 7;
    const std::int64_t ordinal = fields_[FieldDayOfWeekInMonth];
    if (ordinal >= 0)
        return date + 7 * (ordinal - 1);
    return date + 7 * ((monthLength(fields_[FieldMonth], year) - date) / 7 + ordinal + 1);
}
} // namespace tarn
