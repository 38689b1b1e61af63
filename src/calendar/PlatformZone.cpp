#include "PlatformZone.h"

#include "../foundation/Check.h"
#include "Arithmetic.h"
#include "DayNumbers.h"

#include <algorithm>

namespace tarn {
TIME_ZONE_INFORMATION zoneInformation(int year, const DYNAMIC_TIME_ZONE_INFORMATION* zone)
{
    TIME_ZONE_INFORMATION information;
    ensure(GetTimeZoneInformationForYear(static_cast<USHORT>(year), const_cast<DYNAMIC_TIME_ZONE_INFORMATION*>(zone),
                                         &information),
           [zone] { return zone ? noInformationOf(zone->TimeZoneKeyName) : "Can't get time zone information"; });
    return information;
}

std::int64_t newYear(int year) { return (julianDayBeforeYear(true, year) + 1 - epochJulianDay) * millisPerDay; }

int timeOfDay(const SYSTEMTIME& time)
{
    return ((time.wHour * 60 + time.wMinute) * 60 + time.wSecond) * 1000 + time.wMilliseconds;
}

std::int64_t transitionIn(int year, const SYSTEMTIME& date)
{
    const bool leap = isLeapIn(true, year);
    const int month = std::clamp<int>(date.wMonth, 1, 12) - 1;
    const std::int64_t before =
        julianDayBeforeYear(true, year) - epochJulianDay + daysBeforeMonth[leap][month]; // the month's first day
    int day = date.wDay;
    if (date.wYear == 0) {
        day = 1 + floorRemainder(date.wDayOfWeek - weekdayOf(before + 1), 7) + 7 * (date.wDay - 1);
        while (day > daysInMonth[leap][month])
            day -= 7;
    }
    return (before + day) * millisPerDay + timeOfDay(date);
}
} // namespace tarn
