#include "Test.h"

#include <tarn/ServiceProgram.h>
#include <tarn/WindowsFile.h>

#include <future>

#include "Services.h"

namespace {
constexpr DWORD timeoutMs = 60'000;
constexpr const wchar_t* finishName = L"Global\\TarnTestFinish"; // Whoever made it first says when.

/// Works until it is stopped; the first argument behind the name says how it ends, or to which file the others go.
class Sample : public ServiceProgram {
public:
    Sample() : ServiceProgram(L"TarnTest") {}

    unsigned long run(const std::vector<BasicString<wchar_t>>& arguments) override
    {
        const BasicString<wchar_t> how = arguments.size() > 1 ? arguments[1] : BasicString<wchar_t>();
        if (how == L"error")
            throw WindowsError(ERROR_DISK_FULL, "Can't save");
        if (how == L"exception")
            throw std::runtime_error("Can't go on");
        if (how == L"7")
            return 7;
        if (how.contains(L":\\")) {
            std::string all;
            for (std::size_t i = 2; i < arguments.size(); ++i)
                all += w2a(arguments[i], CP_UTF8) + ";";
            WindowsFile::overwrite(how).writeFully(all.data(), static_cast<unsigned>(all.size()));
        }
        begun.set();
        getStopEvent().wait(INFINITE);
        getGoOnEvent().wait(INFINITE); // Also when it was paused.
        reportProgress(1000);
        Event(finishName, true, true).wait(INFINITE);
        return 0;
    }

    const Event begun{true, false};

protected:
    bool canPause() const override { return true; }
    void onCommand(unsigned long command) override // Of which 150 is for who goes on.
    {
        if (getGoOnEvent().isSignaled() != (command == 150))
            throw std::runtime_error("Can't obey");
    }
};

/// How the service ended that was started so.
SERVICE_STATUS_PROCESS endOf(const Service& service, const wchar_t* how)
{
    const wchar_t* arguments[] = {how};
    try {
        service.start(arguments, 1);
    } catch (const WindowsError& error) { // Under Wine one that has ended by then counts as not started.
        CHECK((isWine() && error.getError() == ERROR_SERVICE_REQUEST_TIMEOUT));
    }
    CHECK(service.waitForState(SERVICE_STOPPED, timeoutMs));
    return service.getStatus();
}
} // namespace

TEST_CASE("is a service", "[.]") // Started by the service manager.
{
    try {
        Sample().runAsService();
    } catch (const std::exception&) { // The service manager has been told.
    }
}

TEST_CASE("ServiceProgram: the service manager starts, pauses, commands and stops it")
{
    Installed installed("TarnTest");
    Service& service = installed.service;
    service.start();
    REQUIRE(service.waitForState(SERVICE_RUNNING, timeoutMs));
    CHECK((service.getStatus().dwControlsAccepted & SERVICE_ACCEPT_PAUSE_CONTINUE) != 0);
    CHECK_FALSE(service.waitForState(SERVICE_STOPPED, 20));
    service.control(SERVICE_CONTROL_PAUSE);
    CHECK(service.waitForState(SERVICE_PAUSED, timeoutMs));
    service.control(151);
    service.control(SERVICE_CONTROL_CONTINUE);
    CHECK(service.waitForState(SERVICE_RUNNING, timeoutMs));
    service.control(150);
    service.control(SERVICE_CONTROL_PAUSE);
    const Event finish(finishName, true, false);
    service.stop();
    for (int i = 0; i < 2000 && service.getStatus().dwWaitHint != 1000; ++i)
        Sleep(10);
    const SERVICE_STATUS_PROCESS stopping = service.getStatus();
    CHECK((stopping.dwCurrentState == SERVICE_STOP_PENDING && stopping.dwCheckPoint == 2));
    CHECK(stopping.dwControlsAccepted == 0);
    finish.set();
    CHECK(service.waitForState(SERVICE_STOPPED, timeoutMs));
    CHECK(service.getStatus().dwWin32ExitCode == NO_ERROR);
    expectWindowsError([&] { service.control(150); }, ERROR_SERVICE_NOT_ACTIVE, "Can't control service");
}

TEST_CASE("ServiceProgram: how it fails is told to the service manager")
{
    Installed installed("TarnTest");
    CHECK(endOf(installed.service, L"error").dwWin32ExitCode == ERROR_DISK_FULL);
    CHECK(endOf(installed.service, L"exception").dwWin32ExitCode == ERROR_EXCEPTION_IN_SERVICE);
    const SERVICE_STATUS_PROCESS status = endOf(installed.service, L"7");
    CHECK(status.dwWin32ExitCode == ERROR_SERVICE_SPECIFIC_ERROR);
    CHECK((status.dwServiceSpecificExitCode == 7 && status.dwWaitHint == 0 && status.dwCheckPoint == 0));
    installed.service.start();
    REQUIRE(installed.service.waitForState(SERVICE_RUNNING, timeoutMs));
    installed.service.control(200);
    CHECK(installed.service.waitForState(SERVICE_STOPPED, timeoutMs));
    CHECK(installed.service.getStatus().dwWin32ExitCode == ERROR_EXCEPTION_IN_SERVICE);
}

TEST_CASE("ServiceProgram: in the console and as an object it runs until it is asked to stop")
{
    Sample sample;
    auto console = std::async(std::launch::async, [&] { return sample.runInConsole(); });
    CHECK(sample.begun.wait(timeoutMs) == WindowsHandle::signaled);
    sample.requestStop();
    CHECK(console.get() == 0);
    CHECK(Sample().run({L"name", L"7"}) == 7);

    struct Failing : Sample {
        unsigned long run(const std::vector<BasicString<wchar_t>>& arguments) override
        {
            CHECK(arguments == CommandLine::own());
            return Sample::run({L"name", L"exception"});
        }
    } failing;
    for (int i = 0; i < 2; ++i)
        expectError<std::runtime_error>([&] { failing.runInConsole(); }, "Can't go on");
}

TEST_CASE("Service: its description, start type and restarts are kept")
{
    Installed installed("TarnTest");
    Service& service = installed.service;
    service.setDescription(L"\x0416");
    service.setStartType(SERVICE_AUTO_START);
    CHECK((service.getConfiguration().startType == SERVICE_AUTO_START &&
           service.getConfiguration().description == L"\x0416"));
    try {
        service.setRestart(5000, 2);
    } catch (const WindowsError& error) {
        WARN("Restarts for errors are not known, as under Wine");
        CHECK((isWine() && error.getError() == ERROR_INVALID_LEVEL));
    }
    Service reader;
    reader.open(ServiceManager(nullptr, SC_MANAGER_CONNECT), L"TarnTest", SERVICE_QUERY_STATUS);
    expectWindowsError([&] { reader.setDescription(L"x"); }, ERROR_ACCESS_DENIED, "Can't configure service");
    expectWindowsError([&] { reader.setStartType(SERVICE_DISABLED); }, ERROR_ACCESS_DENIED, "Can't configure service");
    const Service none;
    expectWindowsError([&] { none.getStatus(); }, ERROR_INVALID_HANDLE, "Can't query service status");
}
