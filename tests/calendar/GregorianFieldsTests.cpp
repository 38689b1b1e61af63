#include <catch2/catch.hpp>

#include <tarn/GregorianCalendar.h>

#include "Zones.h"

#include <chrono>
#include <climits>
#include <random>

using tarn::Calendar;
using tarn::GregorianCalendar;

namespace {
// The place of the day's weekday in weeks that begin with `firstDay`.
int placeInWeek(int dayOfWeek, int firstDay) { return ((dayOfWeek - firstDay) % 7 + 7) % 7; }

// Counts week by week from the first day of a period, whose weekday follows from that of its day `day`.
int countedWeek(int day, int dayOfWeek, int firstDay, int minimalDays)
{
    int place = placeInWeek(dayOfWeek - (day - 1), firstDay);
    int week = 7 - place >= minimalDays ? 1 : 0;
    for (int d = 1; d < day; ++d)
        if (++place == 7) {
            place = 0;
            ++week;
        }
    return week;
}

// The week of the year by the rules, in astronomical `year` and with the number that FieldYear shows.
int expectedWeekOfYear(int day, int dayOfWeek, int yearLength, int lengthBefore, int firstDay, int minimalDays)
{
    const int week = countedWeek(day, dayOfWeek, firstDay, minimalDays);
    if (week == 0) // The year before, as if every day of it were one weekday earlier.
        return countedWeek(day + lengthBefore, dayOfWeek - 1, firstDay, minimalDays);
    const bool januaryIsFirstWeek = 7 - placeInWeek(dayOfWeek - (day - 1), firstDay) >= minimalDays;
    const int daysOfWeekInYear = yearLength - day + placeInWeek(dayOfWeek, firstDay) + 1;
    const bool reachesNextYear = daysOfWeekInYear < 7 && 7 - daysOfWeekInYear >= minimalDays;
    return januaryIsFirstWeek && reachesNextYear ? 1 : week;
}

std::int64_t julianDays(int year, int month, int day) // Since the epoch, counting every day of every year.
{
    std::int64_t days = -719164;
    for (int y = 1; y < year; ++y)
        days += y % 4 == 0 ? 366 : 365;
    for (int y = year; y < 1; ++y)
        days -= y % 4 == 0 ? 366 : 365;
    const int lengths[] = {31, year % 4 == 0 ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int m = 0; m < month; ++m)
        days += lengths[m];
    return days + day - 1;
}
} // namespace

TEST_CASE("GregorianCalendar: instants at the boundaries have their fields", "[calendar]")
{
    struct Row {
        std::int64_t time;
        const char* text;
        int dayOfWeek;
        int dayOfYear;
    };
    const auto row = GENERATE(values<Row>({
        {0, "1970-01-01 AD 00:00:00.000", 5, 1},
        {-1, "1969-12-31 AD 23:59:59.999", 4, 365},
        {-12219292800000, "1582-10-15 AD 00:00:00.000", 6, 288},
        {-12219292800001, "1582-10-04 AD 23:59:59.999", 5, 277},
        {-62135596800000, "1-01-03 AD 00:00:00.000", 2, 3},
        {-62135769600000, "1-01-01 AD 00:00:00.000", 7, 1},
        {-62135769600001, "1-12-31 BC 23:59:59.999", 6, 366},
        {-62167392000000, "1-01-01 BC 00:00:00.000", 5, 1},
        {-62167392000001, "2-12-31 BC 23:59:59.999", 4, 365},
        {951782400000, "2000-02-29 AD 00:00:00.000", 3, 60},
        {951868800000, "2000-03-01 AD 00:00:00.000", 4, 61},
        {978220800000, "2000-12-31 AD 00:00:00.000", 1, 366},
        {-2203891200001, "1900-02-28 AD 23:59:59.999", 4, 59},
        {-2203891200000, "1900-03-01 AD 00:00:00.000", 5, 60},
        {-14825894400000, "1500-02-29 AD 00:00:00.000", 7, 60},
        {INT64_MAX, "292278994-08-17 AD 07:12:55.807", 1, 229},
        {INT64_MIN, "292269055-12-02 BC 16:47:04.192", 1, 336},
    }));
    INFO(row.text);
    const auto calendar = zones::at(row.time);
    CHECK(zones::text(calendar) == row.text);
    CHECK(calendar.get(Calendar::FieldDayOfWeek) == row.dayOfWeek);
    CHECK(calendar.get(Calendar::FieldDayOfYear) == row.dayOfYear);
    CHECK(calendar.get(Calendar::FieldAmPm) * 12 + calendar.get(Calendar::FieldHour) ==
          calendar.get(Calendar::FieldHourOfDay));
}

