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

void more(const char* what, const char* against)
{
    const bench::Comparison taken(running("library"), running(against), bench::Clock::wall);
    const double ours = taken.ours().middle * 1e3, other = taken.other().middle * 1e3;
    std::printf("%-58s %10.1f ms, without %.1f ms: %.1f ms more (at most 5)\n", what, ours, other, ours - other);
}
} // namespace

TEST_CASE("Start")
{
    std::printf("\nStart and end of a program\n");
    more("against one with the system's DLLs that the library uses", "system");
    more("against one with the standard library alone", "standard");
}
