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
        {-62135596800000, "1-01-03 AD 00:00:00.000", 2, 3},
        {-62135769600000, "1-01-01 AD 00:00:00.000", 7, 1},
        {-62135769600001, "1-12-31 BC 23:59:59.999", 6, 366},
        {-62167392000000, "1-01-01 BC 00:00:00.000", 5, 1},
        {-62167392000001, "2-12-31 BC 23:59:59.999", 4, 365},
        {978220800000, "2000-12-31 AD 00:00:00.000", 1, 366},
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

TEST_CASE("GregorianCalendar: every day of 2,500 years has its date, counted on from 400 BC")
{
    int year = -399, month = 0, date = 1, dayOfYear = 1; // Astronomical: the year 0 is 1 BC.
    GregorianCalendar calendar((TimeZone()));
    for (std::int64_t day = -865264; year < 2100; ++day) {
        calendar.setTime(day * 86400000);
        const int era = calendar.get(Calendar::FieldEra), shown = calendar.get(Calendar::FieldYear);
        if (calendar.get(Calendar::FieldDayOfMonth) != date || calendar.get(Calendar::FieldMonth) != month ||
            (era == GregorianCalendar::AD ? shown : 1 - shown) != year ||
            calendar.get(Calendar::FieldDayOfYear) != dayOfYear)
            FAIL(zones::text(calendar) << " instead of " << year << "-" << month + 1 << "-" << date);

        const bool leap = year % 4 == 0 && (year < 1582 || year % 100 != 0 || year % 400 == 0);
        const int lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        ++dayOfYear;
        if (year == 1582 && month == GregorianCalendar::October && date == 4) {
            date = 15;
            dayOfYear += 10;
        } else if (++date > lengths[month]) {
            date = 1;
            if (++month == 12) {
                ++year;
                month = 0;
                dayOfYear = 1;
            }
        }
    }
}

TEST_CASE("GregorianCalendar: known weeks and the years that they belong to")
{
    struct Row {
        int year, month, day, firstDay, minimalDays, weekOfYear, weekOfMonth, weekdayInMonth, isoYear;
    };
    const auto row = GENERATE(values<Row>({
        {2000, 11, 31, 1, 1, 1, 6, 5, 2001},
        {2000, 11, 31, 1, 4, 53, 5, 5, 2000},
        {2003, 11, 28, 2, 4, 52, 4, 4, 2003},
        {2003, 11, 29, 2, 4, 1, 5, 5, 2004},
        {2000, 0, 3, 2, 4, 1, 1, 1, 2000},
        {2004, 11, 31, 2, 4, 53, 5, 5, 2004},
        // The weekday a day early in the year before: ISO 8601 has 52 for the first of these.
        {2000, 0, 1, 2, 4, 53, 0, 1, 1999},
        {2005, 0, 1, 2, 4, 53, 0, 1, 2004},
        {2000, 11, 31, 7, 7, 53, 5, 5, 2000},
        {1999, 0, 1, 7, 7, 52, 0, 1, 1998},
        {1999, 0, 2, 7, 7, 1, 1, 1, 1999},
        {1604, 1, 29, 4, 3, 9, 5, 5, 1604},
        {1601, 11, 27, 6, 2, 52, 4, 4, 1601},
        {1601, 11, 28, 6, 2, 1, 5, 4, 1602},
    }));
    auto calendar = zones::withWeeks(zones::on(row.year, row.month, row.day), row.firstDay, row.minimalDays);
    INFO(zones::text(calendar));
    CHECK(calendar.get(Calendar::FieldWeekOfYear) == row.weekOfYear);
    CHECK(calendar.get(Calendar::FieldWeekOfMonth) == row.weekOfMonth);
    CHECK(calendar.get(Calendar::FieldDayOfWeekInMonth) == row.weekdayInMonth);
    CHECK(calendar.getISOYear() == row.isoYear);
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
    GregorianCalendar calendar(zones::north());
    for (const std::int64_t time : {std::int64_t(962402400000), std::int64_t(-200000000000000)}) {
        watched.calls = 0;
        calendar.setTime(time);
        watched.setTime(time);
        CHECK(watched.calls == Calendar::FieldCount);
        for (unsigned field = 0; field < Calendar::FieldCount; ++field)
            CHECK(watched.get(field) == calendar.get(field));
        watched.set(2000, 13, 32);
        calendar.set(2000, 13, 32);
        CHECK(watched.getTime() == calendar.getTime());
        CHECK(watched.calls == Calendar::FieldCount + 6);
    }
}

TEST_CASE("GregorianCalendar: the fields set last decide")
{
    using C = Calendar;
    using Settings = std::vector<std::pair<unsigned, int>>;
    const auto& [settings, expected] = GENERATE(table<Settings, const char*>({
        {{{C::FieldDayOfYear, 366}}, "2000-12-31 AD"},
        {{{C::FieldDayOfYear, 366}, {C::FieldMonth, 0}}, "2000-01-20 AD"},
        {{{C::FieldMonth, -1}}, "1999-12-20 AD"},
        {{{C::FieldMonth, 25}}, "2002-02-20 AD"},
        {{{C::FieldDayOfWeek, 1}, {C::FieldDayOfWeekInMonth, 2}}, "2000-05-14 AD"},
        {{{C::FieldDayOfWeek, 1}, {C::FieldDayOfWeekInMonth, -1}}, "2000-05-28 AD"},
        {{{C::FieldDayOfWeek, 4}, {C::FieldWeekOfMonth, 1}}, "2000-05-03 AD"},
        {{{C::FieldDayOfWeek, 4}, {C::FieldWeekOfYear, 1}}, "2000-01-05 AD"},
        // A weekday before the week's first day is not wrapped: it counts as the day before that week.
        {{{C::FieldDayOfWeek, 1}, {C::FieldWeekOfYear, 2}}, "2000-01-09 AD"},
        // Set last, the weekday is one of the week of the month.
        {{{C::FieldWeekOfYear, 2}, {C::FieldDayOfWeek, 1}}, "2000-05-14 AD"},
        {{{C::FieldEra, GregorianCalendar::BC}, {C::FieldYear, 44}}, "44-05-20 BC"},
        // Dates that the cutover took away count as Julian.
        {{{C::FieldYear, 1582}, {C::FieldMonth, 9}, {C::FieldDayOfMonth, 10}}, "1582-10-20 AD"},
        {{{C::FieldHour, 3}, {C::FieldAmPm, 1}}, "2000-05-20 AD 15"},
        // The half of the day does not choose FieldHour by itself.
        {{{C::FieldHourOfDay, 15}, {C::FieldAmPm, 0}}, "2000-05-20 AD 15"},
        // The daylight field counts only beside a zone that was set.
        {{{C::FieldDstOffset, 1000}}, "2000-05-20 AD 00:00:00"},
        {{{C::FieldZoneOffset, zones::hour}, {C::FieldDstOffset, 1000}}, "2000-05-19 AD 22:59:59"},
    }));
    auto calendar = zones::withWeeks(zones::on(2000, GregorianCalendar::May, 20), GregorianCalendar::Monday, 4);
    for (const auto& [field, value] : settings)
        calendar.set(field, value);
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
