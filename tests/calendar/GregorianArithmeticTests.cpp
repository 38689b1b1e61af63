#include "Test.h"

#include <tarn/GregorianCalendar.h>

#include "Zones.h"

#include <climits>
#include <random>

using zones::on;
using zones::text;
using zones::withWeeks;

namespace {
std::string added(GregorianCalendar calendar, unsigned field, int amount)
{
    calendar.add(field, amount);
    return text(calendar);
}

std::string rolled(GregorianCalendar calendar, unsigned field, int amount)
{
    calendar.roll(field, amount);
    return text(calendar).substr(0, 19);
}
} // namespace

TEST_CASE("GregorianCalendar: add moves years and months, clamps the day, and counts fixed lengths in 64 bits")
{
    CHECK(added(on(2001, 0, 31), Calendar::FieldMonth, -35) == "1998-02-28 AD 00:00:00.000");
    CHECK(added(on(1, 0, 31), Calendar::FieldYear, -2) == "2-01-31 BC 00:00:00.000");
    CHECK(added(on(5, 0, 31), Calendar::FieldEra, INT_MIN) == "5-01-31 BC 00:00:00.000");
    auto bc = on(2, 11, 1);
    bc.set(Calendar::FieldEra, GregorianCalendar::BC);
    CHECK(added(bc, Calendar::FieldYear, 2) == "1-12-01 AD 00:00:00.000");
    CHECK(added(bc, Calendar::FieldMonth, 1) == "3-01-01 BC 00:00:00.000"); // Later months, greater numbers.
    // 2,147,483,647 weeks are 41 million years.
    CHECK(added(on(2000, 1, 28), Calendar::FieldWeekOfMonth, INT_MAX) == "41159273-10-30 AD 00:00:00.000");
    CHECK(added(on(1582, 9, 4), Calendar::FieldDayOfMonth, 1) == "1582-10-15 AD 00:00:00.000");
}

TEST_CASE("GregorianCalendar: add reads the era as a derived class gives it")
{
    struct ManyEras : GregorianCalendar {
        ManyEras() : GregorianCalendar(on(5, 0, 31)) {}
        int internalGet(unsigned field) const override
        {
            return GregorianCalendar::internalGet(field) + (field == FieldEra ? 10 : 0);
        }
    } calendar;
    const std::int64_t time = calendar.getTime();
    CHECK(calendar.get(Calendar::FieldEra) == 11);
    calendar.add(Calendar::FieldEra, -10); // To AD.
    CHECK(calendar.getTime() == time);
}

TEST_CASE("GregorianCalendar: adding nothing computes nothing")
{
    auto calendar = on(2000, 0, 1);
    calendar.set(Calendar::FieldDayOfMonth, 32);
    calendar.add(Calendar::FieldMonth, 0);
    calendar.roll(Calendar::FieldMonth, 0);
    calendar.set(Calendar::FieldMonth, 1);
    CHECK(text(calendar) == "2000-03-03 AD 00:00:00.000");
}

TEST_CASE("GregorianCalendar: the last year depends on the date, and the calendar stays where it is")
{
    auto august17 = on(2000, 7, 17, 7, 12);
    CHECK(august17.getActualMaximum(Calendar::FieldYear) == 292278994);
    CHECK(on(2000, 7, 17, 7, 13).getActualMaximum(Calendar::FieldYear) == 292278993);
    CHECK(text(august17) == "2000-08-17 AD 07:12:00.000");
    auto bc = on(1, 11, 3);
    bc.set(Calendar::FieldEra, GregorianCalendar::BC);
    CHECK(bc.getActualMaximum(Calendar::FieldYear) == 292269055);
}