TEST_CASE("GregorianCalendar: every day of 8,000 years agrees with both calendars", "[calendar]")
{
    using namespace std::chrono;
    std::int64_t julian = julianDays(-3999, 0, 1);
    GregorianCalendar calendar((tarn::TimeZone()));
    bool same = true;
    for (std::int64_t day = julian; day < 738000 && same; ++day) {
        calendar.setTime(day * 86400000);
        const int year = calendar.get(Calendar::FieldYear), era = calendar.get(Calendar::FieldEra);
        const int month = calendar.get(Calendar::FieldMonth), date = calendar.get(Calendar::FieldDayOfMonth);
        const int astronomical = era == GregorianCalendar::AD ? year : 1 - year;
        if (day >= -141427) {
            const year_month_day expected{sys_days(days(day))};
            same = expected == std::chrono::year(year) / (month + 1) / date;
        } else if (date == 1) { // Between two firsts of a month the days must count up.
            same = julianDays(astronomical, month, 1) == day;
        } else {
            same = calendar.get(Calendar::FieldDayOfYear) == day - julianDays(astronomical, 0, 1) + 1;
        }
        INFO("day " << day << " " << zones::text(calendar));
        if (!same)
            CHECK(same);
        if (day < -141427)
            day += 6; // Counting is slow; seven is prime to the lengths of months and years.
    }
    CHECK(same);
}

TEST_CASE("GregorianCalendar: weeks at the year's ends under all week settings", "[calendar]")
{
    int wrong = 0;
    for (int firstDay = 1; firstDay <= 7; ++firstDay)
        for (int minimalDays = 1; minimalDays <= 7; ++minimalDays) {
            GregorianCalendar calendar((tarn::TimeZone()));
            calendar.setFirstDayOfWeek(firstDay);
            calendar.setMinimalDaysInFirstWeek(minimalDays);
            for (int year = 1590; year < 1630; ++year)
                for (const int start : {1, 351}) {
                    calendar.Clear();
                    calendar.set(Calendar::FieldYear, year);
                    calendar.set(Calendar::FieldDayOfYear, start);
                    for (; calendar.get(Calendar::FieldYear) == year && calendar.get(Calendar::FieldDayOfYear) != 15;
                         calendar.add(Calendar::FieldDayOfMonth, 1)) {
                        const int day = calendar.get(Calendar::FieldDayOfYear);
                        const int dayOfWeek = calendar.get(Calendar::FieldDayOfWeek);
                        const int date = calendar.get(Calendar::FieldDayOfMonth);
                        const int week = expectedWeekOfYear(day, dayOfWeek, calendar.yearLength(year),
                                                            calendar.yearLength(year - 1), firstDay, minimalDays);
                        wrong += calendar.get(Calendar::FieldWeekOfYear) != week;
                        wrong += calendar.get(Calendar::FieldWeekOfMonth) !=
                                 countedWeek(date, dayOfWeek, firstDay, minimalDays);
                        wrong += calendar.get(Calendar::FieldDayOfWeekInMonth) != (date + 6) / 7;
                    }
                }
        }
    CHECK(wrong == 0);
}

TEST_CASE("GregorianCalendar: known weeks and the years that they belong to", "[calendar]")
{
    struct Row {
        int year, month, day, firstDay, minimalDays, week, isoYear;
    };
    const auto row = GENERATE(values<Row>({
        {2000, 11, 31, 1, 1, 1, 2001},
        {2000, 11, 31, 1, 4, 53, 2000},
        {2003, 11, 29, 2, 4, 1, 2004},
        {2000, 0, 3, 2, 4, 1, 2000},
        {2004, 11, 31, 2, 4, 53, 2004},
        // The weekday a day early in the year before: ISO 8601 has 52 for the first of these.
        {2000, 0, 1, 2, 4, 53, 1999},
        {2005, 0, 1, 2, 4, 53, 2004},
    }));
    auto calendar = zones::on(row.year, row.month, row.day);
    calendar.setFirstDayOfWeek(row.firstDay);
    calendar.setMinimalDaysInFirstWeek(row.minimalDays);
    calendar.setTime(calendar.getTime());
    INFO(zones::text(calendar));
    CHECK(calendar.get(Calendar::FieldWeekOfYear) == row.week);
    CHECK(calendar.getISOYear() == row.isoYear);
}

