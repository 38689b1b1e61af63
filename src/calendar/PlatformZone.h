#pragma once

#include <tarn/Windows.h>

#include "../foundation/Quoted.h"

#include <cstdint>

// What the platform's tables say of a year, in terms of clocks.

namespace tarn {
/// The years that the platform's functions take.
inline constexpr int firstPlatformYear = 1601, lastPlatformYear = 30827;

/// What is said of a zone that is not found: `Can't get time zone information of "Mars/Olympus"`.
template <class Ch> Description noInformationOf(const Ch* name)
{
    return "Can't get time zone information of " + quoted(name);
}

/// The rules of a zone for a year, or of the system's without a zone. Throws WindowsError with noInformationOf() the
/// zone, for the system's "Can't get time zone information".
TIME_ZONE_INFORMATION zoneInformation(int year, const DYNAMIC_TIME_ZONE_INFORMATION* zone);

/// The first millisecond of a year, as a UTC clock shows it.
std::int64_t newYear(int year);

/// A transition of that year, as a UTC clock shows the local time. The platform's fifth weekday is the last one.
std::int64_t transitionIn(int year, const SYSTEMTIME& date);

/// Milliseconds after midnight.
int timeOfDay(const SYSTEMTIME& time);
} // namespace tarn
