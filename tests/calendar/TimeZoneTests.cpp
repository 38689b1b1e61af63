#include "Test.h"

#include <tarn/TimeText.h>
#include <tarn/TimeZone.h>

#include "Private.h"
#include "calendar/ZoneNames.h"
#include "Zones.h"

#include <map>

using Base = GregorianCalendarBase;
using zones::hour;

TEST_PRIVATE(SetFromPlatform, void (TimeZone::*)(const TIME_ZONE_INFORMATION&), &TimeZone::set);

namespace {
// What is added to the standard offset; weekdays follow from 2000-01-01, a Saturday.
int daylightAt(const TimeZone& zone, int month, int day, int millis, int dayOfWeek = Base::Sunday)
{
    return zone.GetOffset(Base::AD, 2000, static_cast<Base::Month>(month), day, static_cast<Base::DayOfWeek>(dayOfWeek),
                          millis) -
           zone.GetStandardOffset();
}

TimeZone::Instants expectInstants(const TimeZone& zone, const char* local, int count, const char* earlier,
                                  const char* later)
{
    const TimeZone::Instants instants = zone.instantsOf(parseISOTime(local));
    CHECK(instants.count == count);
    CHECK(formatISOTimeA(instants.earlier) == formatISOTimeA(parseISOTime(earlier)));
    CHECK(formatISOTimeA(instants.later) == formatISOTimeA(parseISOTime(later)));
    return instants;
}
} // namespace

TEST_CASE("TimeZone: a new zone and a named one are UTC")
{
    for (const TimeZone& zone : {TimeZone(), TimeZone("Europe/Berlin")}) {
        CHECK(zone.GetStandardOffset() == 0);
        CHECK_FALSE(zone.UseDaylightTime());
        CHECK(daylightAt(zone, Base::July, 1, 0) == 0);
    }
}

TEST_CASE("TimeZone: the instant of a transition belongs to what was before it")
{
    const TimeZone north = zones::northByDate(), south = zones::southByDate();
    const auto& [zone, month, day, millis, expected] = GENERATE_REF(table<const TimeZone*, int, int, int, int>({
        {&north, Base::January, 1, 0, 0},
        {&north, Base::April, 10, 2 * hour, 0},
        {&north, Base::April, 10, 2 * hour + 1, hour},
        {&north, Base::October, 20, hour, hour},
        {&north, Base::October, 20, hour + 1, 0},
        {&south, Base::January, 1, 0, hour / 2},
        {&south, Base::April, 10, hour + hour / 2, hour / 2},
        {&south, Base::April, 10, hour + hour / 2 + 1, 0},
        {&south, Base::October, 20, 2 * hour, 0},
        {&south, Base::October, 20, 2 * hour + 1, hour / 2},
    }));
    CHECK(daylightAt(*zone, month, day, millis) == expected);
}

TEST_CASE(
    "TimeZone: a weekday counted from the month's end is found on any day, from its start by the formula as it is")
{
    TimeZone zone = zones::withOffset(0, hour);
    zone.SetEndRule(Base::December, 31, 24 * hour);
    // The second one, on the 12th, as each of the month's first days finds it.
    const int second[] = {12, 10, 8, 6, 11, 9, 7, 5, 3, 8, 6, 4};
    for (const auto& [ordinal, found] : {std::pair(-1, 26), std::pair(0, 33), std::pair(-2, 19), std::pair(2, 0)}) {
        zone.SetStartRule(Base::March, ordinal, Base::Sunday, 0);
        for (int day = 1; day <= (ordinal == 2 ? 12 : 31); ++day) {
            const int dayOfWeek = (day + 2) % 7 + 1; // March 2000 began on a Wednesday.
            INFO("ordinal " << ordinal << ", day " << day);
            CHECK((daylightAt(zone, Base::March, day, 1, dayOfWeek) != 0) ==
                  (day >= (found ? found : second[day - 1])));
        }
    }
    // February has 28 days in leap years too: the last Tuesday of February 2000 is found on the 22nd.
    zone.SetStartRule(Base::February, -1, Base::Tuesday, 0);
    CHECK(daylightAt(zone, Base::February, 22, 1, Base::Tuesday) == hour);
}

