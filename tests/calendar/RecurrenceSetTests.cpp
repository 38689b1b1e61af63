#include "Test.h"

#include "RecurrenceModel.h"

#include <tarn/GregorianCalendar.h>
#include <tarn/RecurrenceSet.h>
#include <tarn/TimeText.h>

#include <limits>
#include <random>
#include <sstream>

namespace {
const TimeZone& newYork()
{
    static const TimeZone zone = TimeZone::named("America/New_York");
    return zone;
}

/// At nine when the start is but a day.
RecurrenceSet setOf(std::string start, const std::string& rule, const TimeZone& zone = newYork())
{
    if (start.size() == 10)
        start += "T09:00";
    RecurrenceSet set(parseISOTime(start.c_str(), zone), zone);
    set.setRule(parseRecurrenceRule(rule.c_str()));
    return set;
}

/// The first ones as clocks in the zone show them, "1997-09-02 03 1997-10-01@10:20": what differs from the date before,
/// and the time when it is not nine.
std::string shown(const RecurrenceSet& set, std::ptrdiff_t most)
{
    std::ostringstream all;
    std::string month;
    for (auto walk = set.begin(); most-- > 0 && walk != set.end(); ++walk) {
        const std::string text = formatISOTimeA(*walk, set.getZone()), time = text.substr(11, 5);
        const bool isSameMonth = text.starts_with(month) && !month.empty();
        all << (month.empty() ? "" : " ") << text.substr(isSameMonth ? 8 : 0, isSameMonth ? 2 : 10);
        if (time != "09:00")
            all << '@' << time;
        month = text.substr(0, 7);
    }
    return all.str();
}

struct Example {
    const char* start;
    const char* rule;
    const char* dates; // All of them, or the first ones of a rule without an end.
};

// Of those of RFC 5545 each kind: sections 3.8.5.3 and 3.3.10.
const Example examples[] = {
    {"1997-09-02", "FREQ=WEEKLY;UNTIL=19971224T000000Z",
     "1997-09-02 09 16 23 30 1997-10-07 14 21 28 1997-11-04 11 18 25 1997-12-02 09 16 23"},
    {"1997-09-01", "FREQ=WEEKLY;INTERVAL=2;UNTIL=19971224T000000Z;WKST=SU;BYDAY=MO,WE,FR",
     "1997-09-01 03 05 15 17 19 29 1997-10-01 03 13 15 17 27 29 31 1997-11-10 12 14 24 26 28 1997-12-08 10 12 22"},
    {"1997-09-28", "FREQ=MONTHLY;BYMONTHDAY=-3", "1997-09-28 1997-10-29 1997-11-28 1997-12-29 1998-01-29 1998-02-26"},
    {"1997-01-01", "FREQ=YEARLY;INTERVAL=3;COUNT=10;BYYEARDAY=1,100,200",
     "1997-01-01 1997-04-10 1997-07-19 2000-01-01 2000-04-09 2000-07-18 2003-01-01 2003-04-10 2003-07-19 2006-01-01"},
    {"1997-05-19", "FREQ=YEARLY;BYDAY=20MO", "1997-05-19 1998-05-18 1999-05-17"},
    {"1997-05-12", "FREQ=YEARLY;BYWEEKNO=20;BYDAY=MO", "1997-05-12 1998-05-11 1999-05-17"},
    {"1996-11-05", "FREQ=YEARLY;INTERVAL=4;BYMONTH=11;BYDAY=TU;BYMONTHDAY=2,3,4,5,6,7,8",
     "1996-11-05 2000-11-07 2004-11-02"},
    {"1997-09-04", "FREQ=MONTHLY;COUNT=3;BYDAY=TU,WE,TH;BYSETPOS=3", "1997-09-04 1997-10-07 1997-11-06"},
    // The standard's list of errata has the end at 21:00 in UTC; as it is printed, that is at one o'clock.
    {"1997-09-02", "FREQ=HOURLY;INTERVAL=3;UNTIL=19970902T210000Z", "1997-09-02 02@12:00 02@15:00"},
    {"1997-09-02", "FREQ=MINUTELY;INTERVAL=90;COUNT=4", "1997-09-02 02@10:30 02@12:00 02@13:30"},
    {"1997-08-05", "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=MO", "1997-08-05 10 19 24"},
    {"1997-08-05", "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=SU", "1997-08-05 17 19 31"},
    {"1997-01-05T08:30", "FREQ=YEARLY;INTERVAL=2;BYMONTH=1;BYDAY=SU;BYHOUR=8,9;BYMINUTE=30",
     "1997-01-05@08:30 05@09:30 12@08:30 12@09:30 19@08:30 19@09:30 26@08:30 26@09:30 1999-01-03@08:30 03@09:30 "
     "10@08:30 10@09:30 17@08:30 17@09:30 24@08:30 24@09:30 31@08:30 31@09:30"},
    {"1997-09-30", "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1",
     "1997-09-30 1997-10-31 1997-11-28 1997-12-31 1998-01-30"},
};

/// A number of numbers.
std::vector<int> some(std::mt19937& dice, int least, int greatest)
{
    std::vector<int> numbers(dice() % 4);
    for (int& number : numbers)
        do
            number = least + static_cast<int>(dice() % static_cast<unsigned>(greatest - least + 1));
        while (least < 0 && number == 0);
    return numbers;
}

/// Any rule whose starts lie on whole minutes, at most some in an hour.
RecurrenceRule anyRule(std::mt19937& dice)
{
    const auto often = [&](unsigned one) { return dice() % one == 0; };
    for (;;) {
        RecurrenceRule rule;
        rule.frequency = static_cast<RecurrenceRule::Frequency>(1 + dice() % 6);
        rule.interval = static_cast<int>(1 + dice() % (often(3) ? 40 : 3));
        rule.weekStart = static_cast<GregorianCalendar::DayOfWeek>(1 + dice() % 7);
        if (often(2))
            rule.byHour = some(dice, 0, 23);
        if (often(2))
            rule.byMinute = some(dice, 0, 59);
        if (often(3))
            for (const int month : some(dice, 0, 11))
                rule.byMonth.push_back(static_cast<GregorianCalendar::Month>(month));
        if (often(3))
            rule.byMonthDay = some(dice, -31, 31);
        if (often(4))
            rule.byYearDay = some(dice, -366, 366);
        if (often(4))
            rule.byWeekNo = some(dice, -53, 53);
        if (often(2))
            for (const int day : some(dice, 1, 7))
                rule.byDay.push_back(
                    {static_cast<GregorianCalendar::DayOfWeek>(day), often(2) ? static_cast<int>(dice() % 11) - 5 : 0});
        if (often(3))
            rule.bySetPos = some(dice, -5, 5);
        try {
            rule.validate();
            return rule;
        } catch (const Exception&) { // Another throw, then.
        }
    }
}
} // namespace

