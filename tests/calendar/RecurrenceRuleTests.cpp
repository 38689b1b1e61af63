#include "Test.h"

#include <tarn/GregorianCalendar.h>
#include <tarn/RecurrenceRule.h>
#include <tarn/TimeText.h>

TEST_CASE("RecurrenceRule: a text is its parts, and back")
{
    const RecurrenceRule rule =
        parseRecurrenceRule(L"byday=-2mo,fr;BYMONTH=12,1;until=19971224t093000z;WKST=SU;FREQ=YEARLY");
    CHECK(rule.frequency == RecurrenceRule::Frequency::yearly);
    CHECK(rule.byDay ==
          std::vector<RecurrenceRule::Weekday>{{GregorianCalendar::Monday, -2}, {GregorianCalendar::Friday}});
    CHECK(rule.byMonth == std::vector{GregorianCalendar::December, GregorianCalendar::January});
    CHECK(rule.until->time == parseISOTime("1997-12-24T09:30Z"));
    CHECK(rule.until->kind == RecurrenceRule::Until::Kind::utc);
    CHECK(parseRecurrenceRule("FREQ=DAILY;UNTIL=19971224T235960Z").until->time == parseISOTime("1997-12-24T23:59:59Z"));
    CHECK(formatRecurrenceRuleW(rule) == L"FREQ=YEARLY;UNTIL=19971224T093000Z;BYMONTH=12,1;BYDAY=-2MO,FR;WKST=SU");

    for (const char* text :
         {"FREQ=SECONDLY;INTERVAL=2;COUNT=3;BYYEARDAY=1,-366;BYHOUR=0,23;BYMINUTE=59;BYSECOND=60;BYSETPOS=-1",
          "FREQ=YEARLY;UNTIL=00000101;BYWEEKNO=53,-53", "FREQ=DAILY;UNTIL=99991231T235959;BYMONTHDAY=-31,31",
          "FREQ=WEEKLY", "FREQ=MINUTELY", "FREQ=HOURLY;COUNT=2147483647", "FREQ=MONTHLY;BYDAY=5SU"})
        CHECK(formatRecurrenceRuleA(parseRecurrenceRule(text)) == text);
}

TEST_CASE("RecurrenceRule: what is none is refused with the reason")
{
    const auto refuses = [](const std::string& text, const std::string& reason) {
        expectError<Exception>([&] { parseRecurrenceRule(text.c_str()); },
                               "Not a recurrence rule: \"" + text + "\": " + reason);
    };
    refuses("", "\"\" is no part of a rule");
    expectError<Exception>([] { parseRecurrenceRule(static_cast<const wchar_t*>(nullptr)); },
                           "Not a recurrence rule: \"\": \"\" is no part of a rule");
    refuses("COUNT=3", "FREQ is missing");
    refuses("FREQ=DAILY;", "\"\" is no part of a rule");
    refuses("FREQ=DAILY;SKIP=OMIT", "\"SKIP=OMIT\" is no part of a rule");
    refuses("FREQ=DAILY;FREQ=DAILY", "FREQ is there twice");
    refuses("FREQ=FORTNIGHTLY", "\"FORTNIGHTLY\" is no FREQ");
    refuses("FREQ=DAILY;BYMONTH=13", "\"13\" is no BYMONTH");
    refuses("FREQ=DAILY;BYDAY=MO,,TU", "\"\" is no BYDAY");
    refuses("FREQ=MONTHLY;BYDAY=0MO", "\"0MO\" is no BYDAY");
    refuses("FREQ=MONTHLY;BYDAY=54MO", "\"54MO\" is no BYDAY");
    refuses("FREQ=DAILY;UNTIL=19971224T235961", "\"19971224T235961\" is no UNTIL");
    for (const char* value :
         {"INTERVAL=0",      "COUNT=0",       "COUNT=99999999999", "COUNT=+-1",     "COUNT=1X",
          "BYHOUR=24",       "BYMINUTE=-1",   "BYSECOND=61",       "BYMONTHDAY=0",  "BYMONTHDAY=-32",
          "BYSETPOS=367",    "WKST=1MO",      "BYMINUTE=60",       "BYWEEKNO=54",   "BYYEARDAY=-367",
          "BYMONTH=0",       "BYDAY=-54MO",   "UNTIL=19970230",    "UNTIL=1997122", "UNTIL=19971224T240000",
          "UNTIL=19971224Z", "UNTIL=1997+101"}) {
        const std::string part = value, name = part.substr(0, part.find('='));
        refuses("FREQ=DAILY;" + part, '"' + part.substr(name.size() + 1) + "\" is no " + name);
    }
    refuses("FREQ=DAILY;COUNT=1;UNTIL=19970101", "COUNT and UNTIL exclude each other");
    refuses("FREQ=WEEKLY;BYDAY=1MO", "BYDAY has numbers in monthly and yearly rules only");
    refuses("FREQ=YEARLY;BYWEEKNO=1;BYDAY=1MO", "BYDAY has no numbers beside BYWEEKNO");
    refuses("FREQ=WEEKLY;BYMONTHDAY=1", "BYMONTHDAY is not for weekly rules");
    for (const char* every : {"FREQ=DAILY", "FREQ=WEEKLY", "FREQ=MONTHLY"}) {
        refuses(every + std::string(";BYYEARDAY=1"), "BYYEARDAY is not for daily, weekly and monthly rules");
        refuses(every + std::string(";BYWEEKNO=1"), "BYWEEKNO is for yearly rules only");
    }
    refuses("FREQ=DAILY;BYSETPOS=1", "BYSETPOS needs another BY part");
}