TEST_CASE("TimeZone: the n-th weekday of a month is found from any day of any year")
{
    TimeZone zone = zones::withOffset(0, hour);
    zone.SetEndRuleByWeekday(Base::December, -1, Base::Sunday, 24 * hour);
    const auto& [year, month, nth, weekday, expected] = GENERATE(table<int, int, int, int, int>({
        {2000, Base::March, 1, Base::Wednesday, 1},
        {2000, Base::March, 2, Base::Sunday, 12},
        {2000, Base::March, 5, Base::Sunday, 26},
        {2000, Base::March, 5, Base::Friday, 31},
        {2000, Base::March, -2, Base::Friday, 24},
        {2000, Base::February, -1, Base::Tuesday, 29},
        {2001, Base::February, 5, Base::Wednesday, 28},
        {2004, Base::November, 1, Base::Sunday, 7},
    }));
    zone.SetStartRuleByWeekday(static_cast<Base::Month>(month), nth, static_cast<Base::DayOfWeek>(weekday), 2 * hour);
    auto calendar = zones::on(year, month, 1, 2);
    for (; calendar.get(Calendar::FieldMonth) == month; calendar.add(Calendar::FieldDayOfMonth, 1)) {
        const int day = calendar.get(Calendar::FieldDayOfMonth);
        INFO(year << ": " << zones::text(calendar));
        CHECK(zone.InDaylightTime(calendar.getTime()) == (day >= expected));
        CHECK(zone.InDaylightTime(calendar.getTime() - 1) == (day > expected));
    }
}

TEST_CASE("TimeZone: named zones have the offsets of their years")
{
    // Each with the last instants before its changes, if any, as the world's tables have them.
    const auto& [name, instant, before, after] = GENERATE(table<const char*, const char*, const char*, const char*>({
        {"Europe/Berlin", "2026-03-29T01:00", "01:59:59.999+01:00", "03:00:00.000+02:00"},
        {"W. Europe Standard Time", "2026-10-25T01:00", "02:59:59.999+02:00", "02:00:00.000+01:00"},
        {"America/New_York", "2006-04-02T07:00", "01:59:59.999-05:00", "03:00:00.000-04:00"},
        {"US/Eastern", "2007-03-11T07:00", "01:59:59.999-05:00", "03:00:00.000-04:00"},
        {"Australia/Sydney", "2024-04-06T16:00", "02:59:59.999+11:00", "02:00:00.000+10:00"},
        {"Australia/Lord_Howe", "2024-10-05T15:30", "01:59:59.999+10:30", "02:30:00.000+11:00"},
        {"Asia/Kathmandu", "2024-06-01T00:00", "05:44:59.999+05:45", "05:45:00.000+05:45"},
        {"Europe/Moscow", "2010-07-01T00:00", "03:59:59.999+04:00", "04:00:00.000+04:00"},
        {"Europe/Moscow", "2012-01-01T00:00", "03:59:59.999+04:00", "04:00:00.000+04:00"},
        {"Europe/Moscow", "2016-07-01T00:00", "02:59:59.999+03:00", "03:00:00.000+03:00"},
        {"Etc/UTC", "2024-06-01T00:00", "23:59:59.999Z", "00:00:00.000Z"},
        // The tables take time off in winter, have both changes in one month, and an end that is none.
        {"Asia/Magadan", "2016-04-23T16:00", "01:59:59.999+10:00", "03:00:00.000+11:00"},
        {"Pacific/Fiji", "2021-01-16T14:00", "02:59:59.999+13:00", "02:00:00.000+12:00"},
        {"Africa/Sao_Tome", "2018-01-01T01:00", "00:59:59.999Z", "02:00:00.000+01:00"},
    }));
    const Time time = parseISOTime(instant);
    const TimeZone zone = TimeZone::named(name, std::atoi(instant));
    INFO(name << " at " << instant);
    CHECK_THAT(formatISOTimeA(time - 1, zone), Catch::EndsWith(before));
    CHECK_THAT(formatISOTimeA(time, zone), Catch::EndsWith(after));
    const TimeZone forAllTimes = TimeZone::named(name);
    CHECK_THAT(formatISOTimeA(time - 1, forAllTimes), Catch::EndsWith(before));
    CHECK_THAT(formatISOTimeA(time, forAllTimes), Catch::EndsWith(after));
    CHECK(TimeZone::named(L"US/Eastern", 2007).GetStandardOffset() == -5 * hour);
    CHECK(TimeZone::named(L"US/Eastern").GetStandardOffset() == -5 * hour);
}

