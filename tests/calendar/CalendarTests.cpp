#include "Test.h"

#include <tarn/GregorianCalendar.h>

#include "Private.h"
#include "Zones.h"

#include <climits>

TEST_PRIVATE(NextStamp, int GregorianCalendar::*, &GregorianCalendar::nextStamp_);

namespace {
struct Open : GregorianCalendar {
    explicit Open(const TimeZone& zone = TimeZone()) : GregorianCalendar(zone) {}
    using GregorianCalendar::areAllFieldsSet_;
    using GregorianCalendar::areFieldsSet_;
    using GregorianCalendar::internalGet;
    using GregorianCalendar::isTimeSet_;

    std::vector<bool> flags() const { return {isTimeSet_, areFieldsSet_, areAllFieldsSet_}; }
};
using Flags = std::vector<bool>;

// Counts what the generic operations of Calendar do with it; its days may be set to -3, if one believes it.
struct Counted : GregorianCalendar {
    Counted() : GregorianCalendar(zones::on(2000, 0, 15)) {}
    Cloneable* Clone() const override
    {
        ++clones;
        return GregorianCalendar::Clone();
    }
    using GregorianCalendar::roll;
    void roll(unsigned, bool up) override { steps += up ? 1 : -1; }
    int getMinimum(int) override { return -3; }
    int getGreatestMinimum(int) override { return 5; }

    mutable int clones = 0;
    int steps = 0;
};
} // namespace

TEST_CASE("Calendar: the generic roll takes single steps, and nothing but the searches copies, without a leak")
{
    Counted calendar;
    calendar.Calendar::roll(Calendar::FieldMonth, 5);
    calendar.Calendar::roll(Calendar::FieldMonth, -2);
    CHECK(calendar.steps == 3);
    for (unsigned field = 0; field < Calendar::FieldCount; ++field) {
        calendar.set(field, 1);
        calendar.add(field, 3);
        calendar.GregorianCalendar::roll(field, 1);
        calendar.setTime(951782400000);
    }
    CHECK(calendar.clones == 0);
    calendar.setLenient(false);
    const std::size_t bytes = usedBytes();
    for (int i = 0; i < 1000; ++i)
        calendar.getActualMaximum(Calendar::FieldYear);
    CHECK(usedBytes() < bytes + 50000);
    CHECK(calendar.Calendar::getActualMinimum(Calendar::FieldDayOfMonth) == 1);
    CHECK(calendar.clones == 1001);
    CHECK(zones::text(calendar) == "2000-02-29 AD 00:00:00.000");
}

TEST_CASE("Calendar: instant and fields are synchronised when asked for")
{
    Open calendar;
    calendar.setTime(0);
    CHECK(calendar.flags() == Flags{true, true, true});
    calendar.set(Calendar::FieldYear, 2000);
    CHECK(calendar.flags() == Flags{false, false, true});

    SECTION("getTime leaves the fields to be computed, and rewrites the date in a lenient calendar only")
    {
        calendar.set(Calendar::FieldDayOfMonth, 32);
        calendar.setLenient(GENERATE(true, false));
        // A calendar that is not lenient computes from fields out of range all the same.
        calendar.areFieldsSet_ = true; // As a derived class may have it.
        CHECK(calendar.getTime() == 949363200000);
        CHECK(calendar.flags() == Flags{true, !calendar.isLenient(), true});
        calendar.areFieldsSet_ = false;
        CHECK(calendar.internalGet(Calendar::FieldDayOfMonth) == (calendar.isLenient() ? 1 : 32));
        CHECK(calendar.get(Calendar::FieldDayOfWeek) == GregorianCalendar::Tuesday);
        CHECK(calendar.flags() == Flags{true, true, true});
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

TEST_CASE("GregorianCalendar: a year beyond the ends of time is rewritten as the instant that it gives")
{
    for (const int year : {292278995, -292269056, INT_MAX, INT_MIN}) {
        Open calendar, same;
        calendar.Clear();
        calendar.set(year, GregorianCalendar::March, 1);
        same.setTime(calendar.getTime());
        for (const unsigned field : {Calendar::FieldEra, Calendar::FieldYear, Calendar::FieldDayOfYear})
            CHECK(calendar.internalGet(field) == same.internalGet(field));
    }
}

TEST_CASE("GregorianCalendar: the order in which fields were set never runs out")
{
    for (int left = 0; left < 6; ++left) {
        GregorianCalendar calendar((TimeZone()));
        calendar.Clear();
        calendar.*memberOf(NextStamp()) = INT_MAX - left;
        calendar.set(2000, GregorianCalendar::March, 1);
        calendar.set(Calendar::FieldDayOfYear, 32);
        calendar.set(Calendar::FieldHour, 3);
        CHECK(zones::text(calendar) == "2000-02-01 AD 03:00:00.000");
    }
}

TEST_CASE("GregorianCalendar: limits are those of the tables")
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

TEST_CASE("GregorianCalendar: lengths of months and years, and days counted from 4713 BC")
{
    auto calendar = zones::on(4, 1, 29);
    calendar.set(Calendar::FieldEra, GregorianCalendar::BC);
    CHECK(calendar.monthLength(GregorianCalendar::February) == 28); // 4 BC is year -3.
    CHECK(calendar.yearLength() == 366);                            // By the bare number.
    CHECK(calendar.monthLength(GregorianCalendar::February, 0) == 29);
    CHECK(GregorianCalendar::julianDayToDayOfWeek(2440588) == GregorianCalendar::Thursday);
    CHECK(GregorianCalendar::julianDayToDayOfWeek(-2) == GregorianCalendar::Saturday);
    CHECK(GregorianCalendar::julianDayToDayOfWeek(1ll << 40) == GregorianCalendar::Wednesday);
    CHECK(GregorianCalendar::millisToJulianDay(-1) == 2440587);
    CHECK(GregorianCalendar::JulianDayToMillis(2440589) == 86400000);
}