TEST_CASE("GregorianCalendar: a sum beyond the ends of time is the epoch", "[calendar]")
{
    CHECK(zones::text(zones::at(INT64_MAX - 1, zones::withOffset(zones::hour))) == "1970-01-01 AD 00:00:00.000");
    CHECK(zones::text(zones::at(INT64_MIN, zones::withOffset(-1))) == "1970-01-01 AD 00:00:00.000");
}

TEST_CASE("GregorianCalendar: daylight time moves the clock and may move the day", "[calendar]")
{
    const auto calendar = zones::at(962402400000, zones::north()); // 2000-06-30 22:00 UTC
    CHECK(zones::text(calendar) == "2000-07-01 AD 00:00:00.000");
    CHECK(calendar.get(Calendar::FieldZoneOffset) == zones::hour);
    CHECK(calendar.get(Calendar::FieldDstOffset) == zones::hour);
    CHECK(zones::at(962402400000, zones::north()).InDaylightTime());
    // A negative amount is not carried into the day before.
    auto zone = zones::north();
    zone.SetDSTOffset(-zones::hour);
    CHECK(zones::at(962406000000, zone).get(Calendar::FieldDayOfMonth) == 1);
    CHECK(zones::at(962406000000 - zones::hour, zone).get(Calendar::FieldMinute) == 0);
    CHECK(zones::at(962406000000 - 2 * zones::hour + 60000, zone).get(Calendar::FieldMinute) == 1);
}

TEST_CASE("GregorianCalendar: fields give the instant that gave them", "[calendar]")
{
    const auto zone = GENERATE(from_range(zones::all()));
    std::mt19937_64 random(20001231);
    // Mostly 14,000 years round the cutover, and all of time.
    std::uniform_int_distribution<std::int64_t> usual(-230000000000000, 212000000000000),
        all(INT64_MIN / 2, INT64_MAX / 2);
    GregorianCalendar calendar(zone), back(zone);
    int wrongFields = 0, wrongTimes = 0;
    for (int i = 0; i < 500000; ++i) {
        const std::int64_t time = i % 8 ? usual(random) : all(random);
        calendar.setTime(time);
        back.Clear();
        for (const auto field :
             {Calendar::FieldEra, Calendar::FieldYear, Calendar::FieldMonth, Calendar::FieldDayOfMonth,
              Calendar::FieldHourOfDay, Calendar::FieldMinute, Calendar::FieldSecond, Calendar::FieldMillisecond})
            back.set(field, calendar.get(field));
        // The hour that the clock shows twice is taken as standard time.
        const std::int64_t ambiguous = calendar.get(Calendar::FieldDstOffset);
        const std::int64_t difference = back.getTime() - time;
        wrongTimes += difference != 0 && (ambiguous == 0 || difference != ambiguous);
        for (unsigned field = 0; field < Calendar::FieldZoneOffset; ++field)
            wrongFields += calendar.get(field) != back.get(field);
    }
    CHECK(wrongTimes == 0);
    CHECK(wrongFields == 0);
}

TEST_CASE("GregorianCalendar: a derived class sees every field that is computed", "[calendar]")
{
    struct Watched : GregorianCalendar {
        explicit Watched(const tarn::TimeZone& zone) : GregorianCalendar(zone) {}
        void internalSet(int field, int value) override
        {
            GregorianCalendar::internalSet(field, value);
            ++calls;
        }
        int calls = 0;
    };
    std::mt19937_64 random(4);
    std::uniform_int_distribution<std::int64_t> usual(-230000000000000, 212000000000000);
    GregorianCalendar calendar(zones::north());
    Watched watched(zones::north());
    for (int i = 0; i < 1000; ++i) {
        calendar.setTime(usual(random));
        watched.setTime(calendar.getTime());
        REQUIRE(watched.calls == Calendar::FieldCount);
        for (unsigned field = 0; field < Calendar::FieldCount; ++field)
            REQUIRE(watched.get(field) == calendar.get(field));
        watched.set(2000 + i, i % 14, i % 33);
        calendar.set(2000 + i, i % 14, i % 33);
        REQUIRE(watched.getTime() == calendar.getTime());
        REQUIRE(watched.calls == Calendar::FieldCount + 6);
        watched.calls = 0;
    }
}

