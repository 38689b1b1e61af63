#pragma once

#include "Days.h"

#include <map>

namespace planner {
/// The holidays of a year and their names: those of fixed dates, and those that move with Easter. There
/// are none before the year 326, when Easter got its rule.
std::map<Day, const wchar_t*> holidaysOf(int year, const Reckoning& reckoning);

/// Easter Sunday, by the rule of the calendar that counts in that spring. None before 326.
std::optional<Day> easterOf(int year, const Reckoning& reckoning);
} // namespace planner
