#include "Campaign.h"
#include "FailingCalls.h"

#include <catch2/catch.hpp>

#include <Apartment.h>
#include <Counts.h>
#include <Handles.h>

#include <tarn/Exception.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <thread>

// The program that the campaign starts for each scenario.

namespace failures {
namespace {
/// One run: the scenario, the call that fails in it, which of its calls, and whether all later ones do.
struct Run {
    const Scenario* scenario;
    std::size_t call;
    unsigned at;
    bool always;

    const support::PlatformCall& failing() const { return support::FailingCalls::calls()[call]; }
    std::string name() const
    {
        return std::string(scenario->name) + ", " + std::string(failing().name) +
               (always ? " from call " : " in call ") + std::to_string(at);
    }
};

void tell(const std::string& kind, const std::string& first = {}, const std::string& second = {})
{
    std::printf("%s\t%s\t%s\n", kind.c_str(), first.c_str(), second.c_str());
    std::fflush(stdout);
}

// Tells of a run that does not end, or ends the program.
class Watchdog {
public:
    Watchdog() : thread_([this] { watch(); })
    {
        former_ = std::set_terminate([] { endWith("ended the program"); });
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog()
    {
        std::set_terminate(former_);
        over_ = true;
        thread_.join();
    }

    void begin() { ++runs_; }

private:
    static void endWith(const char* what)
    {
        tell(what);
        TerminateProcess(GetCurrentProcess(), 3);
    }

    void watch()
    {
        constexpr DWORD lookMs = 50;
        constexpr int patience = 400;
        unsigned seen = 0;
        for (int looks = 0; !over_; ++looks) {
            Sleep(lookMs);
            if (seen != runs_)
                looks = 0;
            seen = runs_;
            if (looks > patience)
                endWith("does not end");
        }
    }

    std::atomic<unsigned> runs_ = 0;
    std::atomic<bool> over_ = false;
    std::terminate_handler former_ = nullptr;
    std::thread thread_;
};

// What the process has open or allocated.
struct Counters {
    unsigned long handles = support::openHandles();
    unsigned drawing = support::drawingObjects();
    unsigned user = support::userObjects();
    std::size_t bytes = support::usedBytes();
};

// What the system keeps for itself grows now and then; what grows each time is the library's.
class Growth {
public:
    void add(const Counters& before, const Counters& after)
    {
        handles_ = handles_ && after.handles > before.handles;
        drawing_ = drawing_ && after.drawing > before.drawing;
        user_ = user_ && after.user > before.user;
        bytes_ = bytes_ && after.bytes > before.bytes;
    }
    bool isAny() const { return handles_ || drawing_ || user_ || bytes_; }
    std::string text() const
    {
        return std::string(handles_ ? " handles" : "") + (drawing_ ? " drawing objects" : "") +
               (user_ ? " windows or menus" : "") + (bytes_ ? " memory" : "");
    }

private:
    bool handles_ = true, drawing_ = true, user_ = true, bytes_ = true;
};

class ScenarioRuns {
public:
    ScenarioRuns(const Scenario& scenario, const std::wstring& key, bool whole)
        : scenario_(scenario), place_(key), whole_(whole)
    {
    }

    /// From the run of this number on, where another program ended.
    void runFrom(unsigned first)
    {
        for (int warmUp = 0; warmUp < 2; ++warmUp) {
            place_.clear();
            calls_.count();
            scenario_.run(place_);
        }
        for (std::size_t call = 0; call < calls_.calls().size(); ++call)
            if (calls_.counted(call))
                tell(told::makes, std::string(calls_.calls()[call].name));
        std::vector<Run> runs = plan();
        // What is left behind on purpose is not counted, so it comes last.
        const auto leaving =
            std::stable_partition(runs.begin(), runs.end(), [](const Run& run) { return !run.failing().leaves; });
        next_ = 0;
        first_ = first;
        judgeAll({runs.begin(), leaving});
        constexpr std::ptrdiff_t atOnce = 64;
        for (auto begin = runs.begin(); begin != leaving;) {
            const auto end = begin + std::min(atOnce, leaving - begin);
            if (isNext("leaks of " + begin->name() + " and others"))
                lookForLeaks({begin, end});
            begin = end;
        }
        judgeAll({leaving, runs.end()});
        tell(told::complete, std::to_string(runs.size()));
    }

private:
    std::vector<Run> plan() const
    {
        std::vector<Run> runs;
        for (std::size_t call = 0; call < calls_.calls().size(); ++call)
            for (unsigned at = 1, last = calls_.counted(call); at <= last; ++at)
                for (const bool always : {false, true})
                    if (whole_ || isOfShortCampaign(at, last, always))
                        runs.push_back({&scenario_, call, at, always});
        return runs;
    }

