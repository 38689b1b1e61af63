#include "Campaign.h"
#include "FailingCalls.h"

#include <catch2/catch.hpp>

#include <tarn/BasicString.h>
#include <tarn/MemoryStream.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>

#include <cstdlib>
#include <iostream>
#include <set>
#include <sstream>

namespace failures {
namespace {
std::string ownPath()
{
    char path[MAX_PATH];
    return std::string(path, GetModuleFileNameA(nullptr, path, MAX_PATH));
}

// Scenarios run in programs of their own, so that one that ends or hangs is started again behind the run that did it.
class Campaign {
public:
    explicit Campaign(bool whole) : whole_(whole) {}

    void run(const Scenario& scenario)
    {
        next_ = 0;
        for (bool goesOn = true; goesOn;) {
            const unsigned first = next_;
            const unsigned long code = runFrom(scenario, first);
            if (!place_.isWholeOutside())
                FAIL(lastRun_ << " changed something outside of its folders");
            if (!isComplete_)
                FAIL_CHECK(lastRun_ << ": ended with code " << code << '\n' << other_);
            goesOn = !isComplete_ && next_ > first;
        }
    }

    unsigned runs() const { return runs_; }
    const std::set<std::string>& calls() const { return calls_; }
    std::vector<std::string> unusedRows() const { return passedOver_.unused(); }

private:
    unsigned long runFrom(const Scenario& scenario, unsigned first)
    {
        const std::wstring key = place_.keyPath();
        SetEnvironmentVariableA("TARN_FAILING_SCENARIO", scenario.name);
        SetEnvironmentVariableA("TARN_FAILING_FROM", std::to_string(first).c_str());
        SetEnvironmentVariableA("TARN_FAILING_ALL", whole_ ? "1" : nullptr);
        SetEnvironmentVariableW(L"TARN_FAILING_KEY", key.c_str());
        SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
        tarn::Pipe pipe(0, &inheritable);
        pipe.keepReadEnd();
        tarn::Process program;
        program.create(('"' + ownPath() + "\" \"[one-scenario]\"").c_str(), GetStdHandle(STD_INPUT_HANDLE),
                       pipe.getWriteEnd(), GetStdHandle(STD_ERROR_HANDLE), 0);
        pipe.getWriteEnd().close();
        tarn::MemoryOutputStream output;
        output << pipe.getReadEnd();
        program.wait(INFINITE);
        isComplete_ = false;
        lastRun_ = scenario.name;
        other_.clear();
        std::istringstream lines(
            std::string(static_cast<const char*>(output.getData()), static_cast<std::size_t>(output.getSize())));
        for (std::string line; std::getline(lines, line);)
            hear(line, scenario);
        return program.getExitCode();
    }

    void hear(const std::string& line, const Scenario& scenario)
    {
        std::istringstream in(line);
        std::string kind, first, second;
        std::getline(in, kind, '\t');
        std::getline(in, first, '\t');
        std::getline(in, second, '\r');
        if (kind == told::run) {
            next_ = static_cast<unsigned>(std::stoul(first)) + 1;
            lastRun_ = second;
        } else if (kind == told::makes) {
            calls_.insert(first);
        } else if (kind == told::complete) {
            isComplete_ = true;
            runs_ += static_cast<unsigned>(std::stoul(first));
        } else if (kind != told::complaint) {
            other_ += line + '\n';
        } else if (!passedOver_.covers(first, scenario.name)) {
            FAIL_CHECK(second);
        }
    }

    const bool whole_;
    Place place_;
    PassedOver passedOver_;
    unsigned next_ = 0, runs_ = 0;
    std::set<std::string> calls_;
    bool isComplete_ = false;
    std::string lastRun_, other_;
};
} // namespace
} // namespace failures

using namespace failures;

TEST_CASE("Every call of the platform that can fail is in the campaign", "[failures]")
{
    INFO("Enter them in tests/failures/PlatformCalls.inc, or in FailingCalls.cpp when they cannot fail.");
    CHECK(support::FailingCalls::unknownImports() == std::vector<std::string>());
}

// With TARN_FAILING_CALLS=all each single call fails in turn; otherwise the first and the last of its kind.
// TARN_FAILING_CALLS may also name a scenario, which alone is run then.
TEST_CASE("A call of the platform that fails ends in its error, and leaves nothing behind", "[failures]")
{
    const char* const wish = std::getenv("TARN_FAILING_CALLS");
    const std::string chosen = wish ? wish : "";
    Campaign campaign(!chosen.empty());
    for (const Scenario& scenario : allScenarios())
        if (chosen.empty() || chosen == "all" || chosen == scenario.name)
            campaign.run(scenario);
    if (chosen.empty() || chosen == "all")
        CHECK(campaign.unusedRows() == std::vector<std::string>());
    std::cout << campaign.runs() << " runs, with " << campaign.calls().size() << " of "
              << support::FailingCalls::calls().size() << " calls of the platform\n";
    if (chosen == "all")
        for (const support::PlatformCall& call : support::FailingCalls::calls())
            if (!campaign.calls().contains(std::string(call.name)))
                std::cout << "made by no scenario: " << call.name << '\n';
}