TEST_CASE("GregorianCalendar: roll wraps within the actual range")
{
    CHECK(rolled(on(2000, 0, 31), Calendar::FieldMonth, 13) == "2000-02-29 AD 00:00");
    CHECK(rolled(on(2000, 0, 31), Calendar::FieldMonth, -1) == "2000-12-31 AD 00:00");
    CHECK(rolled(on(2000, 1, 29), Calendar::FieldYear, 1) == "2001-02-28 AD 00:00");
    CHECK(rolled(on(1, 1, 1), Calendar::FieldYear, -1) == "292278994-02-01 AD ");
    CHECK(rolled(on(4, 1, 29), Calendar::FieldEra, 1) == "4-02-28 BC 00:00:00");
    CHECK(rolled(on(292270000, 1, 1), Calendar::FieldEra, -1) == "292269054-02-01 BC ");
    CHECK(rolled(on(2000, 1, 29), Calendar::FieldDayOfWeekInMonth, 1) == "2000-02-01 AD 00:00");
    CHECK(rolled(on(2000, 1, 28, 23, 59), Calendar::FieldMinute, 1) == "2000-02-28 AD 23:00");
    CHECK(rolled(on(2000, 1, 28, 23, 59), Calendar::FieldHour, 1) == "2000-02-28 AD 12:59");
    CHECK(rolled(on(2000, 1, 28, 23, 59), Calendar::FieldAmPm, 1) == "2000-02-28 AD 11:59");
    CHECK(rolled(on(2000, 1, 28, 23, 59), Calendar::FieldHourOfDay, INT_MIN) == "2000-02-28 AD 15:59");

    auto calendar = on(2000, 11, 31);
    calendar.roll(Calendar::FieldMonth, true);
    CHECK(text(calendar) == "2000-01-31 AD 00:00:00.000");
    calendar.roll(Calendar::FieldDayOfMonth, false);
    calendar.roll(Calendar::FieldSecond, false);
    calendar.roll(Calendar::FieldMillisecond, -2);
    CHECK(text(calendar) == "2000-01-30 AD 00:00:59.998");
}

TEST_CASE("GregorianCalendar: rolling weeks stays in the month or year")
{
    // June 1999 from Tuesday to Wednesday: rows of 5, 7, 7, 7 and 4 days from Sunday on.
    CHECK(rolled(withWeeks(on(1999, 5, 6), 1, 1), Calendar::FieldWeekOfMonth, -1) == "1999-06-01 AD 00:00");
    CHECK(rolled(withWeeks(on(1999, 5, 11), 1, 1), Calendar::FieldWeekOfMonth, 3) == "1999-06-30 AD 00:00");
    CHECK(rolled(withWeeks(on(1999, 5, 8), 1, 1), Calendar::FieldWeekOfMonth, 5) == "1999-06-08 AD 00:00");
    // From the last week of 2003 by ISO 8601 to its first, which began in 2002.
    CHECK(rolled(withWeeks(on(2003, 11, 22), 2, 4), Calendar::FieldWeekOfYear, 1) == "2003-01-01 AD 00:00");
    CHECK(rolled(withWeeks(on(2003, 11, 24), 2, 4), Calendar::FieldWeekOfYear, 1) == "2003-01-01 AD 00:00");
    // New Year's days that belong to a week of the other year count as the nearest week round the circle.
    CHECK(rolled(withWeeks(on(2000, 0, 1), 2, 4), Calendar::FieldWeekOfYear, 1) == "2000-01-08 AD 00:00");
    CHECK(rolled(withWeeks(on(2003, 11, 31), 2, 4), Calendar::FieldWeekOfYear, 1) == "2003-01-08 AD 00:00");
    CHECK(rolled(withWeeks(on(2000, 4, 17), 2, 4), Calendar::FieldDayOfWeek, 5) == "2000-05-15 AD 00:00");
    CHECK(rolled(withWeeks(on(2000, 4, 31), 2, 4), Calendar::FieldDayOfWeek, 1) == "2000-05-25 AD 00:00");
}

TEST_CASE("GregorianCalendar: rolling steps over the days that the cutover took")
{
    CHECK(rolled(on(1582, 9, 4), Calendar::FieldDayOfMonth, 1) == "1582-10-15 AD 00:00");
    CHECK(rolled(on(1582, 9, 31), Calendar::FieldDayOfMonth, 1) == "1582-10-01 AD 00:00");
    CHECK(rolled(on(1582, 9, 1), Calendar::FieldDayOfMonth, -22) == "1582-10-31 AD 00:00");
    CHECK(rolled(on(1582, 0, 1), Calendar::FieldDayOfYear, -1) == "1582-12-31 AD 00:00");
    CHECK(rolled(on(1582, 9, 4), Calendar::FieldWeekOfMonth, 1) == "1582-10-21 AD 00:00");
    CHECK(rolled(on(1582, 9, 28), Calendar::FieldDayOfWeekInMonth, 1) == "1582-10-04 AD 00:00");
    GregorianCalendar calendar((TimeZone()));
    calendar.setGregorianChange(-8520336000000); // 1700-01-01, which would have been in December.
    calendar.setTime(-8520336000000);
    CHECK(rolled(calendar, Calendar::FieldDayOfMonth, 1) == "1700-01-02 AD 00:00");
}

