#include "Test.h"

#include "ContentLines.h"
#include "Events.h"
#include "SafeFile.h"
#include "Text.h"

using namespace planner;

TEST_CASE("iCalendar: texts are unfolded, unescaped and read as UTF-8")
{
    const Event event =
        eventIn("SUMMARY;LANGUAGE=\"de;x:y\";X-A=1,2:Fr\xC3\xBChst\xC3\r\n \xBC"
                "ck\\, dann\r\n\t los\r\nDESCRIPTION:a\\nb\\\\c\\;\r\n"
                "LOCATION:\xF0\x9F\x8E\xBB\r\ndtstart:20260301T080000\r\nCATEGORIES:Food\\, drink,x\r\n");
    CHECK(event.subject == L"Fr\u00FChst\u00FCck, dann los");
    CHECK(event.note == L"a\nb\\c;");
    CHECK(event.place == L"\xD83C\xDFBB");
    CHECK(event.category == L"Food, drink");
    CHECK(event.start == at("2026-03-01T08:00"));
}

TEST_CASE("iCalendar: a time is a date, a local time, in UTC or of a zone")
{
    const Event days = eventIn("DTSTART;VALUE=DATE:20260611\nDTEND;VALUE=DATE:20260614\n");
    CHECK((days.allDay && days.end - days.start == 3 * dayLength));
    CHECK(eventIn("DTSTART;VALUE=DATE:20260611\n").end == at("2026-06-12"));
    const Event flight = eventIn("DTSTART;TZID=\"America/New_York\":20260310T180000\n"
                                 "DTEND;TZID=Europe/Berlin:20260311T060000\n");
    CHECK(flight.end == at("2026-03-11T01:00")); // There daylight time has begun, and here it has not.
    // Six hours that the clocks make five.
    CHECK(eventIn("DTSTART:20260328T230000\nDURATION:PT6H\n").end == at("2026-03-29T06:00"));
}

TEST_CASE("iCalendar: what is not understood is counted and told")
{
    const ImportedCalendar calendar =
        readICalendar(calendarWith("UID:1\nDTSTART;TZID=Mars/Olympus:20260101T100000\nATTENDEE:x\nATTENDEE:y\n"
                                   "RRULE:FREQ=MONTHLY;BYDAY=2MO\nBEGIN:VALARM\nTRIGGER:-PT15M\nEND:VALARM\n") +
                          calendarWith("UID:1\nRECURRENCE-ID:20260101T100000\nDTSTART:20260101T110000\n"),
                      Zone("UTC"));
    REQUIRE(calendar.events.size() == 1);
    CHECK(calendar.events[0].zone == Zone::system);
    CHECK_FALSE(calendar.events[0].recurrence);
    CHECK(calendar.remarks() ==
          L"Not understood: a rule of repetition (only the first day is there).\n"
          L"Not understood: a single day of a series that differs (RECURRENCE-ID).\n"
          L"Not understood: the component VALARM.\nNot understood: the property ATTENDEE, 2 times.\n"
          L"The time zone \"Mars/Olympus\" is not known: its times are taken as those of your zone.\n");
}

TEST_CASE("iCalendar: what is no calendar is refused, an event that breaks the rules is left out")
{
    const auto expectRefused = [](const char* text, const char* error) {
        expectError<Exception>([&] { readICalendar(text, Zone("UTC")); }, error);
    };
    expectRefused("", "Line 1: the file is empty");
    expectRefused("VERSION:2.0\n", "Line 1: BEGIN:VCALENDAR is missing");

    const auto expectLeftOut = [](const std::string& lines, const std::string& reason) {
        INFO(lines);
        const std::string whole = "BEGIN:VEVENT\nUID:whole\nDTSTART:20260101T000000\nEND:VEVENT\n";
        const std::string bad = lines.empty() ? "" : lines + whole + "END:VCALENDAR\n";
        const auto calendar = readICalendar("BEGIN:VCALENDAR\n" + whole + "BEGIN:VEVENT\nUID:1\n" + bad, Zone("UTC"));
        CHECK(calendar.leftOut == std::vector<std::string>{reason});
        CHECK(calendar.events.size() == (lines.empty() ? 1 : 2));
    };
    expectLeftOut("", "Line 7: the file ends inside of VEVENT");
    expectLeftOut("BEGIN:VALARM\nEND:VEVENT\n", "Line 9: END:VEVENT inside of VALARM");
    const auto expectBad = [&](const std::string& lines, const std::string& reason) {
        expectLeftOut(lines + "END:VEVENT\n", reason);
    };
    expectBad("", "Line 6: the event that begins here has no DTSTART");
    expectBad("X;Y=\"a:b\n", "Line 8: a quotation mark is missing");
    expectBad("SUMMARY:\xC3(\n", "Line 8: not UTF-8");
    expectBad("END:VTODO\n", "Line 8: END:VTODO without its BEGIN");
    expectBad("SUMMARY:a\\x\nDTSTART:20260101T000000\n", "Line 8: a backslash without a meaning");
    expectBad("DTSTART:20260230T000000\n", "Line 8: Not an ISO 8601 time: \"2026-02-30T00:00:00\"");
    expectBad("DTSTART:\xC3\x84xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\n",
              "Line 8: \"\xC4xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\" is not a date or a time");
    expectBad("DTSTART:99991231T000000\nDURATION:P2D\n", "Line 8: It lies outside of the years that can be shown.");
    expectBad("DTSTART:20260102T000000\nRRULE:FREQ=DAILY;COUNT=0\n",
              "Line 9: Not a recurrence rule: \"FREQ=DAILY;COUNT=0\": \"0\" is no COUNT");
}