TEST_CASE("GregorianCalendar: the fields set last decide", "[calendar]")
{
    GregorianCalendar calendar((tarn::TimeZone()));
    calendar.Clear();
    const auto result = [&] { return zones::text(calendar).substr(0, 13); };
    CHECK(result() == "1970-01-01 AD");
    calendar.set(2000, GregorianCalendar::May, 20);

    SECTION("day of the year")
    {
        calendar.set(Calendar::FieldDayOfYear, 366);
        CHECK(result() == "2000-12-31 AD");
        calendar.set(Calendar::FieldMonth, GregorianCalendar::January);
        CHECK(result() == "2000-01-31 AD");
    }
    SECTION("weekday in the month, also from its end")
    {
        calendar.set(Calendar::FieldDayOfWeek, GregorianCalendar::Sunday);
        calendar.set(Calendar::FieldDayOfWeekInMonth, 2);
        CHECK(result() == "2000-05-14 AD");
        calendar.set(Calendar::FieldDayOfWeekInMonth, -1);
        CHECK(result() == "2000-05-28 AD");
    }
    SECTION("week of the month and of the year")
    {
        calendar.setFirstDayOfWeek(GregorianCalendar::Monday);
        calendar.setMinimalDaysInFirstWeek(4);
        calendar.set(Calendar::FieldDayOfWeek, GregorianCalendar::Wednesday);
        calendar.set(Calendar::FieldWeekOfMonth, 1);
        CHECK(result() == "2000-05-03 AD");
        calendar.set(Calendar::FieldWeekOfYear, 1);
        CHECK(result() == "2000-01-05 AD");
        // A weekday before the week's first day is not wrapped: it counts as the day before that week.
        calendar.set(Calendar::FieldWeekOfYear, 2);
        calendar.set(Calendar::FieldDayOfWeek, GregorianCalendar::Sunday);
        CHECK(result() == "2000-01-02 AD");
    }
    SECTION("months out of range carry into the year")
    {
        calendar.set(2000, -1, 1);
        CHECK(result() == "1999-12-01 AD");
        calendar.set(2000, 25, 1);
        CHECK(result() == "2002-02-01 AD");
    }
    SECTION("years before Christ")
    {
        calendar.set(44, GregorianCalendar::March, 15);
        calendar.set(Calendar::FieldEra, GregorianCalendar::BC);
        CHECK(result() == "44-03-15 BC 0");
        CHECK(calendar.getTime() == -63517996800000);
    }
    SECTION("dates that the cutover took away count as Julian")
    {
        calendar.set(1582, GregorianCalendar::October, 10);
        CHECK(result() == "1582-10-20 AD");
        calendar.set(1582, GregorianCalendar::October, 4);
        CHECK(result() == "1582-10-04 AD");
    }
    SECTION("the hour of the day, or the hour with the half of the day")
    {
        calendar.set(Calendar::FieldHour, 3);
        calendar.set(Calendar::FieldAmPm, 1);
        CHECK(calendar.get(Calendar::FieldHourOfDay) == 15);
        calendar.set(Calendar::FieldAmPm, 0); // Does not choose FieldHour by itself.
        CHECK(calendar.get(Calendar::FieldHourOfDay) == 15);
    }
    SECTION("a zone that was set, with the daylight field beside it")
    {
        calendar.set(Calendar::FieldDstOffset, 1000);
        CHECK(calendar.getTime() == 958780800000);
        calendar.set(Calendar::FieldZoneOffset, zones::hour);
        calendar.set(Calendar::FieldDstOffset, 1000);
        CHECK(calendar.getTime() == 958780800000 - zones::hour - 1000);
    }
    SECTION("numbers of any size give some instant")
    {
        for (unsigned field = 0; field < Calendar::FieldCount; ++field)
            for (const int value : {INT_MIN, INT_MAX}) {
                calendar.set(Calendar::FieldDayOfWeek, value);
                calendar.set(field, value);
                calendar.get(Calendar::FieldYear);
            }
        calendar.Clear();
        CHECK(result() == "1970-01-01 AD");
    }
}
