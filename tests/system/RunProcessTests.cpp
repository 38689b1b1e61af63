#include "Test.h"

#include <tarn/CommandLine.h>
#include <tarn/Event.h>
#include <tarn/Job.h>
#include <tarn/Pipe.h>
#include <tarn/RunProcess.h>
#include <tarn/StandardStreams.h>

#include <atomic>
#include <thread>

namespace {
RunResult run(const wchar_t* commands, const RunOptions& options = {})
{
    return tryAgain([&] { return runProcess((std::wstring(L"system_child.exe ") + commands).c_str(), options); });
}
} // namespace

TEST_CASE("runProcess: input, output, errors and exit code in one call, and no handle stays open")
{
    run(L"");
    const unsigned long handles = openHandles();
    const BasicString<char> data(300'000, 'd');
    const RunResult result = run(L"copy out end err bad exit 3", RunOptions{.input = data});
    CHECK(result.output == data + "end");
    CHECK(result.errors == "bad");
    CHECK(result.exitCode == 3);
    CHECK_FALSE(result.timedOut);
    CHECK(run(L"out not\" read \"it", RunOptions{.input = data}).output == "not read it");
    CHECK(run(L"out a err b out c", RunOptions{.mergeErrors = true}).output == "abc");
    expectWindowsError([] { runProcess(L"no such program"); }, "Can't create process \"no such program\"");
    Job gone;
    gone.close();
    expectWindowsError([&] { run(L"", RunOptions{.start = {.job = &gone}}); }, "Can't put process into job");
    CHECK(openHandles() == handles);
}

TEST_CASE("runProcess: a stream that is given is used, and not captured")
{
    Pipe given(0, nullptr);
    const RunResult result = run(L"out there err here", RunOptions{.start = {.stdOut = given.getWriteEnd()}});
    given.getWriteEnd().close();
    CHECK(readAll(given.getReadEnd()) == "there");
    CHECK(result.output.empty());
    CHECK(result.errors == "here");
}

TEST_CASE("runProcess: a child that fills both streams does not wait for ever")
{
    constexpr std::size_t pieces = 10'000; // 100 MB each.
    const RunResult result = run((L"flood " + std::to_wstring(pieces)).c_str());
    CHECK(result.output.size() == pieces * 10'000);
    CHECK(result.errors.size() == pieces * 10'000);
    CHECK(result.output.find_first_not_of('o') == result.output.npos);
}

TEST_CASE("runProcess: at the time limit the whole tree ends, and what it wrote is there")
{
    RunResult result; // On a busy machine it needs longer before it writes.
    for (unsigned patienceMs = 1500; result.errors.empty() && patienceMs < 60'000; patienceMs *= 4)
        result = run(L"sleeper err late sleep 60000", RunOptions{.timeoutMs = patienceMs});
    CHECK(result.timedOut);
    CHECK(result.exitCode == ERROR_TIMEOUT);
    CHECK(result.errors == "late");
    const WindowsHandle sleeper(OpenProcess(SYNCHRONIZE, FALSE, std::strtoul(result.output.c_str(), nullptr, 10)));
    CHECK((!sleeper.isOpen() || sleeper.wait(20'000) == WindowsHandle::signaled));
}

TEST_CASE("runProcess: a signal stops it, also when the child never stops to write")
{
    const Event stop(false, false);
    std::thread stopper([&] {
        Sleep(100);
        stop.set();
    });
    const RunResult result =
        run(L"flood 4000000000", RunOptions{.stop = &stop, .onOutputLine = [](std::string_view) {}});
    stopper.join();
    CHECK((result.stopped && !result.timedOut));
    CHECK(result.exitCode == ERROR_CANCELLED);
    CHECK_FALSE(run(L"out x", RunOptions{.stop = &stop}).stopped);
    CHECK(run(L"flood 4000000000", RunOptions{.timeoutMs = 50, .onOutputLine = [](std::string_view) {}}).timedOut);
}

TEST_CASE("runProcess: a handler gets whole lines while the program runs, and its exception ends that")
{
    std::vector<std::string> lines;
    const auto note = [&](std::string_view line) { lines.emplace_back(line); };
    const RunResult result = runProcess(
        CommandLine(L"system_child.exe").add("out").add("one\r\n\ntw").add("out").add("o\nlast").add("err").add("x"),
        RunOptions{.onOutputLine = note});
    CHECK(lines == std::vector<std::string>{"one", "", "two", "last"});
    CHECK(result.output.empty());
    CHECK(result.errors == "x");

    lines.clear();
    CHECK(run(L"err last", RunOptions{.onErrorLine = note}).errors.empty());
    CHECK(lines == std::vector<std::string>{"last"});

    const auto failing = [](std::string_view line) { throw Exception(std::string(line)); };
    expectError<Exception>(
        [&] {
            runProcess(CommandLine(L"system_child.exe").add("out").add("a\nb").add("sleep").add("60000"),
                       RunOptions{.onOutputLine = failing});
        },
        "a");
}

TEST_CASE("runProcess: 8 threads run children with both pipes at the same time", "[stress]")
{
    const char* const wish = std::getenv("TARN_PROCESSES");
    const unsigned each = (wish ? static_cast<unsigned>(std::atoi(wish)) : 80u) / 8;
    std::atomic<unsigned> right = 0;
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < 8; ++thread)
        threads.emplace_back([&right, each, thread] {
            for (unsigned i = 0; i < each; ++i) {
                const std::string text = std::to_string(thread * each + i);
                const RunResult result = run(L"copy err e exit 5", RunOptions{.input = text.c_str()});
                right += result.output == text && result.errors == "e" && result.exitCode == 5;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    CHECK(right == 8 * each);
}