TEST_CASE("RecurrenceSet: the examples of RFC 5545")
{
    for (const Example& example : examples) {
        INFO(example.rule);
        const std::string rule = example.rule, dates = example.dates;
        const bool hasEnd = rule.find("COUNT") != rule.npos || rule.find("UNTIL") != rule.npos;
        CHECK(shown(setOf(example.start, rule), std::ranges::count(dates, ' ') + 1 + hasEnd) == dates);
    }
    const std::string hours = ";BYHOUR=9,10,11,12,13,14,15,16";
    CHECK(shown(setOf("1997-09-02", "FREQ=MINUTELY;INTERVAL=20" + hours), 100) ==
          shown(setOf("1997-09-02", "FREQ=DAILY;BYMINUTE=0,20,40" + hours), 100));
    RecurrenceSet fridays = setOf("1997-09-02", "FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13");
    fridays.exclude(fridays.getStart());
    CHECK(shown(fridays, 2) == "1998-02-13 1998-03-13");
}

TEST_CASE("RecurrenceSet: seconds and milliseconds are the first start's unless the rule names them")
{
    const auto& [rule, expected] = GENERATE(table<const char*, const char*>({
        {"FREQ=DAILY", "2026-01-02T09:00:07.250Z"},
        {"FREQ=HOURLY", "2026-01-01T10:00:07.250Z"},
        {"FREQ=MINUTELY;BYSECOND=60", "2026-01-01T09:00:59.250Z"},
        {"FREQ=SECONDLY;BYSECOND=60,5", "2026-01-01T09:00:59.250Z"},
        {"FREQ=SECONDLY;INTERVAL=1800", "2026-01-01T09:30:07.250Z"},
    }));
    CHECK(formatISOTimeA(*++setOf("2026-01-01T09:00:07.250", rule, TimeZone()).begin()) == expected);
}

