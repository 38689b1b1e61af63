#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/Process.h>
#include <tarn/WindowsModule.h>

#include <string>

// What a program takes from its start over main to its end, against others that do as little.

namespace {
std::string childCommand(const char* name)
{
    const std::string self = tarn::WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameA().c_str();
    return '"' + self.substr(0, self.find_last_of('\\') + 1) + "start_" + name + ".exe\"";
}

auto running(const char* name)
{
    return [command = childCommand(name)] {
        tarn::Process child;
        child.create(command.c_str(), nullptr, nullptr, nullptr, 0);
        child.wait(INFINITE);
    };
}

} // namespace

TEST_CASE("Start")
{
    std::printf("\nStart and end of a program\n");
    constexpr int rounds = 30;
    const char* const names[] = {"library", "system", "standard"};
    double shortest[] = {1e9, 1e9, 1e9};
    for (int round = 0; round < rounds; ++round)
        for (int i = 0; i < 3; ++i) {
            const auto run = running(names[i]);
            shortest[i] = std::min(shortest[i], bench::secondsOf(run, bench::Clock::wall) * 1e3);
        }
    std::printf("with the standard library alone: %.1f ms\n", shortest[2]);
    std::printf("with the system's DLLs that the library uses: %.1f ms\n", shortest[1]);
    std::printf("with the library: %.1f ms, at most 5 more\n", shortest[0]);
}
