#pragma once

#include "ICalendar.h"

#include <tarn/TimeText.h>

#include <string>
#include <vector>

// What the tests of the planner write their examples with.

/// "2026-11-21T09:00" as what a clock shows.
inline planner::Local at(const char* text) { return tarn::parseISOTime(text); }

inline std::vector<planner::Local> times(const std::vector<const char*>& texts)
{
    std::vector<planner::Local> times;
    for (const char* text : texts)
        times.push_back(at(text));
    return times;
}

/// A calendar's text around the lines of one event, each with its line break.
inline std::string calendarWith(const std::string& lines)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" + lines + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

inline planner::Event eventIn(const std::string& lines, const char* zone = "Europe/Berlin")
{
    return planner::readICalendar(calendarWith("UID:1\r\n" + lines), planner::Zone(zone)).events.at(0);
}

inline std::vector<planner::Local> startsOf(const std::string& lines, const char* from, const char* to)
{
    return eventIn(lines).starts(at(from), at(to));
}
