#pragma once

#include "Recurrence.h"
#include "Zone.h"

#include <optional>
#include <string>
#include <vector>

namespace planner {
/// What an appointment says, as a plain value that may go from thread to thread.
struct Event {
    std::wstring uid; ///< Tells it from all others in the world.
    std::wstring subject, place, note, category;
    bool allDay = false;
    /// By the clock of `zone`; of an all-day event two midnights.
    Local start = 0, end = 0;
    std::string zone = Zone::system; ///< The system's name stands for whatever zone the planner is set to.
    std::optional<Recurrence> recurrence;
    std::vector<Local> exceptions; ///< Starts at which it does not take place.

    bool operator==(const Event&) const = default;

    /// The starts, by its own clock, from `from` up to, but not including, `to`.
    std::vector<Local> starts(Local from, Local to) const;
    /// False when a repetition with an end has lost all its starts to the exceptions.
    bool takesPlace() const;
    /// Throws Exception with a sentence for the user when it cannot be kept so.
    void validate() const;
};

std::wstring newUID();
} // namespace planner
