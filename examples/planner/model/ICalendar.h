#pragma once

#include "Event.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// Calendars as other programs exchange them: iCalendar files (RFC 5545).

namespace planner {
/// Hears how much is done, now and then; what it throws ends the work.
using Progress = std::function<void(std::size_t done, std::size_t total)>;

struct ImportedCalendar {
    std::vector<Event> events;
    /// The events and lines that break the format's rules: "Line N: why".
    std::vector<std::string> leftOut;
    /// What was passed over, and how often: "the property ATTENDEE", "the component VALARM".
    std::map<std::string, int> notUnderstood;
    /// Zones whose times were taken as those of the planner's zone.
    std::set<std::string> unknownZones;

    /// What the user has to know besides the number of events, in at most 20 lines; empty when everything was
    /// understood.
    std::wstring remarks() const;
};

/// Reads the events of a file's text. `zone` is the planner's own, for an UNTIL in UTC.
/// An event that breaks the format's rules is left out. Throws Exception "Line N: ..." for what is no calendar.
ImportedCalendar readICalendar(std::string_view text, const Zone& zone, const Progress& progress = {});

/// The events as a file's text, with the rules of their zones. `zone` is as above. Throws Exception for an
/// event before the year 0 or after 9999, which the format cannot hold.
std::string writeICalendar(const std::vector<Event>& events, const Zone& zone, const Progress& progress = {});
} // namespace planner
