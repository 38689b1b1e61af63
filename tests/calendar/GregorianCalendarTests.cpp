#include "Test.h"

#include <tarn/GregorianCalendar.h>

#include "Zones.h"

#include <climits>

TEST_CASE("GregorianCalendar: instants at the boundaries have their fields")
{
    const auto& [time, text, dayOfWeek, dayOfYear] = GENERATE(table<std::int64_t, const char*, int, int>({
        {0, "1970-01-01 AD 00:00:00.000", 5, 1},
        {-1, "1969-12-31 AD 23:59:59.999", 4, 365},
        {-12219292800000, "1582-10-15 AD 00:00:00.000", 6, 288},
        {-12219292800001, "1582-10-04 AD 23:59:59.999", 5, 277},
        {-62135769600000, "1-01-01 AD 00:00:00.000", 7, 1},
        {-62135769600001, "1-12-31 BC 23:59:59.999", 6, 366},
        {INT64_MAX, "292278994-08-17 AD 07:12:55.807", 1, 229},
        {INT64_MIN, "292269055-12-02 BC 16:47:04.192", 1, 336},
    }));
    const auto calendar = zones::at(time);
    CHECK(zones::text(calendar) == text);
    CHECK(calendar.get(Calendar::FieldDayOfWeek) == dayOfWeek);
    CHECK(calendar.get(Calendar::FieldDayOfYear) == dayOfYear);
    CHECK(calendar.get(Calendar::FieldAmPm) * 12 + calendar.get(Calendar::FieldHour) ==
          calendar.get(Calendar::FieldHourOfDay));
}

TEST_CASE("GregorianCalendar: a sum beyond the ends of time is the epoch")
{
    CHECK(zones::text(zones::at(INT64_MAX - 1, zones::withOffset(zones::hour))) == "1970-01-01 AD 00:00:00.000");
    CHECK(zones::text(zones::at(INT64_MIN, zones::withOffset(-1))) == "1970-01-01 AD 00:00:00.000");
}

TEST_CASE("GregorianCalendar: daylight time moves the clock and may move the day")
{
    auto calendar = zones::at(962402400000, zones::north()); // 2000-06-30 22:00 UTC
    CHECK(zones::text(calendar) == "2000-07-01 AD 00:00:00.000");
    CHECK(calendar.get(Calendar::FieldZoneOffset) == zones::hour);
    CHECK(calendar.get(Calendar::FieldDstOffset) == zones::hour);
    CHECK(calendar.InDaylightTime());
    calendar.set(Calendar::FieldMonth, GregorianCalendar::January);
    CHECK_FALSE(calendar.InDaylightTime());
    // A negative amount is not carried into the day before, and only a day of any other.
    auto zone = zones::north();
    zone.SetDSTOffset(-zones::hour);
    CHECK(zones::at(962406000000, zone).get(Calendar::FieldDayOfMonth) == 1);
    CHECK(zones::at(962406000000 - zones::hour, zone).get(Calendar::FieldMinute) == 0);
    CHECK(zones::at(962406000000 - 2 * zones::hour + 60000, zone).get(Calendar::FieldMinute) == 1);
    zone.SetDSTOffset(INT_MAX);
    CHECK(zones::at(962406000000 - 1, zone).get(Calendar::FieldHourOfDay) == 596);
}

TEST_CASE("GregorianCalendar: a derived class sees every field that is computed")
{
    struct Watched : GregorianCalendar {
        Watched() : GregorianCalendar(zones::north()) {}
        void internalSet(int field, int value) override
        {
            GregorianCalendar::internalSet(field, value);
            ++calls;
        }
        int calls = 0;
    } watched;
    for (const std::int64_t time : {std::int64_t(962402400000), std::int64_t(-200000000000000)}) {
        watched.calls = 0;
        watched.setTime(time);
        CHECK(watched.calls == Calendar::FieldCount);
        watched.set(2000, 13, 32);
        watched.getTime();
        CHECK(watched.calls == Calendar::FieldCount + 6);
    }
}

TEST_CASE("GregorianCalendar: the fields set last decide")
{
    using C = Calendar;
    using Settings = std::vector<std::pair<unsigned, int>>;
    const auto& [settings, expected] = GENERATE(table<Settings, const char*>({
        {{{C::FieldDayOfYear, 366}, {C::FieldMonth, 0}}, "2000-01-20 AD"},
        {{{C::FieldMonth, 0}, {C::FieldDayOfYear, 366}}, "2000-12-31 AD"},
        {{{C::FieldMonth, -1}}, "1999-12-20 AD"},
        {{{C::FieldDayOfWeek, 1}, {C::FieldDayOfWeekInMonth, -1}}, "2000-05-28 AD"},
        // A weekday before the week's first day is not wrapped: it counts as the day before that week.
        {{{C::FieldDayOfWeek, 1}, {C::FieldWeekOfYear, 2}}, "2000-01-09 AD"},
        // Set last, the weekday is one of the week of the month.
        {{{C::FieldWeekOfYear, 2}, {C::FieldDayOfWeek, 1}}, "2000-05-14 AD"},
        // Dates that the cutover took away count as Julian.
        {{{C::FieldYear, 1582}, {C::FieldMonth, 9}, {C::FieldDayOfMonth, 10}}, "1582-10-20 AD"},
        {{{C::FieldHour, 3}, {C::FieldAmPm, 1}}, "2000-05-20 AD 15"},
        // The half of the day does not choose FieldHour by itself.
        {{{C::FieldHourOfDay, 15}, {C::FieldAmPm, 0}}, "2000-05-20 AD 15"},
        // The daylight field counts beside a zone that was set.
        {{{C::FieldZoneOffset, zones::hour}, {C::FieldDstOffset, 1000}}, "2000-05-19 AD 22:59:59"},
    }));
    auto calendar = zones::withWeeks(zones::on(2000, GregorianCalendar::May, 20), GregorianCalendar::Monday, 4);
    for (const auto& [field, value] : settings) {
        GregorianCalendar copy(calendar); // Knows the order, too.
        copy.set(field, value);
        calendar = copy;
    }
    calendar.setTime(calendar.getTime());
    CHECK_THAT(zones::text(calendar), Catch::StartsWith(expected));
}

TEST_CASE("GregorianCalendar: numbers of any size give some instant, and Clear the epoch")
{
    GregorianCalendar calendar((TimeZone()));
    for (unsigned field = 0; field < Calendar::FieldCount; ++field)
        for (const int value : {INT_MIN, INT_MAX}) {
            calendar.set(Calendar::FieldDayOfWeek, value);
            calendar.set(field, value);
            calendar.get(Calendar::FieldYear);
        }
    calendar.Clear();
    CHECK(zones::text(calendar) == "1970-01-01 AD 00:00:00.000");
}
