#pragma once

#include "Days.h"

#include <tarn/TimeZone.h>

#include <string>
#include <vector>

namespace planner {
/// A time zone by its name, with the rules that the system's tables have for each year.
class Zone {
public:
    static const char* const system; ///< The name of the running system's zone: empty.

    /// Throws Exception for a name that is not known.
    explicit Zone(const std::string& name = system);

    static bool isKnown(const std::string& name);
    static std::vector<std::string> names(); ///< Those to choose from, without the system's: some of all.

    const std::string& name() const { return name_; }
    /// The rules for a year; a TimeZone holds those of one year only.
    tarn::TimeZone forYear(int year) const;

    /// As a RecurrenceSet has it: of an hour that clocks show twice the first one; of one that they leave out, an hour
    /// later.
    tarn::Time toTime(Local local) const;
    Local toLocal(const tarn::Time& time) const;

private:
    std::string name_;
};

/// The day that it is now in a zone.
inline Day today(const Zone& zone) { return dayOf(zone.toLocal(tarn::Time::now())); }
} // namespace planner
