#pragma once

#include "Days.h"

#include <tarn/RecurrenceSet.h>

#include <optional>
#include <string>
#include <vector>

namespace planner {
/// How an appointment repeats, as documents keep it: of the rules of iCalendar (RFC 5545) those that say how often, how
/// many times or until when, and for weeks on which weekdays. Months and years are those of the usual calendar, with
/// its cutover of 1582, whatever the sheet shows.
struct Recurrence {
    enum Frequency : int { daily, weekly, monthly, yearly };
    static constexpr int greatestInterval = 9999;

    Frequency frequency = daily;
    int interval = 1;
    int count = 0;              ///< How many times in all; 0 for no limit.
    std::optional<Local> until; ///< The last possible start.
    unsigned weekdays = 0;      ///< Of weekly ones: bit 0 is Sunday. Empty means the weekday of the first start.
    int weekStart = tarn::GregorianCalendar::Monday; ///< Which weeks an interval of several weeks counts.

    bool operator==(const Recurrence&) const = default;

    static constexpr unsigned bitOf(int weekday) { return 1u << (weekday - tarn::GregorianCalendar::Sunday); }

    /// The same for the library.
    tarn::RecurrenceRule rule() const;
    /// The starts from `from` up to, but not including, `to`, of an appointment that starts at `first`. A
    /// month or year that does not have the day is left out.
    std::vector<Local> starts(Local first, Local from, Local to) const;
    /// Whether all values are ones that a rule can have.
    bool isValid() const;
};

std::wstring describe(const Recurrence& rule); ///< "Every 2 weeks on Mon, Fri, 10 times".
} // namespace planner