TEST_CASE("RecurrenceRule: values that no text gives are refused, too")
{
    using G = GregorianCalendar;
    using Change = void (*)(RecurrenceRule&);
    const std::pair<Change, const char*> rows[] = {
        {[](auto& rule) { rule.frequency = static_cast<RecurrenceRule::Frequency>(7); }, R"("FREQ=?": "7" is no FREQ)"},
        {[](auto& rule) { rule.frequency = static_cast<RecurrenceRule::Frequency>(-1); },
         R"("FREQ=?": "-1" is no FREQ)"},
        {[](auto& rule) { rule.count = -1; }, R"("FREQ=DAILY;COUNT=-1": "-1" is no COUNT)"},
        {[](auto& rule) { rule.weekStart = static_cast<G::DayOfWeek>(8); }, R"("FREQ=DAILY;WKST=?": "8" is no WKST)"},
        {[](auto& rule) { rule.byDay = {{static_cast<G::DayOfWeek>(0)}}; },
         R"("FREQ=DAILY;BYDAY=?": "0?" is no BYDAY)"},
        {[](auto& rule) { rule.byMonth = {static_cast<G::Month>(12)}; },
         R"("FREQ=DAILY;BYMONTH=13": "13" is no BYMONTH)"},
        {[](auto& rule) { rule.bySetPos = {1}; }, R"("FREQ=DAILY;BYSETPOS=1": BYSETPOS needs another BY part)"}};
    for (const auto& [change, text] : rows) {
        RecurrenceRule rule;
        change(rule);
        expectError<Exception>([&] { rule.validate(); }, std::string("Not a recurrence rule: ") + text);
    }
}

TEST_CASE("RecurrenceRule: every truncation and every changed character is a rule or refused")
{
    const std::string text =
        "FREQ=YEARLY;INTERVAL=2;UNTIL=19971224T090000Z;BYMONTH=1,12;BYDAY=-1MO,SU;BYSETPOS=-1;WKST=SU";
    int rules = 0;
    const auto read = [&rules](const std::string& damaged) {
        try {
            const RecurrenceRule rule = parseRecurrenceRule(damaged.c_str());
            CHECK(parseRecurrenceRule(formatRecurrenceRuleW(rule).c_str()) == rule);
            ++rules;
        } catch (const Exception& error) {
            CHECK_THAT(error.what(), Catch::StartsWith("Not a recurrence rule: \"" + damaged + "\": "));
        }
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        read(text.substr(0, i));
        for (const char c : {';', ',', '=', '-', '0', '9', 'S', 'm', '\xFF'})
            read(std::string(text).replace(i, 1, 1, c));
    }
    CHECK(rules > 50);
}
