#pragma once

#include <ScratchFolder.h>
#include <ScratchKey.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

// What a program does with the library, as often as there are calls of the platform in it, each time with
// another of them failing.

namespace failures {
/// Where scenarios run: an empty folder for files, one for temporary files, an empty key. The current folder is one
/// beside them, so that what deletes too much meets its canary first.
class Place {
public:
    /// Makes the place, and makes it that of this process and of those that it starts.
    Place();

    /// Whether nothing beside the folders was touched.
    bool isWholeOutside() const;
    /// Below `HKEY_CURRENT_USER`.
    const std::wstring& keyPath() const { return key_.path(); }

private:
    support::ScratchFolder root_;
    support::ScratchKey key_;
};

/// The same as a scenario sees it, in a process whose current folder is that of the place.
class WorkPlace {
public:
    explicit WorkPlace(const std::wstring& keyPath);
    WorkPlace(const WorkPlace&) = delete;
    WorkPlace& operator=(const WorkPlace&) = delete;
    ~WorkPlace() { RegCloseKey(key_); }

    /// Removes what the former run left, with the platform's own calls.
    void clear() const;
    /// Whether no temporary file is left.
    bool isTidy() const;

    std::wstring file(const wchar_t* name) const { return (folder_ / name).wstring(); }
    std::string narrowFile(const char* name) const { return (folder_ / name).string(); }
    HKEY key() const { return key_; }

private:
    std::filesystem::path folder_, temporary_;
    HKEY key_ = nullptr;
};

/// Something that users do with the library, from its beginning to its end. Passes when no call fails.
struct Scenario {
    const char* name;
    std::function<void(const WorkPlace&)> run;
};

/// All of them, in the order in which they are run.
std::vector<Scenario> allScenarios();

std::vector<Scenario> foundationScenarios();
std::vector<Scenario> systemScenarios();
std::vector<Scenario> registryScenarios();
std::vector<Scenario> comScenarios();
std::vector<Scenario> windowScenarios();
std::vector<Scenario> graphicsScenarios();
std::vector<Scenario> dialogScenarios();
std::vector<Scenario> underWayScenarios();

/// What a scenario finds wrong although it heard of no failure is a fault of the library.
inline void expect(bool asExpected, const char* what)
{
    if (!asExpected)
        throw std::logic_error(what);
}

/// The failing calls that are passed over on purpose, from the table of docs/failing-calls.md.
class PassedOver {
public:
    PassedOver();

    /// Whether the page has a row for a complaint about this call in this scenario; notes that the row was of use.
    bool covers(const std::string& call, const std::string& scenario);
    /// Rows that no complaint has needed, though they are not of Wine 8 alone.
    std::vector<std::string> unused() const;

private:
    struct Row {
        std::string calls, scenarios, text;
        bool used = false;
    };

    std::vector<Row> rows_;
};

/// Takes away the thread's messages, so that a scenario finds none of those before it.
void drainMessages();

/// What a program that ran one scenario tells of its runs, in lines on its standard output: a word for the kind, and
/// what belongs to it, with tabulators between.
namespace told {
inline const std::string run = "run";             ///< its number, its name
inline const std::string complaint = "complaint"; ///< the call, the text
inline const std::string ended = "ended";         ///< why the program does not go on
inline const std::string makes = "makes";         ///< a call that the scenario makes
inline const std::string complete = "complete";   ///< the number of all runs
} // namespace told
} // namespace failures
