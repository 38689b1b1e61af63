#include <catch2/catch.hpp>

#include <tarn/GregorianCalendar.h>

#include "Private.h"
#include "Zones.h"

#include <climits>
#include <memory>
#include <vector>

using tarn::Calendar;
using tarn::GregorianCalendar;

TEST_PRIVATE(Stamps, int (GregorianCalendar::*)[17], &GregorianCalendar::stamps_);
TEST_PRIVATE(NextStamp, int GregorianCalendar::*, &GregorianCalendar::nextStamp_);
TEST_PRIVATE(EpochDay, std::int64_t (GregorianCalendar::*)(), &GregorianCalendar::getEpochDay);
TEST_PRIVATE(Validate, bool (GregorianCalendar::*)(), &GregorianCalendar::validateFields);

namespace {
int stampOf(GregorianCalendar& calendar, int field) { return (calendar.*memberOf(Stamps()))[field]; }

struct Open : GregorianCalendar {
    explicit Open(const tarn::TimeZone& zone = tarn::TimeZone()) : GregorianCalendar(zone) {}
    using GregorianCalendar::areAllFieldsSet_;
    using GregorianCalendar::areFieldsSet_;
    using GregorianCalendar::floorDivide;
    using GregorianCalendar::internalGet;
    using GregorianCalendar::isGregorian;
    using GregorianCalendar::isLeapYear;
    using GregorianCalendar::isTimeSet_;
    using GregorianCalendar::normalizedGregorianCutover;

    std::vector<bool> flags() const { return {isTimeSet_, areFieldsSet_, areAllFieldsSet_}; }
};
using Flags = std::vector<bool>;

// A calendar of one field, 3 to 7 at this date, that counts its steps.
struct Dial : Calendar {
    explicit Dial(int& clones) : Calendar(tarn::TimeZone()), clonesMade(clones) {}
    Cloneable* Clone() const override
    {
        ++clonesMade;
        return new Dial(*this);
    }
    void computeTime() override {}
    void computeFields() override { value = value < 3 ? 3 : value; }
    int internalGet(unsigned) const override { return value; }
    void internalSet(int, int v) override { value = v; }
    void set(unsigned, int v) override
    {
        value = v;
        areFieldsSet_ = false;
    }
    void add(unsigned, int) override {}
    using Calendar::roll;
    void roll(unsigned, bool up) override { steps += up ? 1 : -1; }
    int getMinimum(int) override { return 1; }
    int getMaximum(int) override { return 7; }
    int getGreatestMinimum(int) override { return 5; }
    int getLeastMaximum(int) override { return 7; }
    int getActualMaximum(int) override { return 7; }

    int& clonesMade;
    int value = 5;
    int steps = 0;
};
} // namespace

TEST_CASE("Calendar: the generic roll takes single steps and the actual minimum is searched", "[calendar]")
{
    int clones = 0;
    Dial dial(clones);
    dial.roll(0u, 5);
    dial.roll(0u, -2);
    dial.roll(0u, 0);
    CHECK(dial.steps == 3);
    CHECK(dial.getActualMinimum(0) == 3);
    CHECK(clones == 1);
    CHECK(dial.value == 5);
}

TEST_CASE("Calendar: instant and fields are synchronised when asked for", "[calendar]")
{
    Open calendar;
    calendar.setTime(0);
    CHECK(calendar.flags() == Flags{true, true, true});
    calendar.set(Calendar::FieldYear, 2000);
    CHECK(calendar.flags() == Flags{false, false, true});

    SECTION("getTime in a lenient calendar leaves the fields to be computed")
    {
        CHECK(calendar.getTime() == 946684800000);
        CHECK(calendar.flags() == Flags{true, false, true});
        CHECK(calendar.get(Calendar::FieldDayOfWeek) == GregorianCalendar::Saturday);
        CHECK(calendar.flags() == Flags{true, true, true});
    }
    SECTION("getTime in a calendar that is not lenient leaves the flag as set() made it")
    {
        calendar.setLenient(false);
        calendar.getTime();
        CHECK(calendar.flags() == Flags{true, false, true});
        CHECK(calendar.get(Calendar::FieldDayOfWeek) == GregorianCalendar::Saturday);
    }
    SECTION("getTime rewrites the date from the fields in a lenient calendar only")
    {
        calendar.set(Calendar::FieldDayOfMonth, 32);
        calendar.setLenient(GENERATE(true, false));
        calendar.getTime();
        // A calendar that is not lenient computes from fields out of range all the same.
        CHECK(calendar.getTime() == 949363200000);
        CHECK(calendar.internalGet(Calendar::FieldDayOfMonth) == (calendar.isLenient() ? 1 : 32));
        CHECK(calendar.get(Calendar::FieldMonth) == GregorianCalendar::February);
    }
    SECTION("Clear forgets every state")
    {
        calendar.Clear(Calendar::FieldYear);
        CHECK(calendar.flags() == Flags{false, false, false});
        CHECK_FALSE(calendar.isSet(Calendar::FieldYear));
        CHECK(calendar.isSet(Calendar::FieldMonth));
        CHECK(calendar.getTime() == 0);
        CHECK(calendar.flags() == Flags{true, false, false});
    }
}

