#pragma once

#include "Clocks.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace bench {
/// Keeps the optimiser from dropping what computes `value`.
template <class T> void keep(const T& value) { asm volatile("" : : "g"(&value) : "memory"); }

/// The middle one of some numbers, and the two between which the middle of infinitely many lies, 19 times of 20.
struct Median {
    explicit Median(std::vector<double> samples)
    {
        std::sort(samples.begin(), samples.end());
        const std::size_t count = samples.size(), last = count - 1;
        const double size = static_cast<double>(count);
        const auto outside = static_cast<std::size_t>(std::max(0.0, (size - 1.96 * std::sqrt(size)) / 2));
        low = samples[outside];
        middle = (samples[last / 2] + samples[count / 2]) / 2;
        high = samples[last - outside];
    }

    double low, middle, high;
};

/// What two pieces of work take, measured by turns until the ratio is steady or the time is up.
class Comparison {
public:
    template <class Ours, class Other> Comparison(Ours ours, Other other, Clock clock)
    {
        constexpr double longEnough = 4; // Seconds for a row, and more when five turns take longer.
        constexpr double shortWork = 0.1;
        constexpr std::size_t fewest = 9, fewestOfLong = 5;
        constexpr double steady = 0.015;
        const double start = secondsBy(Clock::wall);
        for (;;) {
            addTurn(ours, other, clock, !ours_.empty() && ours_[0] + others_[0] < shortWork ? 3 : 1);
            const bool timeIsUp = secondsBy(Clock::wall) - start > longEnough;
            if (ratios_.size() < (timeIsUp ? fewestOfLong : fewest))
                continue;
            const Median ratio(ratios_);
            if (timeIsUp || ratio.high - ratio.low < steady * ratio.middle)
                break;
        }
    }

    Median ours() const { return Median(ours_); }
    Median other() const { return Median(others_); }
    Median ratio() const { return Median(ratios_); }

private:
    // A turn takes the shortest of some times of each: what is longer was disturbed.
    template <class Ours, class Other> void addTurn(Ours& ours, Other& other, Clock clock, int rounds)
    {
        double best = 1e9, otherBest = 1e9;
        for (int round = 0; round < rounds; ++round) {
            const bool oursFirst = (ratios_.size() + static_cast<std::size_t>(round)) % 2 == 0;
            if (oursFirst)
                best = std::min(best, secondsOf(ours, clock));
            otherBest = std::min(otherBest, secondsOf(other, clock));
            if (!oursFirst)
                best = std::min(best, secondsOf(ours, clock));
        }
        ours_.push_back(best);
        others_.push_back(otherBest);
        ratios_.push_back(best / otherBest);
    }

    std::vector<double> ours_, others_, ratios_;
};

/// A table of ratios: what the library takes, divided by what a user would write or pick instead takes.
class Ratios {
public:
    explicit Ratios(const std::string& title)
    {
        std::printf("\n%s\n%-58s %10s %10s %7s %15s %7s\n", title.c_str(), "", "ours ms", "other ms", "ratio", "spread",
                    "at most");
    }

    /// Measures both by turns and prints a row; it is missed when the whole spread of the ratio is above the limit.
    template <class Ours, class Other>
    void row(const std::string& what, double limit, Ours ours, Other other, Clock clock = Clock::processor)
    {
        const Comparison taken(ours, other, clock);
        const Median ratio = taken.ratio();
        std::printf("%-58s %10.3f %10.3f %7.2f %7.2f-%-7.2f %7.2f%s\n", what.c_str(), taken.ours().middle * 1e3,
                    taken.other().middle * 1e3, ratio.middle, ratio.low, ratio.high, limit,
                    ratio.low > limit ? "  MISSED" : "");
        std::fflush(stdout);
    }
};
} // namespace bench
