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
            std::printf("growth|%s|%s|%s|%u|%.3f\n", title_.c_str(), unit_.c_str(), name.c_str(), size,
                        shortest(work) / size * 1e9);
            std::fflush(stdout);
        }
    }

private:
    template <class Work> double shortest(Work& work) const
    {
        const double longEnough = clock_ == Clock::wall ? 3 : 0.5;
        // What is over soon is repeated, or the clock would take longer; what it takes is left out besides.
        constexpr double soon = 2e-4;
        const auto nothing = [](Stopwatch& watch) {
            watch.start();
            watch.stop();
        };
        double clockTakes = 1e9;
        for (int i = 0; i < 1000; ++i)
            clockTakes = std::min(clockTakes, secondsOf(nothing, clock_));
        const int times = std::max(1, static_cast<int>(soon / std::max(secondsOf(work, clock_), 1e-7)));
        const auto repeated = [&](Stopwatch& watch) {
            watch.start();
            if constexpr (!requires { work(watch); })
                for (int i = 0; i < times; ++i)
                    work();
            watch.stop();
        };
        double best = 1e9;
        const double start = secondsBy(Clock::wall);
        for (int runs = 0; runs < 3 || (runs < 1000 && secondsBy(Clock::wall) - start < longEnough); ++runs) {
            if constexpr (requires(Stopwatch & watch) { work(watch); })
                best = std::min(best, secondsOf(work, clock_) - clockTakes);
            else
                best = std::min(best, (secondsOf(repeated, clock_) - clockTakes) / times);
        }
        return best;
    }

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
