#include <catch2/catch.hpp>

#include <tarn/Pipe.h>
#include <tarn/Process.h>

#include "Expect.h"
#include "Handles.h"
#include "Streams.h"

using namespace tarn;

namespace {
SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
constexpr unsigned longTime = 20'000;

/// The child program with these commands for it.
std::string child(const std::string& commands) { return "system_child.exe " + commands; }

/// A child whose output comes through a pipe.
struct Captured {
    explicit Captured(const std::string& commands) : output(0, &inheritable)
    {
        output.keepReadEnd();
        process.create(child(commands).c_str(), nullptr, output.getWriteEnd(), output.getWriteEnd(), 0);
        output.getWriteEnd().close();
    }

    Pipe output;
    Process process;
};
} // namespace

TEST_CASE("Process: it is still active until it ends, and then has its exit code", "[system][process]")
{
    Process process(child("sleep 300 exit 17").c_str(), 0);
    CHECK(process.getExitCode() == STILL_ACTIVE);
    CHECK_FALSE(process.isSignaled());
    CHECK(process.getID() == GetProcessId(process));
    CHECK(process.getThreadID() != 0);
    CHECK(process.wait(longTime) == WindowsHandle::signaled);
    CHECK(process.getExitCode() == 17);
}

TEST_CASE("Process: a second create lets go of the first child, and no handles stay open", "[system][process]")
{
    { // The first child of a process opens handles for good.
        const Captured warmUp("exit 0");
    }
    const unsigned long handles = support::openHandles();
    {
        Process process(child("exit 1").c_str(), 0);
        process.create(child("exit 2").c_str(), 0);
        CHECK(support::openHandles() == handles + 1);
        CHECK(process.wait(longTime) == WindowsHandle::signaled);
        CHECK(process.getExitCode() == 2);
    }
    {
        Captured captured("out text");
        readAll(captured.output.getReadEnd());
    }
    CHECK(support::openHandles() == handles);
}

TEST_CASE("Process: a program that does not exist is named with the system's text", "[system][process]")
{
    const unsigned long handles = support::openHandles();
    const std::string description = "Can't create process \"no such program.exe -x\"";
    support::expectWindowsError([] { Process("no such program.exe -x", 0); }, ERROR_FILE_NOT_FOUND, description);

    Process process(child("exit 4").c_str(), 0);
    support::expectWindowsError([&] { process.create("no such program.exe -x", 0); }, ERROR_FILE_NOT_FOUND,
                                description);
    CHECK(process.wait(longTime) == WindowsHandle::signaled);
    CHECK(process.getExitCode() == 4);
    process.close();
    CHECK(support::openHandles() == handles);
    const auto error = support::thrownBy<WindowsError>([&] { process.create(nullptr, 0); });
    CHECK(std::string(error.getDescription()) == "Can't create process \"\"");
}

TEST_CASE("Process: no process has no exit code", "[system][process]")
{
    HANDLE duplicate = nullptr;
    REQUIRE(DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), GetCurrentProcess(), &duplicate, SYNCHRONIZE,
                            FALSE, 0));
    Process process;
    process.attach(duplicate);
    support::expectWindowsError([&] { process.getExitCode(); }, ERROR_ACCESS_DENIED,
                                "Can't retrieve process exit code");
}

TEST_CASE("Process: the command line stays as it is and may be as long as the platform's limit", "[system][process]")
{
    std::string longest = child("length ");
    longest.append(32'766 - longest.size(), 'x');
    const std::string copy = longest;
    Process process(longest.c_str(), 0);
    CHECK(longest == copy);
    CHECK(process.wait(longTime) == WindowsHandle::signaled);
    CHECK(process.getExitCode() == 32'766);

    const std::string tooLong = longest + std::string(100, 'x');
    const auto error = support::thrownBy<WindowsError>([&] { Process(tooLong.c_str(), 0); });
    CHECK(error.getDescription() == "Can't create process \"" + tooLong + "\"");
}

TEST_CASE("Process: output and errors are captured to the child's end", "[system][process][pipe]")
{
    Captured captured("out one err two out three");
    CHECK(readAll(captured.output.getReadEnd()) == "onetwothree");
    CHECK(captured.process.wait(longTime) == WindowsHandle::signaled);
    CHECK(captured.process.getExitCode() == 0);
}

TEST_CASE("Process: reading ends when the child dies in the middle of its output", "[system][process][pipe]")
{
    Captured captured("out half die out never");
    CHECK(readAll(captured.output.getReadEnd()) == "half");
    CHECK(captured.process.wait(longTime) == WindowsHandle::signaled);
    CHECK(captured.process.getExitCode() == 0xDEAD);
}

TEST_CASE("Process: a child sees the end of its input, for it has no end of the parent's", "[system][process][pipe]")
{
    Pipe input(0, &inheritable), output(0, &inheritable);
    input.keepWriteEnd();
    output.keepReadEnd();
    Process process;
    process.create(child("copy").c_str(), input.getReadEnd(), output.getWriteEnd(), output.getWriteEnd(), 0);
    input.getReadEnd().close();
    output.getWriteEnd().close();

    const std::string data(3000, 'd');
    input.getWriteEnd().writeFully(data.data(), 3000);
    input.getWriteEnd().close();
    CHECK(readAll(output.getReadEnd()) == data);
    CHECK(process.wait(longTime) == WindowsHandle::signaled);
}

TEST_CASE("Process: without redirection the child inherits nothing", "[system][process][pipe]")
{
    Pipe pipe(0, &inheritable);
    Process process(child("sleep 2000").c_str(), 0);
    pipe.getWriteEnd().close();
    char byte;
    CHECK(pipe.getReadEnd().read(&byte, 1) == 0);
    CHECK(process.getExitCode() == STILL_ACTIVE);
    TerminateProcess(process, 0);
    process.wait(longTime);
}
