// From the fields to the instant.

#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "Exactly.h"
#include "FieldValues.h"

#include <algorithm>

namespace tarn {
namespace {
// No date in range has this day number; the comparison with it changes nothing.
constexpr std::int64_t neverReached = -106749550580;

constexpr int notPlain = -1;
} // namespace

std::int64_t GregorianCalendar::timeOfFields()
{
    if (isPutOff(dateAndTimeSet) && computeTimeOfDateAndTime()) {
        isTimeSet_ = true; // The fields are out of date since they were set.
        return time_;
    }
    updateTime();
    return time_;
}

void GregorianCalendar::computeTime()
{
    if (!isPutOff(dateAndTimeSet) || !computeTimeOfDateAndTime())
        computeTimeOfFields();
}

void GregorianCalendar::computeTimeOfFields()
{
    if (isPutOff(daysArePutOff))
        finish();
    if (!lenient_)
        validateFields(); // The answer is ignored: calendars that are not lenient compute from any fields too.

    const Era era = isSet(FieldEra) && fields_[FieldEra] == BC ? BC : AD;
    int year = isSet(FieldYear) ? fields_[FieldYear] : 1970;
    if (era == BC)
        year = wrappingSubtract(1, year);

    const bool gregorian = isGregorian(year);
    int plainDay = notPlain;
    std::int64_t julianDay = computeJulianDay(gregorian, year, plainDay);
    std::int64_t midnight = JulianDayToMillis(julianDay);
    if (gregorian != (midnight >= normalizedGregorianCutover()) && julianDay != neverReached) {
        julianDay = computeJulianDay(!gregorian, year, plainDay);
        midnight = JulianDayToMillis(julianDay);
        plainDay = notPlain;
    }

    const std::int64_t timeOfDay = millisInDayOfFields();
    int zoneOffset = fields_[FieldZoneOffset];
    int dstOffset = fields_[FieldDstOffset];
    if (stamps_[FieldZoneOffset] < 2) {
        zoneOffset = zone_.GetStandardOffset();
        dstOffset = wrappingSubtract(localOffset(era, year, plainDay, midnight, timeOfDay), zoneOffset);
    }
    time_ = wrappingSubtract(wrappingSubtract(wrappingAdd(midnight, timeOfDay), zoneOffset), dstOffset);
}

// The short way from year, month, day, hour, minute and second that were set last, when each is in its range, the
// year by the Gregorian rules and not BC, and the zone not set. The rest takes the long way.
bool GregorianCalendar::computeTimeOfDateAndTime()
{
    const int year = fields_[FieldYear], month = fields_[FieldMonth], day = fields_[FieldDayOfMonth];
    const int hour = fields_[FieldHourOfDay], minute = fields_[FieldMinute], second = fields_[FieldSecond];
    const int millisecond = stamps_[FieldMillisecond] != 0 ? fields_[FieldMillisecond] : 0;
    const auto isIn = [](int least, int value, int greatest) {
        return static_cast<unsigned>(value) - static_cast<unsigned>(least) <= static_cast<unsigned>(greatest - least);
    };
    const bool inRange = isIn(1, year, greatestNearYear) && isIn(January, month, December) && isIn(1, day, 31) &&
                         isIn(0, hour, 23) && isIn(0, minute, 59) && isIn(0, second, 59) && isIn(0, millisecond, 999);
    if (!inRange || (day > 28 && day > daysInMonth[isLeapIn(true, year)][month]) || !isGregorian(year) ||
        stamps_[FieldZoneOffset] > 1 || (stamps_[FieldEra] != 0 && fields_[FieldEra] == BC))
        return false;

    const int epochDay = nearDayOf(year, month, day);
    const std::int64_t midnight = epochDay * millisPerDay;
    if (midnight < normalizedGregorianCutover())
        return false;
    if (lenient_) {
        fields_[FieldEra] = AD;
        fields_[FieldDayOfWeek] = epochDay;
        shortcuts_.value |= daysArePutOff;
    }
    const int millisInDay = ((hour * 60 + minute) * 60 + second) * 1000 + millisecond;
    time_ = midnight + millisInDay - zone_.GetStandardOffset();
    if (zone_.UseDaylightTime())
        subtractDaylightTime(epochDay, millisInDay);
    return true;
}

void GregorianCalendar::subtractDaylightTime(int epochDay, int millisInDay)
{
    const int offset =
        zone_.GetOffset(AD, fields_[FieldYear], static_cast<Month>(fields_[FieldMonth]), fields_[FieldDayOfMonth],
                        static_cast<DayOfWeek>(weekdayOf(epochDay) + Sunday), millisInDay);
    time_ -= wrappingSubtract(offset, zone_.GetStandardOffset());
}

// The zone's offset at a local time. In a lenient calendar the fields of the date are rewritten from it.
int GregorianCalendar::localOffset(Era era, int year, int plainDay, std::int64_t midnight, std::int64_t timeOfDay)
{
    const std::int64_t millis = wrappingAdd(midnight, timeOfDay);
    int millisInDay = 0;
    const std::int64_t day = splitDay(millis, millisInDay);
    if (!lenient_ && isSet(FieldMonth) && isSet(FieldDayOfMonth) && timeOfDay == millisInDay)
        return zone_.GetOffset(era, fields_[FieldYear], static_cast<Month>(fields_[FieldMonth]),
                               fields_[FieldDayOfMonth], static_cast<DayOfWeek>(weekdayOf(day) + Sunday), millisInDay);

    int ofDerived[FieldCount];
    const bool exact = isExactly(*this);
    int* const values = exact ? fields_ : ofDerived;
    // What the fields name may be the date already. Beyond the ends of time the sum has another time of day.
    if (plainDay != notPlain && timeOfDay == millisInDay)
        setDate(values, {year, fields_[FieldMonth], fields_[FieldDayOfMonth], plainDay}, weekdayOf(day) + Sunday);
    else
        setDate(values, millis >= normalizedGregorianCutover(), day);
    if (!exact)
        storeDate(values);
    return zone_.UseDaylightTime() ? offsetOfDay(era, values, millisInDay) : zone_.GetStandardOffset();
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
    return hour * 3600000 + std::int64_t(valueOf(FieldMinute)) * 60000 + std::int64_t(valueOf(FieldSecond)) * 1000 +
           valueOf(FieldMillisecond);
}

// The later of two fields that only count together; 0 when one is missing.
int GregorianCalendar::aggregateStamp(int a, int b) { return a == 0 || b == 0 ? 0 : std::max(a, b); }

// `plainDay` becomes the day of the year, from 0, when the month and the day name it without any carry.
std::int64_t GregorianCalendar::computeJulianDay(bool gregorian, int year, int& plainDay) const
{
    const int dayOfWeekStamp = stamps_[FieldDayOfWeek];
    const int dayOfMonth = stamps_[FieldDayOfMonth];
    const int monthStamp = stamps_[FieldMonth];
    const int weekOfMonth = aggregateStamp(stamps_[FieldWeekOfMonth], dayOfWeekStamp);
    const int weekdayInMonth = aggregateStamp(stamps_[FieldDayOfWeekInMonth], dayOfWeekStamp);
    const int dayOfYear = stamps_[FieldDayOfYear];
    const int weekOfYear = aggregateStamp(stamps_[FieldWeekOfYear], dayOfWeekStamp);
    const int best = std::max(std::max(std::max(dayOfMonth, monthStamp), std::max(weekOfMonth, weekdayInMonth)),
                              std::max(dayOfYear, weekOfYear));

    if (best == 0)
        return julianDayBeforeYear(gregorian, year) + 1;
    // Equal stamps were computed, or set with the same weekday: months go before the rest of the year.
    if (best == dayOfMonth || best == monthStamp || best == weekOfMonth || best == weekdayInMonth) {
        int month = monthStamp != 0 ? fields_[FieldMonth] : static_cast<int>(January);
        if (month < January || month > December)
            year = wrappingAdd(year, floorDivide(month, 12, month));
        const bool leap = isLeapIn(gregorian, year);
        const std::int64_t before = julianDayBeforeYear(gregorian, year) + daysBeforeMonth[leap][month];
        if (best == dayOfMonth || best == monthStamp) {
            const int date = dayOfMonth != 0 ? fields_[FieldDayOfMonth] : 1;
            if (month == fields_[FieldMonth] && date == fields_[FieldDayOfMonth] && date >= 1 &&
                date <= daysInMonth[leap][month])
                plainDay = daysBeforeMonth[leap][month] + date - 1;
            return before + date;
        }
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