    // The first call of a kind and the last, and all from the middle on.
    static bool isOfShortCampaign(unsigned at, unsigned last, bool always)
    {
        return at == 1 || at == last || (at == (last + 1) / 2 && always);
    }

    bool isNext(const std::string& name)
    {
        const unsigned number = next_++;
        if (number < first_)
            return false;
        tell(told::run, std::to_string(number), name);
        return true;
    }

    void judgeAll(std::span<const Run> runs)
    {
        for (const Run& run : runs) {
            if (!isNext(run.name()))
                continue;
            if (const std::string complaint = complaintOf(run); !complaint.empty())
                complain(run, complaint);
        }
    }

    // Counting takes longer than running, so halves are looked at only where the whole leaks.
    void lookForLeaks(std::span<const Run> runs)
    {
        constexpr int rounds = 3;
        Growth growth;
        for (int round = 0; round < rounds && growth.isAny(); ++round) {
            const Counters before;
            for (const Run& run : runs)
                complaintOf(run);
            growth.add(before, Counters());
        }
        if (!growth.isAny())
            return;
        if (runs.size() == 1)
            return complain(runs.front(), "leaks" + growth.text());
        lookForLeaks(runs.first(runs.size() / 2));
        lookForLeaks(runs.subspan(runs.size() / 2));
    }

    static void complain(const Run& run, const std::string& complaint)
    {
        tell(told::complaint, std::string(run.failing().name), run.name() + ": " + complaint);
    }

    // What is wrong with the way in which the run ended; empty when nothing is.
    std::string complaintOf(const Run& run)
    {
        place_.clear();
        watchdog_.begin();
        calls_.fail(run.call, run.at, run.always);
        const std::string complaint = complaintOfRunning();
        const unsigned failed = calls_.failed();
        calls_.stop();
        if (!failed) // Came another way this time.
            return {};
        if (complaint.empty() && !run.failing().leaves && !place_.isTidy())
            return "a temporary file is left";
        return complaint;
    }

    std::string complaintOfRunning() const
    {
        try {
            scenario_.run(place_);
            return "nobody heard of it";
        } catch (const tarn::SEHError& e) {
            return std::string("a fault, ") + e.what();
        } catch (const tarn::WindowsError& e) {
            return judged(e.getError() == support::injectedError, e);
        } catch (const tarn::COMError& e) {
            return judged(e.getHRESULT() == __HRESULT_FROM_WIN32(support::injectedError), e);
        } catch (const std::bad_alloc&) {
            return {};
        } catch (const std::exception& e) {
            return judged(false, e);
        }
    }

    static std::string judged(bool isInjected, const std::exception& e)
    {
        return isInjected ? std::string() : std::string("another error, ") + e.what();
    }

    const Scenario& scenario_;
    const WorkPlace place_;
    const bool whole_;
    support::FailingCalls calls_;
    Watchdog watchdog_;
    unsigned next_ = 0, first_ = 0;
};

std::string settingOf(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}
} // namespace
} // namespace failures

using namespace failures;

TEST_CASE("The calls of one scenario fail one after the other", "[.][one-scenario]")
{
    const support::Apartment apartment;
    const std::string key = settingOf("TARN_FAILING_KEY");
    for (const Scenario& scenario : allScenarios())
        if (scenario.name == settingOf("TARN_FAILING_SCENARIO"))
            ScenarioRuns(scenario, std::wstring(key.begin(), key.end()), !settingOf("TARN_FAILING_ALL").empty())
                .runFrom(static_cast<unsigned>(std::stoul(settingOf("TARN_FAILING_FROM"))));
}
