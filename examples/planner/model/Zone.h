#pragma once

#include "Days.h"

#include <tarn/TimeZone.h>

#include <string>
#include <vector>

namespace planner {
/// When a zone's clocks change, counted in the zone's standard time.
struct DaylightRule {
    tarn::TimeZone::Month startMonth;
    int startWeek; ///< Which Sunday of the month; -1 is the last one.
    tarn::TimeZone::Month endMonth;
    int endWeek;
    int startMinutes, endMinutes;
};

/// A time zone by its name.
class Zone {
public:
    static const char* const system; ///< The name of the running system's zone: empty.

    /// Throws Exception for a name that is not known.
    explicit Zone(const std::string& name = system);

    static bool isKnown(const std::string& name);
    static std::vector<std::string> names(); ///< Without the system's.

    const std::string& name() const { return name_; }
    int standardMinutes(int year) const;
    const DaylightRule* daylight() const { return daylight_; } ///< Null for a zone without, and for the system's.
    /// The rules for a year; a TimeZone holds those of one year only.
    tarn::TimeZone forYear(int year) const;

    /// Of an hour that clocks show twice the second one; of one that they leave out, an hour before.
    tarn::Time toTime(Local local) const;
    Local toLocal(const tarn::Time& time) const;

private:
    std::string name_;
    int standardMinutes_ = 0;
    const DaylightRule* daylight_ = nullptr;
};

/// The day that it is now in a zone.
inline Day today(const Zone& zone) { return dayOf(zone.toLocal(tarn::Time::now())); }
} // namespace planner