TEST_CASE("RecurrenceSet: any rule has the starts that a model finds day by day")
{
    std::mt19937 dice(5545);
    std::size_t found = 0;
    for (int i = 0; i < 500; ++i) {
        const RecurrenceRule rule = anyRule(dice);
        const std::int64_t start = (std::int64_t(dice() % 50000000) - 25000000) * 60000;
        INFO(formatRecurrenceRuleA(rule) << " from " << formatISOTimeA(start));
        const std::int64_t end = start + (rule.frequency < RecurrenceRule::Frequency::daily ? 4 : 1000) * 86400000LL;
        RecurrenceSet set(start);
        set.setRule(rule);
        const std::vector<Time> all = set.between(start, end);
        CHECK(all == RecurrenceModel(rule, start).startsBefore(end));
        found += all.size();
        const Time middle = start + (end - start) / 2;
        CHECK(set.between(middle, end) == std::vector<Time>(std::ranges::lower_bound(all, middle), all.end()));
    }
    CHECK(found > 10000);
}

TEST_CASE("RecurrenceSet: times that clocks leave out or show twice")
{
    // Daylight time began on 2007-03-11 at two and ended on 2007-11-04 at two.
    RecurrenceSet set = setOf("2007-03-10T02:30", "FREQ=DAILY;COUNT=3");
    CHECK(shown(set, 9) == "2007-03-10@02:30 11@03:30 12@02:30");
    CHECK(shown(setOf("2007-03-10T02:30", "FREQ=DAILY;UNTIL=20070311T023000"), 9) == "2007-03-10@02:30 11@03:30");
    set.leaveOutMissing();
    CHECK(shown(set, 9) == "2007-03-10@02:30 12@02:30 13@02:30");

    set = setOf("2007-11-03T01:30", "FREQ=DAILY;COUNT=3");
    CHECK(*++set.begin() == parseISOTime("2007-11-04T05:30Z")); // In daylight time still.

    set = setOf("2007-03-11T01:00", "FREQ=MINUTELY;INTERVAL=30;COUNT=6");
    CHECK(shown(set, 9) == "2007-03-11@01:00 11@01:30 11@03:00 11@03:30 11@04:00 11@04:30");
    set = setOf("2007-03-10T02:00", "FREQ=DAILY;BYHOUR=2,3;BYMINUTE=0,45;COUNT=8");
    CHECK(shown(set, 9) == "2007-03-10@02:00 10@02:45 10@03:00 10@03:45 11@03:00 11@03:45 12@02:00 12@02:45");
    set = setOf("2007-03-01T02:00", "FREQ=MINUTELY;INTERVAL=15;BYHOUR=2");
    CHECK(*set.from(parseISOTime("2007-03-11T07:20Z")) == parseISOTime("2007-03-11T07:30Z")); // Half past two is.
}

