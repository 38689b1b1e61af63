#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

namespace bench {
/// Keeps the optimiser from dropping what computes `value`.
template <class T> void keep(const T& value) { asm volatile("" : : "g"(&value) : "memory"); }

/// Seconds that one call of `work` takes.
template <class Work> double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A table of ratios: what the library takes, divided by what a user would write or pick instead takes.
class Ratios {
public:
    explicit Ratios(const std::string& title)
    {
        std::printf("\n%s\n%-58s %10s %10s %7s %7s\n", title.c_str(), "", "ours ms", "other ms", "ratio", "at most");
    }

    /// Runs both by turns, takes the shortest time of each, and prints a row.
    template <class Ours, class Other>
    void row(const std::string& what, double limit, Ours ours, Other other, int rounds = 15)
    {
        double best = 1e9, otherBest = 1e9;
        for (int i = 0; i < rounds; ++i) {
            best = std::min(best, secondsOf(ours));
            otherBest = std::min(otherBest, secondsOf(other));
        }
        const double ratio = best / otherBest;
        std::printf("%-58s %10.3f %10.3f %7.2f %7.2f%s\n", what.c_str(), best * 1e3, otherBest * 1e3, ratio, limit,
                    ratio <= limit ? "" : "  MISSED");
        std::fflush(stdout);
    }
};
} // namespace bench
