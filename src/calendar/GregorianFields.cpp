// From the instant to the fields.

#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "Exactly.h"
#include "FieldValues.h"

#include <algorithm>

namespace tarn {
namespace {
// The place of a weekday in the week, from 0.
int placeInWeek(int dayOfWeek, int firstDayOfWeek)
{
    return floorRemainder(wrappingSubtract(dayOfWeek, firstDayOfWeek), 7);
}

// The same of a period's first day, when its day `day` has this place. Periods are two years at most.
int placeOfFirst(int day, int place)
{
    constexpr int weeks = 7 * 106;
    return static_cast<int>(static_cast<unsigned>(place + weeks + 1 - day) % 7);
}

int weekOf(int day, int place, int minimalDays)
{
    const int first = placeOfFirst(day, place);
    return static_cast<int>(static_cast<unsigned>(first + day - 1) / 7) + (7 - first >= minimalDays);
}
} // namespace

void GregorianCalendar::setTime(const Time& time)
{
    if (!isExactly(*this)) {
        setTimeInMillis(time);
        return;
    }
    time_ = time;
    isTimeSet_ = areFieldsSet_ = areAllFieldsSet_ = true;
    computeOwnFields();
}

void GregorianCalendar::computeFields()
{
    if (isExactly(*this))
        computeOwnFields();
    else
        computeFieldsOfDerived();
}

// For objects of no derived class: nobody sees in which order, and what nobody asks for is put off.
void GregorianCalendar::computeOwnFields()
{
    shortcuts_.value = stampsArePutOff | weeksArePutOff;
    readyFields_.value = fields_;
    const int offset = zone_.GetStandardOffset();
    const std::int64_t local = wrappingAdd(time_, offset); // Far when it does not fit.
    NearDay nearDay;
    if (zone_.UseDaylightTime() || local < normalizedGregorianCutover() || !splitNear(local, nearDay)) {
        computeFieldsInto(fields_);
        return;
    }
    setDate(fields_, nearDateOf(nearDay.day), nearWeekdayOf(nearDay.day) + Sunday);
    setTimeOfDay(fields_, nearDay.millisInDay);
    fields_[FieldZoneOffset] = offset;
    fields_[FieldDstOffset] = 0;
}

void GregorianCalendar::computeFieldsOfDerived()
{
    int values[FieldCount];
    computeFieldsInto(values);
    computeWeeks(values);
    storeFields(values, {FieldEra, FieldYear, FieldMonth, FieldDayOfMonth, FieldDayOfWeek, FieldDayOfYear,
                         FieldWeekOfYear, FieldWeekOfMonth, FieldDayOfWeekInMonth, FieldMillisecond, FieldSecond,
                         FieldMinute, FieldHourOfDay, FieldAmPm, FieldHour, FieldZoneOffset, FieldDstOffset});
    std::ranges::fill(stamps_, 1);
}

// All but the week fields.
void GregorianCalendar::computeFieldsInto(int* values) const
{
    const bool hasHistory = zone_.hasHistory();
    const TimeZone::Offsets offsets =
        hasHistory ? zone_.offsetsAt(time_) : TimeZone::Offsets{zone_.GetStandardOffset(), 0};
    const int rawOffset = offsets.standard;
    const std::int64_t localMillis = addOrEpoch(time_, rawOffset);
    int millisInDay = 0;
    const std::int64_t day = splitDay(localMillis, millisInDay);
    setDate(values, localMillis >= normalizedGregorianCutover(), day);
    int dstOffset = 0;
    if (zone_.UseDaylightTime()) {
        dstOffset = hasHistory ? offsets.daylight
                               : wrappingSubtract(offsetOfDay(static_cast<Era>(values[FieldEra]), values, millisInDay),
                                                  rawOffset);
        // A daylight amount below zero is not carried into the day before, one of days only into the next.
        const bool carries = std::int64_t(millisInDay) + dstOffset >= millisPerDay;
        millisInDay = wrappingAdd(millisInDay, dstOffset);
        if (carries) {
            millisInDay = wrappingSubtract(millisInDay, static_cast<int>(millisPerDay));
            const std::int64_t moved = addOrEpoch(localMillis, dstOffset);
            setDate(values, moved >= normalizedGregorianCutover(), floorDivide(moved, millisPerDay));
        }
    }
    setTimeOfDay(values, millisInDay);
    values[FieldZoneOffset] = rawOffset;
    values[FieldDstOffset] = dstOffset;
}

void GregorianCalendar::storeFields(const int* values, std::initializer_list<int> fields)
{
    for (const int field : fields)
        internalSet(field, values[field]);
}

// Only the date, as computing the instant needs it.
void GregorianCalendar::storeDate(const int* values)
{
    storeFields(values, {FieldEra, FieldYear, FieldMonth, FieldDayOfMonth, FieldDayOfWeek, FieldDayOfYear});
}

int GregorianCalendar::offsetOfDay(Era era, const int* values, int millisInDay) const
{
    return zone_.GetOffset(era, values[FieldYear], static_cast<Month>(values[FieldMonth]), values[FieldDayOfMonth],
                           static_cast<DayOfWeek>(values[FieldDayOfWeek]), millisInDay);
}

void GregorianCalendar::computeWeeks(int* values) const
{
    const int dayOfYear = values[FieldDayOfYear], dayOfWeek = values[FieldDayOfWeek];
    const int place = placeInWeek(dayOfWeek, firstDayOfWeek_);
    const bool startsWithWeek1 = 7 - placeOfFirst(dayOfYear, place) >= minimalDaysInFirstWeek_;
    int week = weekOf(dayOfYear, place, minimalDaysInFirstWeek_);
    if (dayOfYear > 359 && startsWithWeek1 && isInFirstWeekOfNextYear(values)) {
        week = 1;
    } else if (week == 0) {
        // The last week of the year before. It has always been counted with the weekday a day early;
        // programs rely on the numbers that this gives.
        const int year = values[FieldEra] == AD ? values[FieldYear] : 1 - values[FieldYear];
        week = weekNumber(dayOfYear + yearLength(year - 1), (dayOfWeek + 6) % 7);
    }
    values[FieldWeekOfYear] = week;
    values[FieldWeekOfMonth] = weekOf(values[FieldDayOfMonth], place, minimalDaysInFirstWeek_);
    values[FieldDayOfWeekInMonth] = (values[FieldDayOfMonth] - 1) / 7 + 1;
}

bool GregorianCalendar::isInFirstWeekOfNextYear(const int* values) const
{
    const int dayOfYear = values[FieldDayOfYear];
    const int length = yearLength(values[FieldYear]);
    const int place = wrappingSubtract(values[FieldDayOfWeek] + 7, firstDayOfWeek_) % 7;
    const int last = floorRemainder(length - dayOfYear + place, 7);
    return 6 - last >= minimalDaysInFirstWeek_ && dayOfYear - place + 7 > length;
}

int GregorianCalendar::weekNumber(int dayOfPeriod, int dayOfWeek) const
{
    return weekOf(dayOfPeriod, placeInWeek(dayOfWeek, firstDayOfWeek_), minimalDaysInFirstWeek_);
}
} // namespace tarn
