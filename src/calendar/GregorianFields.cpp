// From the instant to the fields.

#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "DayNumbers.h"

#include <algorithm>

namespace tarn {
namespace {
// The sum, or the epoch when it does not fit: instants within an offset of the ends of time read as 1970.
std::int64_t addOrEpoch(std::int64_t millis, int offset)
{
    std::int64_t sum = 0;
    return __builtin_add_overflow(millis, offset, &sum) ? 0 : sum;
}
} // namespace

void GregorianCalendar::computeFields()
{
    const int rawOffset = zone_.GetStandardOffset();
    const std::int64_t localMillis = addOrEpoch(time_, rawOffset);
    int millisInDay = 0;
    const std::int64_t day = splitDay(localMillis, millisInDay);
    const bool gregorian = localMillis >= normalizedGregorianCutover();
    storeFieldsOfDay(day, gregorian, false);

    const int dstOffset = zone_.GetOffset(static_cast<Era>(fields_[FieldEra]), fields_[FieldYear],
                                          static_cast<Month>(fields_[FieldMonth]), fields_[FieldDayOfMonth],
                                          static_cast<DayOfWeek>(fields_[FieldDayOfWeek]), millisInDay) -
                          rawOffset;
    millisInDay += dstOffset;
    // A daylight amount below zero is not carried into the day before.
    if (millisInDay >= millisPerDay) {
        millisInDay -= static_cast<int>(millisPerDay);
        timeToFields(addOrEpoch(localMillis, dstOffset), false);
    }
    storeTimeOfDay(millisInDay, rawOffset, dstOffset);
    std::ranges::fill(stamps_, 1);
}

void GregorianCalendar::timeToFields(std::int64_t localMillis, bool quick)
{
    storeFieldsOfDay(floorDivide(localMillis, millisPerDay), localMillis >= normalizedGregorianCutover(), quick);
}

void GregorianCalendar::storeFieldsOfDay(std::int64_t day, bool gregorian, bool quick)
{
    const YearDay date = yearDay(gregorian, day);
    const int month = monthOfDay(date.day, date.leap);
    const int dayOfMonth = date.day - daysBeforeMonth[date.leap][month] + 1;
    const int dayOfWeek = weekdayOf(day) + Sunday;

    internalSet(FieldEra, date.year < 1 ? BC : AD);
    internalSet(FieldYear, date.year < 1 ? 1 - date.year : date.year);
    internalSet(FieldMonth, month);
    internalSet(FieldDayOfMonth, dayOfMonth);
    internalSet(FieldDayOfWeek, dayOfWeek);
    internalSet(FieldDayOfYear, date.day + 1);
    if (!quick)
        storeWeekFields(date.year, date.day + 1, dayOfMonth, dayOfWeek);
}

void GregorianCalendar::storeWeekFields(int astronomical, int dayOfYear, int dayOfMonth, int dayOfWeek)
{
    const int relativeDay = wrappingSubtract(dayOfWeek + 7, firstDayOfWeek_) % 7;
    const int january1 = floorRemainder(wrappingSubtract(dayOfWeek + 1 - dayOfYear, firstDayOfWeek_), 7);
    int week = (january1 + dayOfYear - 1) / 7;
    if (7 - january1 >= minimalDaysInFirstWeek_) {
        ++week;
        // The last days of the year may belong to the first week of the next one.
        const int length = yearLength(internalGet(FieldYear));
        const int last = floorRemainder(length - dayOfYear + relativeDay, 7);
        if (dayOfYear > 359 && 6 - last >= minimalDaysInFirstWeek_ && dayOfYear - relativeDay + 7 > length)
            week = 1;
    } else if (week == 0) {
        // The last week of the year before. It has always been counted with the weekday a day early;
        // programs rely on the numbers that this gives.
        week = weekNumber(dayOfYear + yearLength(wrappingSubtract(astronomical, 1)), (dayOfWeek + 6) % 7);
    }
    internalSet(FieldWeekOfYear, week);
    internalSet(FieldWeekOfMonth, weekNumber(dayOfMonth, dayOfWeek));
    internalSet(FieldDayOfWeekInMonth, (dayOfMonth - 1) / 7 + 1);
}

void GregorianCalendar::storeTimeOfDay(int millisInDay, int rawOffset, int dstOffset)
{
    const int seconds = millisInDay / 1000;
    const int minutes = seconds / 60;
    const int hours = minutes / 60;
    internalSet(FieldMillisecond, millisInDay % 1000);
    internalSet(FieldSecond, seconds % 60);
    internalSet(FieldMinute, minutes % 60);
    internalSet(FieldHourOfDay, hours);
    internalSet(FieldAmPm, hours / 12);
    internalSet(FieldHour, hours % 12);
    internalSet(FieldZoneOffset, rawOffset);
    internalSet(FieldDstOffset, dstOffset);
}

int GregorianCalendar::weekNumber(int dayOfPeriod, int dayOfWeek) const
{
    const int first = floorRemainder(wrappingSubtract(dayOfWeek + 1 - dayOfPeriod, firstDayOfWeek_), 7);
    return (first + dayOfPeriod - 1) / 7 + (7 - first >= minimalDaysInFirstWeek_ ? 1 : 0);
}
} // namespace tarn
