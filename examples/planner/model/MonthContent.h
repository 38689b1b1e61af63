#pragma once

#include "Document.h"

#include <map>
#include <vector>

namespace planner {
/// What a month's sheet shows: its weeks, whole.
struct MonthContent {
    Reckoning reckoning;
    int year = 0, month = 0;
    Day first = 0, last = 0; ///< Of the first and the last week, also of the neighbouring months.
    Day selected = 0, today = 0;
    std::vector<Occurrence> occurrences;
    std::map<Day, const wchar_t*> holidays;

    /// For the month that has the selected day.
    static MonthContent of(const Document& document, const Reckoning& reckoning, const Zone& zone, Day selected);

    int weeks() const { return static_cast<int>((last - first + 1) / 7); }
    /// How many dates the cutover took out right before the day; 0 nearly always.
    int missingBefore(Day day) const;
};
} // namespace planner
