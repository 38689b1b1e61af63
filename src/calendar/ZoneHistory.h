#pragma once

#include <tarn/TimeZone.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace tarn {
/// What a local time stands for, of two instants of which clocks show it at either, at both or at none.
inline TimeZone::Instants instantsAmong(std::int64_t a, bool isShownAtA, std::int64_t b, bool isShownAtB)
{
    if (isShownAtA == isShownAtB)
        return {isShownAtA ? 2 : 0, std::min(a, b), std::max(a, b)};
    const Time only = isShownAtA ? a : b;
    return {1, only, only};
}

/// What clocks of a zone add to UTC, for all times: by the platform's tables for the years that these know, by their
/// first and last year for the others. In years before the first there is no daylight time.
class ZoneHistory {
public:
    using Offsets = TimeZone::Offsets;

    /// That of a zone by its platform name, which throws WindowsError as TimeZone::named() does. Lives to the end of
    /// the program, and may be asked from several threads.
    static const ZoneHistory& of(const _TIME_DYNAMIC_ZONE_INFORMATION& zone);

    /// At an instant, in milliseconds since the epoch.
    Offsets at(std::int64_t time) const;
    /// As TimeZone::instantsOf().
    TimeZone::Instants instantsOf(std::int64_t local) const;
    /// The standard offset and the daylight amount of the last year that is known; no daylight time is 0.
    Offsets latest() const { return latest_; }
    bool isConstant() const { return periods_.size() == 1; }

private:
    struct Period {
        std::int64_t begin;
        Offsets offsets;
    };
    struct Year;

    explicit ZoneHistory(const _TIME_DYNAMIC_ZONE_INFORMATION& zone);
    void append(int year, const Year& rules);
    void change(std::int64_t time, const Offsets& offsets);

    std::vector<Period> periods_;
    std::int64_t begin_, end_; // Of what the periods tell; other times are like those some cycles away.
    Offsets latest_;
};
} // namespace tarn
