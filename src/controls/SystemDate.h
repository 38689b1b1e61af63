#pragma once

#include <tarn/Windows.h>

#include <chrono>

// Days as the controls take them.

namespace tarn {
inline SYSTEMTIME toSystemDate(const std::chrono::year_month_day& date)
{
    SYSTEMTIME result{};
    result.wYear = static_cast<WORD>(static_cast<int>(date.year()));
    result.wMonth = static_cast<WORD>(static_cast<unsigned>(date.month()));
    result.wDay = static_cast<WORD>(static_cast<unsigned>(date.day()));
    return result;
}

inline std::chrono::year_month_day fromSystemDate(const SYSTEMTIME& time)
{
    using namespace std::chrono;
    return {year(time.wYear), month(time.wMonth), day(time.wDay)};
}
} // namespace tarn