TEST_CASE("GregorianCalendar: set stamps fields in order and Clear does not start anew", "[calendar]")
{
    GregorianCalendar calendar((tarn::TimeZone()));
    calendar.set(Calendar::FieldMonth, 5);
    calendar.set(Calendar::FieldDayOfMonth, 3);
    CHECK(calendar.isSet(Calendar::FieldMonth));
    CHECK(stampOf(calendar, Calendar::FieldMonth) == 2);
    CHECK(stampOf(calendar, Calendar::FieldDayOfMonth) == 3);
    calendar.Clear();
    CHECK_FALSE(calendar.isSet(Calendar::FieldMonth));
    calendar.set(Calendar::FieldYear, 1);
    CHECK(stampOf(calendar, Calendar::FieldYear) == 4);
    calendar.get(Calendar::FieldYear);
    CHECK(stampOf(calendar, Calendar::FieldYear) == 1);

    SECTION("stamps never run out, and keep their order")
    {
        calendar.*memberOf(NextStamp()) = INT_MAX - 2;
        calendar.set(2000, GregorianCalendar::March, 1);
        calendar.set(Calendar::FieldDayOfYear, 32);
        CHECK(stampOf(calendar, Calendar::FieldYear) < stampOf(calendar, Calendar::FieldDayOfMonth));
        CHECK(stampOf(calendar, Calendar::FieldDayOfMonth) < stampOf(calendar, Calendar::FieldDayOfYear));
        CHECK(stampOf(calendar, Calendar::FieldEra) == 1);
        CHECK(calendar.getTime() == 949363200000); // 2000-02-01
    }
}

TEST_CASE("GregorianCalendar: a new zone shows when the fields are next computed", "[calendar]")
{
    auto calendar = zones::at(0);
    calendar.SetTimeZone(zones::withOffset(zones::hour));
    CHECK(calendar.get(Calendar::FieldHourOfDay) == 0);
    CHECK(calendar.getTime() == 0);
    calendar.setTime(calendar.getTime());
    CHECK(calendar.get(Calendar::FieldHourOfDay) == 1);
    CHECK(calendar.GetTimeZone().GetStandardOffset() == zones::hour);
}

TEST_CASE("GregorianCalendar: a clone is a copy of its own", "[calendar]")
{
    auto calendar = zones::on(2000, 1, 29);
    calendar.setLenient(false);
    calendar.setFirstDayOfWeek(GregorianCalendar::Monday);
    const std::unique_ptr<GregorianCalendar> clone(static_cast<GregorianCalendar*>(calendar.Clone()));
    calendar.add(Calendar::FieldYear, 1);
    CHECK(zones::text(*clone) == "2000-02-29 AD 00:00:00.000");
    CHECK(clone->getFirstDayOfWeek() == GregorianCalendar::Monday);
    CHECK_FALSE(clone->isLenient());
}

TEST_CASE("GregorianCalendar: limits are those of the tables", "[calendar]")
{
    GregorianCalendar calendar;
    const int minimum[] = {0, 1, 0, 1, 0, 1, 1, 1, -1, 0, 0, 0, 0, 0, 0, -43200000, 0};
    const int leastMaximum[] = {1, 292269054, 11, 52, 4, 28, 365, 7, 4, 1, 11, 23, 59, 59, 999, 43200000, 3600000};
    const int maximum[] = {1, 292278994, 11, 53, 6, 31, 366, 7, 6, 1, 11, 23, 59, 59, 999, 43200000, 3600000};
    for (int field = 0; field < Calendar::FieldCount; ++field) {
        CHECK(calendar.getMinimum(field) == minimum[field]);
        CHECK(calendar.getGreatestMinimum(field) == minimum[field]);
        CHECK(calendar.getActualMinimum(field) == minimum[field]);
        CHECK(calendar.getLeastMaximum(field) == leastMaximum[field]);
        CHECK(calendar.getMaximum(field) == maximum[field]);
    }
}