TEST_CASE("iCalendar: remarks fit on a screen")
{
    std::string lines = "UID:1\nDTSTART:20260101T100000\n";
    for (int i = 0; i < 100; ++i)
        lines.append("X-").append(std::to_string(i)).append(1000, 'X').append(":a\n");
    const std::wstring remarks = readICalendar(calendarWith(lines), Zone("UTC")).remarks();
    CHECK(remarks.ends_with(L"\nAnd 81 more.\n"));
    CHECK(remarks.size() < 2000);
}

TEST_CASE("iCalendar: every truncation and every changed byte is read or refused")
{
    const std::string text = calendarWith("UID:1\r\nDTSTART;TZID=Europe/Berlin:20260101T100000\r\nDURATION:PT1H\r\n"
                                          "SUMMARY:\xC3\x84\\, b\r\n c\r\nRRULE:FREQ=WEEKLY;BYDAY=MO,TU;COUNT=3\r\n");
    const auto read = [](const std::string& damaged) {
        try {
            const ImportedCalendar calendar = readICalendar(damaged, Zone("UTC"));
            for (const Event& event : calendar.events)
                event.validate();
            return calendar.leftOut.empty();
        } catch (const Exception& e) {
            CHECK(std::string(e.what()).starts_with("Line "));
            return false;
        }
    };
    REQUIRE(read(text));
    for (std::size_t length = 0; length < text.size() - 2; ++length)
        CHECK_FALSE(read(text.substr(0, length)));
    for (std::size_t i = 0; i < text.size(); ++i)
        for (const char c : {'\0', '\n', ':', ';', '9', '\xFF'})
            read(std::string(text).replace(i, 1, 1, c));
}

TEST_CASE("iCalendar: what is exported comes back the same")
{
    const std::string team = readWholeFile(widened(PLANNER_TEAM));
    const ImportedCalendar calendar = readICalendar(team, Zone("Europe/Berlin"));
    REQUIRE(calendar.events.size() == 30);
    const std::string text = writeICalendar(calendar.events, Zone("Europe/Berlin"));
    CHECK(readICalendar(text, Zone("Europe/Berlin")).events == calendar.events);
    CHECK(text.find("BEGIN:DAYLIGHT\r\nDTSTART:19700329T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\n"
                    "TZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\n") != std::string::npos);
    Event south = calendar.events[0];
    south.zone = "Australia/Sydney";
    const std::string summer = writeICalendar({south}, Zone("UTC"));
    CHECK(summer.find("BEGIN:DAYLIGHT\r\nDTSTART:19701004T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=1SU\r\n"
                      "TZOFFSETFROM:+1000\r\nTZOFFSETTO:+1100\r\n") != std::string::npos);
    for (const std::string& line : split(text, '\n'))
        CHECK((line.empty() || (line.size() <= 76 && line.ends_with('\r'))));
    std::string line("SUMMARY:");
    line.append(66, 'x').append("\xF0\x9F\x8E\xBB").append(70, 'y');
    CHECK(folded(line).substr(0, 78) == line.substr(0, 74) + "\r\n \xF0"); // The character stays whole.
}

TEST_CASE("Recurrence: rules give the starts that they name")
{
    // The weeks of an interval begin on Sunday where that is said.
    CHECK(startsOf("DTSTART:19970805T090000\nRRULE:FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=SU\n", "1997-01-01",
                   "1998-01-01") ==
          times({"1997-08-05T09:00", "1997-08-17T09:00", "1997-08-19T09:00", "1997-08-31T09:00"}));
    CHECK(startsOf("DTSTART;VALUE=DATE:20240229\nRRULE:FREQ=YEARLY;COUNT=3\n", "2024-03-01", "2100-01-01") ==
          times({"2028-02-29", "2032-02-29"}));
    CHECK(startsOf("DTSTART;VALUE=DATE:20260101\nRRULE:FREQ=DAILY\nEXDATE;VALUE=DATE:20990101,20990102\n", "2099-01-01",
                   "2099-01-04") == times({"2099-01-03"}));
}

TEST_CASE("Recurrence: the end is the last start that there may be")
{
    // 22:30 UTC is half past midnight in Berlin.
    CHECK(startsOf("DTSTART;TZID=Europe/Berlin:20260701T003000\nRRULE:FREQ=DAILY;UNTIL=20260702T223000Z\n",
                   "2026-07-02", "2027-01-01") == times({"2026-07-02T00:30", "2026-07-03T00:30"}));
    const auto count = [](const char* lines) { return startsOf(lines, "2026-01-01", "2027-01-01").size(); };
    CHECK(count("DTSTART:20260701T100000\nRRULE:FREQ=DAILY;UNTIL=20260702\n") == 2);
    CHECK(count("DTSTART;VALUE=DATE:20260701\nRRULE:FREQ=DAILY;UNTIL=20260702\n") == 2);
}
