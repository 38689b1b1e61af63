#pragma once

#include "Clocks.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace bench {
/// Lines of a picture that tools/benchmark draws: what a unit of some work takes, over the size of the work.
class Growth {
public:
    Growth(std::string title, std::string unit, Clock clock = Clock::processor)
        : title_(std::move(title)), unit_(std::move(unit)), clock_(clock)
    {
    }

    /// The shortest of some runs, for each size, of what `make(size)` gives.
    template <class Make> void line(const std::string& name, const std::vector<unsigned>& sizes, Make make) const
    {
        for (const unsigned size : sizes) {
            auto work = make(size);
            secondsOf(work, clock_);
            double best = 1e9;
            const double start = secondsBy(Clock::wall);
            for (int runs = 0; runs < 3 || (runs < 1000 && secondsBy(Clock::wall) - start < longEnough); ++runs)
                best = std::min(best, secondsOf(work, clock_));
            std::printf("growth|%s|%s|%s|%u|%.3f\n", title_.c_str(), unit_.c_str(), name.c_str(), size,
                        best / size * 1e9);
            std::fflush(stdout);
        }
    }

private:
    static constexpr double longEnough = 0.5;

    std::string title_, unit_;
    Clock clock_;
};

/// 10 to the powers from `first` to `last`.
inline std::vector<unsigned> tens(unsigned first, unsigned last)
{
    std::vector<unsigned> sizes;
    for (unsigned power = 0, size = 1; power <= last; ++power, size *= 10)
        if (power >= first)
            sizes.push_back(size);
    return sizes;
}
} // namespace bench
