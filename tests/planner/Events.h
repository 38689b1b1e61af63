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
std::string calendarWith(const std::string& lines);
/// What is read from these lines, by a planner in Berlin.
planner::Event eventIn(const char* lines);
std::vector<planner::Local> startsOf(const char* lines, const char* from, const char* to);
