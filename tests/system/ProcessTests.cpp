#include "Test.h"

#include <tarn/CommandLine.h>
#include <tarn/Job.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/RunProcess.h>
#include <tarn/StandardStreams.h>
#include <tarn/WindowsModule.h>

#include "ScratchFolder.h"

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

TEST_CASE("Process: a second create lets go of the first child, and no handles stay open")
{
    { // The first child of a process opens handles for good.
        const Captured warmUp("exit 0");
    }
    const unsigned long handles = openHandles();
    {
        Process process(child("exit 1").c_str(), 0);
        process.create(child("exit 2").c_str(), 0);
        CHECK(openHandles() == handles + 1);
        CHECK(endOf(process) == 2);
        const std::string description = "Can't create process \"no such program.exe -x\"";
        expectWindowsError([&] { process.create("no such program.exe -x", 0); }, ERROR_FILE_NOT_FOUND, description);
        CHECK(process.getExitCode() == 2);
        expectWindowsError([&] { process.create(static_cast<const char*>(nullptr), 0); }, "Can't create process \"\"");
    }
    CHECK(openHandles() == handles);
}

TEST_CASE("Process: without the rights there is no exit code and no end")
{
    Process process;
    process.attach(duplicateOf(GetCurrentProcess(), SYNCHRONIZE));
    expectWindowsError([&] { process.getExitCode(); }, ERROR_ACCESS_DENIED, "Can't retrieve process exit code");
    expectWindowsError([&] { process.terminate(18); }, ERROR_ACCESS_DENIED, "Can't end process");
}

TEST_CASE("Process: the command line stays as it is and may be as long as the platform's limit")
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

TEST_CASE("Process: a child sees the end of its input, and its output is captured to its end, also when it dies")
{
    Captured captured("copy out one err two die out never");
    const std::string data(3000, 'd');
    captured.input.getWriteEnd().writeFully(data.data(), 3000);
    captured.input.getWriteEnd().close();
    CHECK(readAll(captured.output.getReadEnd()) == data + "onetwo");
    CHECK(endOf(captured.process) == 0xDEAD);
}

TEST_CASE("Process: without redirection the child inherits nothing, and is still active until it ends")
{
    Pipe pipe(0, &inheritable);
    Process process(child("sleep 60000").c_str(), 0);
    pipe.getWriteEnd().close();
    char byte;
    CHECK(pipe.getReadEnd().read(&byte, 1) == 0);
    CHECK(process.getExitCode() == STILL_ACTIVE);
    CHECK(process.getID() == GetProcessId(process));
    CHECK(process.getThreadID() != 0);
    process.terminate(17);
    CHECK(endOf(process) == 17);
}

TEST_CASE("Process: a wide name, folder, environment and window state reach the child")
{
    const ScratchFolder folder;
    const std::wstring program = folder.file(L"\x0416 \x4E2D.exe"), path = folder.path();
    const auto original =
        WindowsModule(GetModuleHandleW(nullptr)).getFilenameW().getDirectory() + L"\\system_child.exe";
    REQUIRE(CopyFileW(original, program.c_str(), TRUE));
    Environment environment = Environment::current();
    environment.set(L"\x0416", L"\x4E2D");
    ProcessOptions options{.workingFolder = path.c_str(), .environment = environment, .showWindow = SW_SHOWMAXIMIZED};
    const auto written = [&](const wchar_t* command, const wchar_t* argument) {
        const CommandLine line = CommandLine(program.c_str()).add(command).add(argument);
        return runProcess(line, RunOptions{.start = options}).output;
    };
    CHECK(written(L"out", L"\x4E2D\xE9") == w2a(L"\x4E2D\xE9", CP_UTF8));
    CHECK(written(L"folder", L"") == w2a(path, CP_UTF8));
    CHECK(written(L"variable", L"\x0416") == w2a(L"\x4E2D", CP_UTF8));
    CHECK(written(L"window", L"") == "3");
    options = {};
    options.environment = Environment();
    CHECK(written(L"variable", L"PATH") == "(none)");
    CHECK(written(L"window", L"") == "none");

    options.workingFolder = L"C:\\no such folder";
    expectWindowsError([&] { Process(L"system_child.exe", options); }, "Can't create process \"system_child.exe\"");
    const auto error = thrownBy<WindowsError>([] { Process(L"\x0416", ProcessOptions()); });
    CHECK(error.getError() == ERROR_FILE_NOT_FOUND);
    CHECK(std::wstring(whatW(error)).starts_with(L"Can't create process \"\x0416\": "));
}

