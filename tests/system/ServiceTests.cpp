#include <catch2/catch.hpp>

#include <tarn/Driver.h>
#include <tarn/Service.h>
#include <tarn/WindowsModule.h>

#include <string>

#include "Expect.h"
#include "ScratchFolder.h"

using namespace tarn;

namespace {
constexpr DWORD managerAccess = SC_MANAGER_CONNECT | SC_MANAGER_CREATE_SERVICE;

std::string programPath()
{
    return '"' + WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameA().getDirectory() +
           "\\system_service.exe\"";
}

void createService(Service& service, const char* name)
{
    service.create(ServiceManager(nullptr, managerAccess), name, "Test service", SERVICE_ALL_ACCESS,
                   SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE, programPath().c_str(),
                   nullptr, nullptr, nullptr, nullptr, nullptr);
}

/// The state of a service, or 0 when there is none of that name.
DWORD stateOf(const char* name)
{
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE service = OpenServiceA(manager, name, SERVICE_QUERY_STATUS);
    SERVICE_STATUS status{};
    if (service) {
        QueryServiceStatus(service, &status);
        CloseServiceHandle(service);
    }
    CloseServiceHandle(manager);
    return status.dwCurrentState;
}

bool reaches(const char* name, DWORD state)
{
    for (int i = 0; i < 500 && stateOf(name) != state; ++i)
        Sleep(10);
    return stateOf(name) == state;
}

/// Registers the test service for a scope.
struct Registered {
    explicit Registered(const char* serviceName) : name(serviceName) { createService(service, name); }
    ~Registered() noexcept(false)
    {
        try {
            service.stop();
        } catch (const WindowsError&) { // Not running.
        }
        service.remove();
        service.close();
        CHECK(reaches(name, 0));
    }

    const char* name;
    Service service;
};
} // namespace

TEST_CASE("Service: a program is registered, started with arguments, stopped and removed", "[system][service]")
{
    const support::ScratchFolder folder;
    const std::string file = folder.file("arguments.txt");
    const char* arguments[] = {file.c_str(), "one", "two"};
    const std::wstring wideFile = folder.file(L"arguments.txt");
    const wchar_t* wideArguments[] = {wideFile.c_str(), L"drei"};
    {
        Registered registered("TarnTestService");
        const Service& service = registered.service;
        service.start(arguments, 3);
        REQUIRE(reaches("TarnTestService", SERVICE_RUNNING));
        CHECK(folder.read("arguments.txt") == "one;two;");
        support::expectWindowsError([&] { service.start(); }, ERROR_SERVICE_ALREADY_RUNNING, "Can't start service");

        const DWORD state = registered.service.stop().dwCurrentState;
        CHECK((state == SERVICE_STOP_PENDING || state == SERVICE_STOPPED));
        REQUIRE(reaches("TarnTestService", SERVICE_STOPPED));
        service.start(wideArguments, 2);
        REQUIRE(reaches("TarnTestService", SERVICE_RUNNING));
        CHECK(folder.read("arguments.txt") == "drei;");
    }
    CHECK(stateOf("TarnTestService") == 0);
}

TEST_CASE("Service: both widths register and open the same service", "[system][service]")
{
    ServiceManager manager;
    CHECK_FALSE(manager.isOpen());
    manager.open(static_cast<const char*>(nullptr), managerAccess);
    manager.open(static_cast<const wchar_t*>(nullptr), managerAccess);
    Service service;
    service.create(manager, L"TarnTestWide", L"Wide", SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                   SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE, L"C:\\none.exe", nullptr, nullptr, nullptr, nullptr,
                   nullptr);
    Service again;
    again.open(manager, "TarnTestWide", DELETE);
    again.open(manager, L"TarnTestWide", DELETE);
    again.remove();
    again.close();
    service.close();
    CHECK(reaches("TarnTestWide", 0));
}

TEST_CASE("Service: failing calls name themselves", "[system][service]")
{
    ServiceManager manager;
    try {
        manager.open(L"no-such-machine", SC_MANAGER_CONNECT);
        WARN("The platform takes any machine for this one, as Wine does");
    } catch (const WindowsError& e) {
        CHECK(std::string(e.getDescription()) == "Can't open service manager");
        CHECK_FALSE(manager.isOpen());
    }
    manager.open(managerAccess);
    Service service;
    support::expectWindowsError([&] { service.open(manager, "TarnTestMissing", SERVICE_START); },
                                ERROR_SERVICE_DOES_NOT_EXIST, "Can't open service");
    Registered registered("TarnTestService");
    support::expectWindowsError([&] { createService(service, "TarnTestService"); }, ERROR_SERVICE_EXISTS,
                                "Can't create service");
    support::expectWindowsError([&] { registered.service.stop(); }, ERROR_SERVICE_NOT_ACTIVE, "Can't stop service");
    service.open(manager, "TarnTestService", SERVICE_QUERY_STATUS);
    support::expectWindowsError([&] { service.start(); }, ERROR_ACCESS_DENIED, "Can't start service");
    support::expectWindowsError([&] { service.remove(); }, ERROR_ACCESS_DENIED, "Can't delete service");
    service.close();

    struct Stale : ServiceManager {
        Stale() { setHandle(reinterpret_cast<SC_HANDLE>(&manager_)); }
        ~Stale() noexcept(false) { setHandle(nullptr); }
        int manager_ = 0;
    } stale;
    support::expectWindowsError([&] { stale.close(); }, ERROR_INVALID_HANDLE, "Can't close service handle");
    CHECK(stale.isOpen());
}

TEST_CASE("Driver: a service that exists is started and stopped, and stays registered", "[system][driver]")
{
    Registered registered("TarnTestDriver");
    {
        Driver driver(L"TarnTestDriver", L"ignored", L"C:\\ignored.sys");
        REQUIRE(reaches("TarnTestDriver", SERVICE_RUNNING));
        Driver second;
        second.load(L"TarnTestDriver", L"ignored", L"C:\\ignored.sys"); // Running already: no error.
        second.unload();
        REQUIRE(reaches("TarnTestDriver", SERVICE_STOPPED));
        second.unload();
    } // The first one has nothing to stop any more.
    CHECK(stateOf("TarnTestDriver") == SERVICE_STOPPED);
}

TEST_CASE("Driver: a service that load had to create is deleted by unload, also when it did not start",
          "[system][driver]")
{
    Driver driver;
    driver.unload();
    const auto error = support::thrownBy<WindowsError>(
        [&] { driver.load(L"TarnTestMissing", L"Missing", L"C:\\missing\\missing.sys"); });
    CHECK(std::string(error.getDescription()) == "Can't start service");
    CHECK(stateOf("TarnTestMissing") == SERVICE_STOPPED);
    driver.unload();
    CHECK(reaches("TarnTestMissing", 0));

    CHECK_THROWS_AS(Driver(L"TarnTestMissing", L"Missing", L"C:\\missing\\missing.sys"), WindowsError);
    CHECK(reaches("TarnTestMissing", 0));
}