TEST_CASE("RecurrenceSet: the end, single times more and less, and a start that the rule does not name")
{
    CHECK(shown(setOf("2026-01-01", "FREQ=DAILY;UNTIL=20260103T140000Z"), 9) ==
          "2026-01-01 02 03"); // Nine o'clock itself.
    CHECK(shown(setOf("2026-01-01", "FREQ=DAILY;UNTIL=20260103T135959Z"), 9) == "2026-01-01 02");
    CHECK(shown(setOf("2026-01-01", "FREQ=DAILY;UNTIL=20260103T090000"), 9) == "2026-01-01 02 03");
    CHECK(shown(setOf("2026-01-01", "FREQ=DAILY;UNTIL=20260103"), 9) == "2026-01-01 02 03");
    CHECK(shown(setOf("2026-01-01", "FREQ=DAILY;UNTIL=20250101"), 9) == "2026-01-01");
    CHECK(shown(setOf("2026-01-01", "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=1;COUNT=2"), 9) == "2026-01-01 2026-02-01");

    RecurrenceSet set = setOf("2026-01-01", "FREQ=DAILY;COUNT=4");
    const auto at = [](const char* text) { return parseISOTime(text, newYork()); };
    for (const char* text : {"2026-01-02T10:00", "2025-12-31T09:00", "2026-01-02T09:00", "2026-01-02T10:00"})
        set.add(at(text));
    set.exclude(at("2026-01-03T09:00"));
    CHECK(shown(set, 9) == "2025-12-31 2026-01-01 02 02@10:00 04");
    CHECK(set.between(at("2026-01-02T09:00"), at("2026-01-04T09:00")).size() == 2);
    CHECK(set.from(at("2026-02-01")) == std::default_sentinel);
    RecurrenceRule wrong;
    wrong.interval = 0;
    CHECK_THROWS_AS(set.setRule(wrong), Exception);
    CHECK(set.getRule()->count == 4);
    const auto walk = set.from(at("2026-01-02T10:00"));
    set.exclude(at("2026-01-04T09:00")); // Too late for it.
    auto copy = walk;
    CHECK(++copy != std::default_sentinel);
    CHECK(*copy == at("2026-01-04T09:00"));
    CHECK(*walk == *copy);
    CHECK(set.from(std::numeric_limits<std::int64_t>::max()) == std::default_sentinel);
    CHECK(set.between(at("2026-01-01"), std::numeric_limits<std::int64_t>::min()).empty());
    RecurrenceSet once(set.getStart(), newYork());
    once.exclude(set.getStart());
    CHECK(once.begin() == once.end());
}

TEST_CASE("RecurrenceSet: what never matches, or no more, ends")
{
    for (const char* rule :
         {"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=DAILY;BYMONTH=2;BYMONTHDAY=30",
          "FREQ=SECONDLY;INTERVAL=60;BYSECOND=30", "FREQ=HOURLY;INTERVAL=24;BYHOUR=3",
          "FREQ=SECONDLY;INTERVAL=7;BYDAY=MO;BYHOUR=0;BYMINUTE=0;BYSECOND=1", "FREQ=YEARLY;INTERVAL=2147483647",
          "FREQ=MONTHLY;BYDAY=MO;BYSETPOS=6", "FREQ=MINUTELY;BYMINUTE=0;BYSETPOS=2"}) {
        INFO(rule);
        CHECK(shown(setOf("2026-01-06", rule), 2) == "2026-01-06");
    }
    for (const char* rule : {"FREQ=YEARLY", "FREQ=MONTHLY", "FREQ=WEEKLY", "FREQ=DAILY", "FREQ=HOURLY"})
        CHECK(shown(setOf("9999-12-31T23:00", rule, TimeZone()), 2) == "9999-12-31@23:00");
    CHECK(shown(setOf("9998-12-30", "FREQ=YEARLY"), 9) == "9998-12-30 9999-12-30");
    CHECK(shown(setOf("2096-02-29", "FREQ=YEARLY"), 3) == "2096-02-29 2104-02-29 2108-02-29");
}

TEST_CASE("RecurrenceSet: dates are those of a calendar with its cutover")
{
    // In Gregorian dates: the 3rd of October 1582 was the 13th, and ten dates behind the 4th were none.
    const auto& [start, rule, dates] = GENERATE(table<const char*, const char*, const char*>({
        {"1582-10-13", "FREQ=DAILY;COUNT=4", "1582-10-13 14 15 16"},
        {"1582-09-20", "FREQ=MONTHLY;COUNT=3", "1582-09-20 1582-11-10 1582-12-10"},
        {"1582-10-10", "FREQ=MONTHLY;BYMONTHDAY=-1,-18;COUNT=4", "1582-10-10 14 31 1582-11-13"},
        {"1582-10-11", "FREQ=MONTHLY;BYDAY=2FR;COUNT=2", "1582-10-11 22"},
        {"1582-01-11", "FREQ=YEARLY;BYYEARDAY=277,278;COUNT=3", "1582-01-11 1582-10-14 15"},
    }));
    CHECK(shown(setOf(start, rule, TimeZone()), 9) == dates);
}