TEST_CASE("TimeZone: a name that nobody knows is an error that names it")
{
    const auto refuses = [](const auto* name, const std::string& shown) {
        const std::string text = "Can't get time zone information of \"" + shown + '"';
        expectWindowsError([&] { TimeZone::named(name, 2026); }, ERROR_FILE_NOT_FOUND, text);
        for (int i = 0; i < 2; ++i) // What was not found is not found again.
            expectWindowsError([&] { TimeZone::named(name); }, ERROR_FILE_NOT_FOUND, text);
    };
    for (const char* name : {"", "Berlin", "Europe/Berlin ", "europe/berlin"})
        refuses(name, name);
    refuses(static_cast<const char*>(nullptr), "");
    refuses(L"Mars/Olympus", "Mars/Olympus");
    refuses(std::wstring(128, L'x').c_str(), std::string(128, 'x'));
}

namespace {
std::int64_t offsetAt(const TimeZone& zone, std::int64_t seconds)
{
    const TimeZone::Offsets offsets = zone.offsetsAt(seconds * 1000);
    return (offsets.standard + offsets.daylight) / 1000;
}

// As tools/zone-names has it.
std::int64_t sumOf(const TimeZone& zone, int year)
{
    const auto beginOf = [](int ofYear) { return zones::on(ofYear, 0, 2).getTime() / 1000; };
    std::int64_t time = beginOf(year), current = offsetAt(zone, time), sum = (current + 65521) % 65521;
    for (const std::int64_t end = beginOf(year + 1); time < end;) {
        std::int64_t step = std::min(time + 43200, end);
        if (offsetAt(zone, step) != current) {
            while (step - time > 1) {
                const std::int64_t middle = (time + step) / 2;
                (offsetAt(zone, middle) != current ? step : time) = middle;
            }
            current = offsetAt(zone, step);
            sum = ((sum * 31 + step) * 31 + current) % 65521;
        }
        time = step;
    }
    return sum;
}
} // namespace

TEST_CASE("TimeZone: zones for all times agree with another implementation")
{
    if (wineVersion() != 8) // The tables of others differ from these in other years.
        return;
    // Years with more than two changes, or with other dates in the tables: a bit for each, the lowest for 2000.
    const std::map<std::string, unsigned> leftOut = {
        {"Argentina Standard Time", 0x1},   {"Egypt Standard Time", 0x4400},
        {"Georgian Standard Time", 0x10},   {"Magallanes Standard Time", 0x18000},
        {"Morocco Standard Time", 0x7f000}, {"Newfoundland Standard Time", 0x800},
        {"Russia Time Zone 11", 0x600},     {"Russia Time Zone 3", 0x600},
        {"Samoa Standard Time", 0x800},     {"Tomsk Standard Time", 0x4},
        {"Turkey Standard Time", 0x4800},   {"West Bank Standard Time", 0x800}};
    unsigned total = 0;
    for (const ZoneNames& names : zoneNames) {
        const TimeZone zone = TimeZone::named(names.windows);
        const auto bits = leftOut.find(names.windows);
        unsigned sum = 0;
        for (int year = 2000; year <= 2022; ++year) {
            const bool isLeftOut = bits != leftOut.end() && (bits->second >> (year - 2000) & 1) != 0;
            sum = sum * 31 + (isLeftOut ? 0 : static_cast<unsigned>(sumOf(zone, year)));
        }
        UNSCOPED_INFO(names.windows << ": " << sum);
        total = total * 31 + sum;
    }
    CHECK(total == 0x232d31d5); // tools/zone-names --sums
}

