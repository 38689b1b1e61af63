#include "Test.h"

#include <tarn/GregorianCalendar.h>

#include "Zones.h"

namespace {
struct Open : GregorianCalendar {
    explicit Open(const TimeZone& zone = TimeZone()) : GregorianCalendar(zone) {}
    using GregorianCalendar::floorDivide;
    using GregorianCalendar::isGregorian;
    using GregorianCalendar::isLeapYear;
    using GregorianCalendar::normalizedGregorianCutover;
};
} // namespace

TEST_CASE("GregorianCalendarBase: divisions round down, and months are taken modulo 12")
{
    CHECK(Open::MonthLength(static_cast<Open::Month>(12)) == 31);
    CHECK(Open::MonthLength(static_cast<Open::Month>(-11)) == 28);
    int remainder = 0;
    CHECK(Open::floorDivide(std::int64_t(-1), 86400000, remainder) == -1);
    CHECK(remainder == 86399999);
    CHECK(Open::floorDivide(std::int64_t(-200000000000), 146097, remainder) == -1368954);
    CHECK(remainder == 72538);
    CHECK(Open::floorDivide(-8, 7, remainder) == -2);
    CHECK(remainder == 6);
    CHECK(Open::floorDivide(-7, 7) == -1);
    CHECK(Open::floorDivide(std::int64_t(INT64_MIN), std::int64_t(86400000)) == -106751991168);
}

TEST_CASE("GregorianCalendarBase: the cutover decides the leap years before it")
{
    Open calendar;
    for (const int leap : {-4, 0, 4, 1500, 1600, 2000})
        CHECK(calendar.isLeapYear(leap));
    for (const int common : {-1, 1582, 1700, 1900, 2001})
        CHECK_FALSE(calendar.isLeapYear(common));
    CHECK(calendar.gregorianChange() == -12219292800000);

    SECTION("a later cutover, floored to its day")
    {
        calendar.setGregorianChange(-6857222399999); // 1752-09-14 00:00:00.001
        CHECK(calendar.gregorianChange() == -6857222399999);
        CHECK(calendar.normalizedGregorianCutover() == -6857222400000);
        CHECK(calendar.isLeapYear(1700));
        CHECK_FALSE(calendar.isGregorian(1751));
        CHECK(calendar.isGregorian(1752));
        for (std::int64_t day = -98257; day < -98243; ++day) { // Around the end of 1700, now a leap year.
            GregorianCalendar before((TimeZone())), asked((TimeZone()));
            before.setTime(day * 86400000);
            asked.setTime(day * 86400000);
            before.setGregorianChange(calendar.gregorianChange()); // What was computed stays.
            CHECK(before.get(Calendar::FieldWeekOfYear) == asked.get(Calendar::FieldWeekOfYear));
        }
    }
    SECTION("never or always Gregorian")
    {
        calendar.setGregorianChange(INT64_MAX);
        calendar.setTime(0);
        CHECK(zones::text(calendar) == "1969-12-19 AD 00:00:00.000");
        calendar.setGregorianChange(INT64_MIN);
        CHECK_FALSE(calendar.isLeapYear(1500));
        CHECK(calendar.isGregorian(-292269054));
        calendar.setTime(-62135596800000);
        CHECK(zones::text(calendar) == "1-01-01 AD 00:00:00.000");
    }
    SECTION("the zone decides the year")
    {
        Open east(zones::withOffset(zones::hour));
        east.setGregorianChange(-8520336000001); // The last millisecond of 1699 in UTC.
        CHECK_FALSE(east.isGregorian(1699));
        CHECK(east.isGregorian(1700));
    }
}
