#pragma once

#include "Arithmetic.h"

#include <cstdint>

// The two calendars' arithmetic on days since 1970-01-01 and Julian Day Numbers. Years are astronomical.

namespace tarn {
constexpr std::int64_t epochJulianDay = 2440588;

/// Days of the year before each month, in a common and in a leap year.
inline constexpr int daysBeforeMonth[2][12] = {{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334},
                                               {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335}};
inline constexpr int daysInMonth[2][12] = {{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
                                           {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}};

constexpr bool isLeapIn(bool gregorian, int year)
{
    return year % 4 == 0 && (!gregorian || year % 100 != 0 || year % 400 == 0);
}

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

/// The Julian Day Number of the day before the year's first.
constexpr std::int64_t julianDayBeforeYear(bool gregorian, int year)
{
    const int before = wrappingSubtract(year, 1);
    std::int64_t julianDay = 365 * std::int64_t(before) + floorQuotient(before, 4) + 1721423;
    if (gregorian)
        julianDay += 2 - floorQuotient(before, 100) + floorQuotient(before, 400);
    return julianDay;
}

/// The weekday, Sunday being 0, of a day since the epoch.
constexpr int weekdayOf(std::int64_t epochDay)
{
    int weekday = 0;
    floorQuotient(epochDay + 4, 7, weekday);
    return weekday;
}
} // namespace tarn