TEST_CASE("TimeZone: a zone for all times tells what clocks showed when its standard time changed")
{
    const auto& [name, local, count, earlier, later] =
        GENERATE(table<const char*, const char*, int, const char*, const char*>({
            {"Europe/Moscow", "2014-10-26T01:30", 2, "2014-10-25T21:30", "2014-10-25T22:30"},
            {"Asia/Pyongyang", "2018-05-04T23:45", 0, "2018-05-04T14:45", "2018-05-04T15:15"},
            {"Europe/Berlin", "2026-03-29T02:30", 0, "2026-03-29T00:30", "2026-03-29T01:30"},
            {"Europe/Berlin", "2426-03-29T12:00", 1, "2426-03-29T10:00", "2426-03-29T10:00"},
            {"America/New_York", "1500-07-01T12:00", 1, "1500-07-01T16:00", "1500-07-01T16:00"},
        }));
    const TimeZone zone = TimeZone::named(name);
    const auto instants = expectInstants(zone, local, count, earlier, later);
    // As with rules: of what is shown twice the second, of what is left out an hour before.
    CHECK(parseISOTime(local, zone) == (count == 0 ? instants.earlier : instants.later));

    SECTION("calendars reckon with the standard time of the instant")
    {
        auto calendar = zones::at(instants.later - 86400000, zone);
        const TimeZone::Offsets offsets = zone.offsetsAt(instants.later - 86400000);
        CHECK(calendar.get(Calendar::FieldZoneOffset) == offsets.standard);
        CHECK(calendar.get(Calendar::FieldDstOffset) == offsets.daylight);
        const int hourOfDay = calendar.get(Calendar::FieldHourOfDay);
        calendar.add(Calendar::FieldDayOfMonth, 2);
        CHECK(calendar.get(Calendar::FieldHourOfDay) == hourOfDay);
        CHECK(calendar.getTime() ==
              zone.instantsOf(calendar.getTime() + 1000 * offsetAt(zone, calendar.getTime() / 1000)).later);
    }
}

TEST_CASE("TimeZone: setting a rule or an offset leaves the same rules for all times")
{
    const TimeZone zone = TimeZone::named("Europe/Moscow");
    CHECK(zone.UseDaylightTime());
    CHECK(zone.GetStandardOffset() == 3 * hour);
    void (*const setters[])(TimeZone&) = {[](TimeZone& z) { z.SetDSTOffset(0); },
                                          [](TimeZone& z) { z.SetStandardOffset(3 * hour); },
                                          [](TimeZone& z) { z.SetStartRule(Base::March, 1, 0); },
                                          [](TimeZone& z) { z.SetEndRule(Base::March, 1, 0); },
                                          [](TimeZone& z) { z.SetEndRule(Base::March, 1, Base::Sunday, 0); },
                                          [](TimeZone& z) { z.SetEndRuleByWeekday(Base::March, 1, Base::Sunday, 0); }};
    for (const auto set : setters) {
        TimeZone changed = zone;
        set(changed);
        CHECK_FALSE(changed.UseDaylightTime());
        CHECK(changed.offsetsAt(Time::fromTimeT(1340000000)) == TimeZone::Offsets{3 * hour, 0}); // In 2012 it was four.
    }
    CHECK_FALSE(TimeZone::named("Asia/Tokyo").UseDaylightTime());
    CHECK(TimeZone::named("Europe/Berlin").GetDSTOffset() == hour);
    for (const auto& [year, nearest] :
         {std::pair(-1, 1601), std::pair(1600, 1601), std::pair(30828, 30827), std::pair(65537, 30827)}) {
        const TimeZone beyond = TimeZone::named("Europe/Berlin", year),
                       last = TimeZone::named("Europe/Berlin", nearest);
        CHECK(std::memcmp(&beyond, &last, sizeof last) == 0);
    }
}