TEST_CASE("Environment: names are the same in any case, and the block is in their order")
{
    Environment environment;
    CHECK(environment.getBlock() == std::wstring(2, L'\0'));
    environment.set(L"zebra", L"1");
    environment.set(L"Path", L"a=b");
    environment.set(L"PATH", L"");
    environment.set(L"=C:", L"C:\\x");
    CHECK(environment.getBlock() == std::wstring(L"=C:=C:\\x\0Path=\0zebra=1\0\0", 24));
    CHECK(environment.find(L"path") == BasicString<wchar_t>());
    environment.remove(L"ZEBRA");
    environment.remove(L"ZEBRA");
    CHECK_FALSE(environment.find(L"zebra"));
    expectWindowsError([&] { environment.set(L"a=b", L""); }, ERROR_INVALID_NAME,
                       "No environment variable is named \"a=b\"");
    expectWindowsError([&] { environment.set(L"", L""); }, "No environment variable is named \"\"");
    SetEnvironmentVariableW(L"TarnTest", L"x=y");
    SetEnvironmentVariableW(L"=Q:", L"Q:\\");
    CHECK(Environment::current().find(L"TARNTEST") == BasicString<wchar_t>(L"x=y"));
    CHECK(Environment::current().find(L"=q:") == BasicString<wchar_t>(L"Q:\\"));
}

TEST_CASE("Process: the child inherits the handles that are listed, and no other")
{
    Pipe listed(0, &inheritable), other(0, &inheritable), output(0, nullptr);
    const auto number = [](const WindowsFile& file) {
        return std::to_wstring(reinterpret_cast<ULONG_PTR>(file.getHandle()));
    };
    const std::wstring line =
        L"system_child.exe to " + number(listed.getWriteEnd()) + L" to " + number(other.getWriteEnd()) + L" out done";
    void* const end = listed.getWriteEnd();
    Process process(line.c_str(), ProcessOptions{.stdOut = output.getWriteEnd(), .handles = {end, end}});
    output.getWriteEnd().close();
    CHECK(readAll(output.getReadEnd()) == "done");
    CHECK(endOf(process) == 0);
    CHECK(listed.waitForData(0));
    CHECK_FALSE(other.waitForData(0));
}

TEST_CASE("Job: the whole tree ends with it, or when it is told so")
{
    const auto sleeperOf = [](Pipe& output, const Job& job) {
        const Process process(L"system_child.exe sleeper sleep 60000",
                              ProcessOptions{.stdOut = output.getWriteEnd(), .job = &job});
        output.getWriteEnd().close();
        char number[20] = "";
        output.getReadEnd().read(number, 19);
        Process sleeper;
        sleeper.attach(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, std::strtoul(number, nullptr, 10)));
        return sleeper;
    };
    Pipe first(0, nullptr), second(0, nullptr);
    {
        Job job;
        job.endWithOwner();
        const Process sleeper = sleeperOf(first, job);
        CHECK(job.getProcessCount() == 2);
        job.close();
        CHECK(endOf(sleeper) == 0);
    }
    const Job job;
    const Process suspended(L"system_child.exe", {.job = &job, .creationFlags = CREATE_SUSPENDED});
    const WindowsHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, suspended.getThreadID()));
    CHECK((job.getProcessCount() == 1 && ResumeThread(thread) == 1)); // As it was asked for.
    CHECK(endOf(suspended) == 0);
    const Process sleeper = sleeperOf(second, job);
    job.terminate(42);
    CHECK(endOf(sleeper) == 42);
    CHECK(second.getReadEnd().read(nullptr, 0) == 0);
    expectWindowsError([&] { job.add(sleeper); }, "Can't put process into job");
    Job closed;
    closed.close();
    expectWindowsError([&] { closed.terminate(0); }, "Can't end job");
    expectWindowsError([&] { closed.endWithOwner(); }, "Can't change limits of job");
    Pipe third(0, nullptr);
    expectWindowsError([&] { Process(L"system_child.exe", {.stdOut = third.getWriteEnd(), .job = &closed}); },
                       "Can't put process into job");
    third.getWriteEnd().close();
    CHECK(third.waitForData(20'000)); // The child has ended, and its end of the pipe with it.
}
