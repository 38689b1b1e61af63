#pragma once

#include "Arithmetic.h"

#include <cstdint>

// The two calendars' arithmetic on days since 1970-01-01 and Julian Day Numbers. Years are astronomical.

namespace tarn {
constexpr std::int64_t epochJulianDay = 2440588;
/// 1582-10-15, the first day of the Gregorian calendar, since the epoch.
constexpr std::int64_t cutoverDay = -141427;

/// Days of the year before each month, in a common and in a leap year.
inline constexpr int daysBeforeMonth[2][12] = {{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334},
                                               {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335}};
inline constexpr int daysInMonth[2][12] = {{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
                                           {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}};

constexpr bool isLeapIn(bool gregorian, int year)
{
    // Centuries that 16 divides are those that 400 divides.
    return (year & 3) == 0 && (!gregorian || (year & 15) == 0 || year % 100 != 0);
}

struct Date {
    int year;
    int month;     ///< From 0.
    int day;       ///< Of the month, from 1.
    int dayOfYear; ///< From 0.
};

struct YearDay {
    int year;
    int day; ///< Of the year, from 0.
    bool leap;
};

constexpr YearDay gregorianYearDay(std::int64_t epochDay)
{
    int rest = 0;
    const int c400 = floorQuotient(epochDay + 719162, 146097, rest);
    const int c100 = rest / 36524;
    rest %= 36524;
    const int c4 = rest / 1461;
    rest %= 1461;
    const int c1 = rest / 365;
    const int year = 400 * c400 + 100 * c100 + 4 * c4 + c1;
    if (c100 == 4 || c1 == 4)
        return {year, 365, true}; // The last day of a leap year.
    return {year + 1, rest % 365, isLeapIn(true, year + 1)};
}

constexpr YearDay julianYearDay(std::int64_t epochDay)
{
    // Cycles of four years that begin with the leap year.
    int rest = 0;
    const int c4 = floorQuotient(epochDay + 719530, 1461, rest);
    const int yearOfCycle = 4 * rest / 1461;
    return {4 * c4 + yearOfCycle, rest - 365 * yearOfCycle - (yearOfCycle != 0), yearOfCycle == 0};
}

constexpr YearDay yearDay(bool gregorian, std::int64_t epochDay)
{
    return gregorian ? gregorianYearDay(epochDay) : julianYearDay(epochDay);
}

/// The month, from 0, that a day of the year lies in.
constexpr int monthOfDay(int dayOfYear, bool leap)
{
    const int correction = dayOfYear < (leap ? 60 : 59) ? 0 : leap ? 1 : 2;
    return (12 * (dayOfYear + correction) + 6) / 367;
}

/// The Gregorian date of a day that `isNear`, counted from the first near one.
constexpr Date nearDateOf(std::uint32_t nearDay)
{
    // Years from March on have their leap day last, so that months follow from one multiplication: 2141 / 65536 is
    // near enough to 5 / 153.
    const std::uint32_t quarters = 4 * (nearDay + 719468) + 3;
    const std::uint32_t century = quarters / 146097;
    const std::uint32_t quartersOfCentury = quarters % 146097 | 3;
    const std::uint32_t yearOfCentury = quartersOfCentury / 1461;
    const std::uint32_t dayOfYear = quartersOfCentury % 1461 / 4; // From the first of March on.
    const std::uint32_t monthAndDay = 2141 * dayOfYear + 197913;  // March is 3, February 14.
    const int year = static_cast<int>(100 * century + yearOfCentury) - 400 * nearCycles;
    const int month = static_cast<int>(monthAndDay >> 16), day = static_cast<int>((monthAndDay & 0xFFFF) / 2141) + 1;
    const int fromMarch = static_cast<int>(dayOfYear);
    if (dayOfYear >= 306)
        return {year + 1, month - 13, day, fromMarch - 306};
    const bool leap = (year & (yearOfCentury == 0 ? 15 : 3)) == 0;
    return {year, month - 1, day, fromMarch + 59 + leap};
}

/// The weekday, Sunday being 0, of a day that `isNear`, counted from the first near one.
constexpr int nearWeekdayOf(std::uint32_t nearDay) { return static_cast<int>((nearDay + 4) % 7); }

/// The date of a day since the epoch.
constexpr Date dateOf(bool gregorian, std::int64_t epochDay)
{
    if (gregorian && isNear(epochDay))
        return nearDateOf(static_cast<std::uint32_t>(epochDay) + nearDays);
    const YearDay date = yearDay(gregorian, epochDay);
    const int month = monthOfDay(date.day, date.leap);
    return {date.year, month, date.day - daysBeforeMonth[date.leap][month] + 1, date.day};
}

/// The Julian Day Number of the day before the year's first.
constexpr std::int64_t julianDayBeforeYear(bool gregorian, int year)
{
    const int before = wrappingSubtract(year, 1);
    // Shifts divide by 4 and round down, centuries by 4 being the cycles of 400 years.
    const std::int64_t julianDay = 365 * std::int64_t(before) + (before >> 2) + 1721423;
    const int centuries = floorQuotient(before, 100);
    return gregorian ? julianDay + 2 - centuries + (centuries >> 2) : julianDay;
}

/// The day since the epoch of a Gregorian date in a year from 1 to `greatestNearYear`.
inline constexpr int greatestNearYear = 400 * nearCycles;
inline constexpr int daysBeforeMonthFromMarch[12] = {306, 337, 0, 31, 61, 92, 122, 153, 184, 214, 245, 275};
constexpr int nearDayOf(int year, int month, int day)
{
    const auto fromMarch = static_cast<std::uint32_t>(year - (month < 2)); // Has its leap day last.
    const std::uint32_t century = fromMarch / 100;
    const auto daysOfYears = static_cast<int>(365 * fromMarch + fromMarch / 4 - century + century / 4);
    return daysOfYears + daysBeforeMonthFromMarch[month] + day - 719469;
}

/// The weekday, Sunday being 0, of a day since the epoch.
constexpr int weekdayOf(std::int64_t epochDay)
{
    if (isNear(epochDay))
        return nearWeekdayOf(static_cast<std::uint32_t>(epochDay) + nearDays);
    int weekday = 0;
    floorQuotient(epochDay + 4, 7, weekday);
    return weekday;
}
} // namespace tarn
