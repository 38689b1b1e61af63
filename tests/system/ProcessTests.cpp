#include <catch2/catch.hpp>

#include <tarn/Pipe.h>
#include <tarn/Process.h>

#include "Expect.h"
#include "Handles.h"
#include "Streams.h"

using namespace tarn;
using support::expectWindowsError;

namespace {
SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};

/// The child program with these commands for it.
std::string child(const std::string& commands) { return "system_child.exe " + commands; }

unsigned long endOf(const Process& process)
{
    CHECK(process.wait(20'000) == WindowsHandle::signaled);
    return process.getExitCode();
}

/// A child whose input and output go through pipes.
struct Captured {
    explicit Captured(const std::string& commands) : input(0, &inheritable), output(0, &inheritable)
    {
        input.keepWriteEnd();
        output.keepReadEnd();
        process.create(child(commands).c_str(), input.getReadEnd(), output.getWriteEnd(), output.getWriteEnd(), 0);
        input.getReadEnd().close();
        output.getWriteEnd().close();
    }

    Pipe input, output;
    Process process;
};
} // namespace

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
        CHECK(endOf(process) == 2);
        const std::string description = "Can't create process \"no such program.exe -x\"";
        expectWindowsError([&] { process.create("no such program.exe -x", 0); }, ERROR_FILE_NOT_FOUND, description);
        CHECK(process.getExitCode() == 2);
        expectWindowsError([&] { process.create(nullptr, 0); }, "Can't create process \"\"");
    }
    CHECK(support::openHandles() == handles);
}

TEST_CASE("Process: no process has no exit code", "[system][process]")
{
    const HANDLE self = GetCurrentProcess();
    HANDLE duplicate = nullptr;
    REQUIRE(DuplicateHandle(self, self, self, &duplicate, SYNCHRONIZE, FALSE, 0));
    Process process;
    process.attach(duplicate);
    expectWindowsError([&] { process.getExitCode(); }, ERROR_ACCESS_DENIED, "Can't retrieve process exit code");
}

TEST_CASE("Process: the command line stays as it is and may be as long as the platform's limit", "[system][process]")
{
    std::string longest = child("length ");
    longest.append(32'766 - longest.size(), 'x');
    const std::string copy = longest;
    Process process(longest.c_str(), 0);
    CHECK(longest == copy);
    CHECK(endOf(process) == 32'766);

    const std::string tooLong = longest + std::string(100, 'x');
    expectWindowsError([&] { Process(tooLong.c_str(), 0); }, "Can't create process \"" + tooLong + "\"");
}

TEST_CASE("Process: output and errors are captured to the child's end, also when it dies", "[system][process][pipe]")
{
    Captured captured("out one err two die out never");
    CHECK(readAll(captured.output.getReadEnd()) == "onetwo");
    CHECK(endOf(captured.process) == 0xDEAD);
}

TEST_CASE("Process: a child sees the end of its input, for it has no end of the parent's", "[system][process][pipe]")
{
    Captured captured("copy");
    const std::string data(3000, 'd');
    captured.input.getWriteEnd().writeFully(data.data(), 3000);
    captured.input.getWriteEnd().close();
    CHECK(readAll(captured.output.getReadEnd()) == data);
    CHECK(endOf(captured.process) == 0);
}

TEST_CASE("Process: without redirection the child inherits nothing, and is still active until it ends",
          "[system][process][pipe]")
{
    Pipe pipe(0, &inheritable);
    Process process(child("sleep 2000").c_str(), 0);
    pipe.getWriteEnd().close();
    char byte;
    CHECK(pipe.getReadEnd().read(&byte, 1) == 0);
    CHECK(process.getExitCode() == STILL_ACTIVE);
    CHECK(process.getID() == GetProcessId(process));
    CHECK(process.getThreadID() != 0);
    TerminateProcess(process, 17);
    CHECK(endOf(process) == 17);
}
