#pragma once

#include <ScratchFolder.h>
#include <ScratchKey.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

// What a program does with the library, as often as there are calls of the platform in it, each time with
// another of them failing.

namespace failures {
/// What every run of a scenario finds as it was for the first: an empty folder, an empty key.
class Place {
public:
    Place();

    /// Removes what the former run left, with the platform's own calls.
    void clear() const;
    /// Whether nothing beside the folder was touched.
    bool isWholeOutside() const;

    std::wstring file(const wchar_t* name) const { return folder_ + L"\\" + name; }
    std::string narrowFile(const char* name) const;
    HKEY key() const { return key_.key(); }

private:
    support::ScratchFolder root_;
    support::ScratchKey key_;
    std::wstring folder_;
};

/// Something that users do with the library, from its beginning to its end. Passes when no call fails.
struct Scenario {
    const char* name;
    std::function<void(const Place&)> run;
};

std::vector<Scenario> foundationScenarios();
std::vector<Scenario> systemScenarios();
std::vector<Scenario> registryScenarios();
std::vector<Scenario> comScenarios();
std::vector<Scenario> windowScenarios();
std::vector<Scenario> graphicsScenarios();

/// What a scenario finds wrong although it heard of no failure is a fault of the library.
inline void expect(bool asExpected, const char* what)
{
    if (!asExpected)
        throw std::logic_error(what);
}

/// One run: the scenario, the call that fails in it, which of its calls, and whether all later ones do.
struct Run {
    const Scenario* scenario;
    std::size_t call;
    unsigned at;
    bool always;

    std::string name() const;
};

/// The failing calls that are passed over on purpose, from the table of docs/failing-calls.md.
class PassedOver {
public:
    PassedOver();

    /// Whether the page has a row for it; notes that the row was of use.
    bool covers(const Run& run);
    /// Whether the row says "not run": the failing call alone keeps the program from going on.
    bool forbids(const Run& run);
    /// Rows that no run has needed.
    std::vector<std::string> unused() const;

private:
    struct Row {
        std::string calls, scenarios, text;
        bool used = false;
    };
    Row* find(const Run& run);

    std::vector<Row> rows_;
};
} // namespace failures
