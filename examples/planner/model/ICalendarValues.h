#pragma once

#include "ContentLines.h"
#include "Event.h"

#include <optional>
#include <string>

// The values of iCalendar's properties.

namespace planner {
struct CalendarTime {
    Local local;
    bool isDate;      ///< Without a time of day.
    std::string zone; ///< "UTC", what TZID says, or empty for the time of wherever the reader is.
};

/// One value of a date or time property; there may be several in a line. Throws Exception "Line N: ..."
CalendarTime readTime(const ContentLine& line, const std::string& value);
/// "19971102" or "19971102T133000". Throws Exception for a year that has not four digits.
std::string writeTime(Local local, bool isDate);

/// Milliseconds; days and weeks are apart, because clocks that change make some days longer.
struct Duration {
    std::int64_t days, time;
};
Duration readDuration(const ContentLine& line);

/// A rule, or none when it has a part that a Recurrence cannot express. `until` turns the end, in UTC, into
/// the event's clock. Throws Exception "Line N: ..."
std::optional<Recurrence> readRule(const ContentLine& line, const CalendarTime& start, const Zone& clock);
std::string writeRule(const Event& event, const Zone& clock);
} // namespace planner