TEST_CASE("TimeZone: local times that are left out or repeated are told apart")
{
    TimeZone zone = zones::withOffset(hour, hour);
    zone.SetStartRuleByWeekday(Base::March, -1, Base::Sunday, 2 * hour);
    zone.SetEndRuleByWeekday(Base::October, -1, Base::Sunday, 2 * hour);
    const auto& [local, count, earlier, later] = GENERATE(table<const char*, int, const char*, const char*>({
        {"2026-03-29T01:59:59.999", 1, "2026-03-29T00:59:59.999", "2026-03-29T00:59:59.999"},
        {"2026-03-29T02:00", 0, "2026-03-29T00:00", "2026-03-29T01:00"},
        {"2026-03-29T02:59:59.999", 0, "2026-03-29T00:59:59.999", "2026-03-29T01:59:59.999"},
        {"2026-03-29T03:00", 1, "2026-03-29T01:00", "2026-03-29T01:00"},
        {"2026-10-25T01:59:59.999", 1, "2026-10-24T23:59:59.999", "2026-10-24T23:59:59.999"},
        {"2026-10-25T02:00", 2, "2026-10-25T00:00", "2026-10-25T01:00"},
        {"2026-10-25T02:59:59.999", 2, "2026-10-25T00:59:59.999", "2026-10-25T01:59:59.999"},
        {"2026-10-25T03:00", 1, "2026-10-25T02:00", "2026-10-25T02:00"},
    }));
    expectInstants(zone, local, count, earlier, later);
    CHECK(parseISOTime(local, zone) == parseISOTime(count == 0 ? earlier : later));
    CHECK(zones::withOffset(hour).instantsOf(0).count == 1);
    if (count == 1) // What is shown is what was asked for, to the millisecond.
        CHECK_THAT(formatISOTimeA(parseISOTime(earlier), zone), Catch::StartsWith(local));
}

TEST_CASE("TimeZone: tells whether an instant lies in daylight time, which the era BC has not")
{
    CHECK_FALSE(zones::north().InDaylightTime(954032400000)); // 2000-03-26 01:00 UTC itself
    CHECK(zones::north().InDaylightTime(954032400001));
    CHECK(zones::south().InDaylightTime(946684800000)); // 2000-01-01
    CHECK_FALSE(zones::withOffset(hour).InDaylightTime(962409600000));
    CHECK(zones::north().GetOffset(Base::BC, 1, Base::July, 1, Base::Sunday, 0) == hour);
    CHECK(zones::north().GetOffset(Base::AD, 1, Base::July, 1, Base::Sunday, 0) == 2 * hour);
}

TEST_CASE("TimeZone: the platform's numbers are taken over as they are")
{
    TIME_ZONE_INFORMATION information{};
    information.Bias = -60;
    information.DaylightBias = -60;
    information.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
    information.StandardDate = {0, 10, 0, 5, 3, 30, 10, 5};
    TimeZone zone;
    const auto setFromPlatform = [&] { (zone.*memberOf(SetFromPlatform()))(information); };
    setFromPlatform();
    CHECK(zone.GetStandardOffset() == hour);
    CHECK(zone.GetDSTOffset() == hour);
    // Month 3 is April here, and the fifth "Sunday" of a 0-based count goes by the forward formula.
    CHECK(daylightAt(zone, 2, 31, 0) == 0);
    CHECK(daylightAt(zone, 4, 1, 0) == hour);
    CHECK(daylightAt(zone, 9, 31, 0) == hour);
    CHECK(daylightAt(zone, 11, 1, 0) == 0);

    SECTION("an absolute date is a fixed day")
    {
        information.DaylightDate.wYear = 2000;
        information.DaylightDate.wDay = 20;
        setFromPlatform();
        CHECK(daylightAt(zone, 3, 20, 2 * hour) == 0);
        CHECK(daylightAt(zone, 3, 20, 2 * hour + 1) == hour);
    }
    SECTION("without daylight time the rules stay untouched")
    {
        information.StandardBias = -60;
        information.DaylightDate.wMonth = 7;
        setFromPlatform();
        CHECK(zone.GetStandardOffset() == 2 * hour);
        CHECK_FALSE(zone.UseDaylightTime());
        zone.SetDSTOffset(hour);
        CHECK(daylightAt(zone, 4, 1, 0) == hour);
    }
}

TEST_CASE("TimeZone: the system's zone has the system's offsets, with rules, of a year and for all times")
{
    TIME_ZONE_INFORMATION present;
    REQUIRE(GetTimeZoneInformation(&present) != TIME_ZONE_ID_INVALID);
    CHECK(TimeZone::current().GetStandardOffset() == -60000 * (present.Bias + present.StandardBias));
    CHECK(TimeZone::current().GetDSTOffset() == 60000 * (present.StandardBias - present.DaylightBias));
    const Time now = Time::now();
    CHECK(TimeZone::ofSystem().offsetsAt(now) ==
          TimeZone::currentForYear(zones::at(now).get(Calendar::FieldYear)).offsetsAt(now));
}