TEST_CASE("GregorianCalendarBase: divisions round down", "[calendar]")
{
    int remainder = 0;
    CHECK(Open::floorDivide(std::int64_t(-1), 86400000, remainder) == -1);
    CHECK(remainder == 86399999);
    CHECK(Open::floorDivide(std::int64_t(-86400000), 86400000, remainder) == -1);
    CHECK(remainder == 0);
    CHECK(Open::floorDivide(std::int64_t(-200000000000), 146097, remainder) == -1368954);
    CHECK(remainder == 72538);
    CHECK(Open::floorDivide(-8, 7, remainder) == -2);
    CHECK(remainder == 6);
    CHECK(Open::floorDivide(-7, 7) == -1);
    CHECK(Open::floorDivide(std::int64_t(INT64_MIN), std::int64_t(86400000)) == -106751991168);
}

TEST_CASE("GregorianCalendarBase: the cutover decides the leap years before it", "[calendar]")
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
        calendar.setTime(-6857222400001);
        CHECK(zones::text(calendar) == "1752-09-02 AD 23:59:59.999");
        calendar.setTime(-6857222400000);
        CHECK(zones::text(calendar) == "1752-09-14 AD 00:00:00.000");
    }
    SECTION("never or always Gregorian")
    {
        calendar.setGregorianChange(INT64_MAX);
        CHECK(calendar.isLeapYear(1900));
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

TEST_CASE("GregorianCalendar: lengths of months and years", "[calendar]")
{
    auto calendar = zones::on(4, 1, 29);
    calendar.set(Calendar::FieldEra, GregorianCalendar::BC);
    CHECK(calendar.monthLength(GregorianCalendar::February) == 28); // 4 BC is year -3.
    CHECK(calendar.yearLength() == 366);                            // By the bare number.
    CHECK(calendar.monthLength(GregorianCalendar::February, 0) == 29);
    CHECK(calendar.yearLength(1900) == 365);
    CHECK(GregorianCalendar::julianDayToDayOfWeek(2440588) == GregorianCalendar::Thursday);
    CHECK(GregorianCalendar::julianDayToDayOfWeek(-2) == GregorianCalendar::Sunday + 6);
    CHECK(GregorianCalendar::millisToJulianDay(-1) == 2440587);
    CHECK(GregorianCalendar::JulianDayToMillis(2440589) == 86400000);
}

TEST_CASE("GregorianCalendar: the local day number truncates the second before it adds the offset", "[calendar]")
{
    const auto epochDay = [](std::int64_t time, int offset) {
        auto calendar = zones::at(time, zones::withOffset(offset));
        return (calendar.*memberOf(EpochDay()))();
    };
    CHECK(epochDay(86399999, 0) == 0);
    CHECK(epochDay(86399999, 1000) == 1);
    CHECK(epochDay(-1, 0) == 0);
    CHECK(epochDay(-1000, 0) == -1);
    CHECK(epochDay(0, -zones::hour) == -1);
}

TEST_CASE("GregorianCalendar: fields are judged by their limits and the month's length", "[calendar]")
{
    const auto isValid = [](int field, int value) {
        auto calendar = zones::on(2001, 1, 28);
        calendar.set(static_cast<unsigned>(field), value);
        return (calendar.*memberOf(Validate()))();
    };
    CHECK(isValid(Calendar::FieldDayOfMonth, 28));
    CHECK_FALSE(isValid(Calendar::FieldDayOfMonth, 29));
    CHECK_FALSE(isValid(Calendar::FieldDayOfYear, 366));
    CHECK_FALSE(isValid(Calendar::FieldDayOfWeekInMonth, 0));
    CHECK(isValid(Calendar::FieldDayOfWeekInMonth, -1));
    CHECK_FALSE(isValid(Calendar::FieldMonth, 12));
    CHECK_FALSE(isValid(Calendar::FieldSecond, 60));
}