TEST_CASE("GregorianCalendar: rolling stays in a year that a cutover cut to less than a week")
{
    GregorianCalendar calendar((TimeZone()));
    calendar.setGregorianChange(-719163 * 86400000LL); // The Julian year 1 is left with its first day.
    for (int weeks = 0; weeks < 49; ++weeks) {
        calendar.setFirstDayOfWeek(1 + weeks / 7);
        calendar.setMinimalDaysInFirstWeek(1 + weeks % 7);
        for (const unsigned field : {Calendar::FieldWeekOfYear, Calendar::FieldDayOfWeek}) {
            calendar.setTime(-719164 * 86400000LL);
            calendar.roll(field, 1);
            CHECK(text(calendar) == "1-01-01 AD 00:00:00.000");
        }
    }
}

TEST_CASE("GregorianCalendar: what reads as the epoch at the ends of time rolls like the epoch")
{
    const auto zone = GENERATE(zones::withOffset(zones::hour), zones::withOffset(-zones::hour));
    const auto end = zones::at(zone.GetStandardOffset() > 0 ? INT64_MAX - 5 : INT64_MIN + 5, zone);
    const auto epoch = zones::at(-zone.GetStandardOffset(), zone);
    for (unsigned field = 0; field < Calendar::FieldCount; ++field) {
        INFO("field " << field);
        CHECK(rolled(end, field, 3) == rolled(epoch, field, 3));
    }
}

TEST_CASE("GregorianCalendar: rolling across daylight time keeps the clock, where it exists")
{
    CHECK(rolled(on(2000, 2, 1, 12, 0, zones::north()), Calendar::FieldDayOfMonth, -1) == "2000-03-31 AD 12:00");
    CHECK(rolled(on(2000, 6, 1, 0, 0, zones::north()), Calendar::FieldDayOfMonth, -1) == "2000-07-31 AD 00:00");
    CHECK(rolled(on(2000, 2, 26, 23, 30, zones::north()), Calendar::FieldHourOfDay, 1) == "2000-03-26 AD 00:30");
    CHECK(rolled(on(2000, 2, 25, 2, 30, zones::north()), Calendar::FieldDayOfMonth, 1) == "2000-03-26 AD 03:30");
    auto midnight = zones::north();
    midnight.SetStartRule(GregorianCalendar::April, 1, 0);
    CHECK(rolled(on(2000, 3, 2, 0, 30, midnight), Calendar::FieldDayOfMonth, -1) == "2000-04-01 AD 01:30");
}

TEST_CASE("GregorianCalendar: rolling an offset reads the clock in the new one")
{
    auto calendar = on(2000, 0, 1);
    const std::int64_t time = calendar.getTime();
    calendar.roll(Calendar::FieldZoneOffset, zones::hour);
    CHECK(calendar.getTime() == time - zones::hour);
    calendar.setTime(time);
    calendar.roll(Calendar::FieldDstOffset, -1);
    CHECK(calendar.getTime() == time - zones::hour);
}

TEST_CASE("GregorianCalendar: rolling days wraps in their month, year or week at any date")
{
    const auto zone = GENERATE(from_range(zones::all()));
    std::mt19937_64 random(7);
    for (int i = 0; i < 3000; ++i) {
        const auto start =
            withWeeks(zones::at(static_cast<std::int64_t>(random()) % 80000000000000, zone), 1 + i % 7, 1);
        const int year = start.get(Calendar::FieldYear), amount = static_cast<int>(random());
        const int yearLength =
            start.yearLength(start.get(Calendar::FieldEra) == GregorianCalendar::AD ? year : 1 - year);
        const int monthLength = start.monthLength(start.get(Calendar::FieldMonth));
        for (const auto& [field, length] :
             {std::pair(Calendar::FieldDayOfMonth, monthLength), std::pair(Calendar::FieldDayOfYear, yearLength),
              std::pair(Calendar::FieldDayOfWeek, 7)}) {
            auto calendar = start;
            calendar.roll(field, amount);
            const std::int64_t steps = start.get(field) - 1 + std::int64_t(amount);
            const bool wraps = calendar.get(field) - 1 == (steps % length + length) % length;
            const bool keepsYear = field == Calendar::FieldDayOfWeek || calendar.get(Calendar::FieldYear) == year;
            if (year != 1582 && !(wraps && keepsYear))
                FAIL(text(start) << ", field " << field << " by " << amount << ": " << text(calendar));
        }
    }
}
