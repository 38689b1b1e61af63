#include "Test.h"

#include <tarn/Driver.h>

#include "ScratchFolder.h"
#include "Services.h"

namespace {
constexpr DWORD managerAccess = SC_MANAGER_CONNECT | SC_MANAGER_CREATE_SERVICE;
} // namespace

TEST_CASE("Service: a program is registered, started with arguments, stopped and removed")
{
    const ScratchFolder folder;
    const std::string file = folder.file("arguments.txt");
    const char* arguments[] = {file.c_str(), "one", "two"};
    const std::wstring wideFile = folder.file(L"arguments.txt");
    const wchar_t* wideArguments[] = {wideFile.c_str(), L"drei"};

    Installed registered(L"TarnTest");
    Service& service = registered.service;
    service.start(arguments, 3);
    REQUIRE(reaches("TarnTest", SERVICE_RUNNING));
    expectWindowsError([&] { service.start(); }, ERROR_SERVICE_ALREADY_RUNNING, "Can't start service");

    const DWORD state = service.stop().dwCurrentState;
    CHECK((state == SERVICE_STOP_PENDING || state == SERVICE_STOPPED));
    REQUIRE(reaches("TarnTest", SERVICE_STOPPED));
    CHECK(folder.read("arguments.txt") == "one;two;");
    service.start(wideArguments, 2);
    REQUIRE(reaches("TarnTest", SERVICE_RUNNING));
    service.stop();
    REQUIRE(reaches("TarnTest", SERVICE_STOPPED));
    CHECK(folder.read("arguments.txt") == "drei;");
}

TEST_CASE("Service: failing calls name themselves")
{
    ServiceManager manager;
    try {
        manager.open(L"no-such-machine", SC_MANAGER_CONNECT);
        WARN("The platform takes any machine for this one, as Wine does");
    } catch (const WindowsError& e) {
        CHECK(std::string(e.getDescription()) == "Can't open service manager");
        CHECK_FALSE(manager.isOpen());
    }
    manager.open(static_cast<const char*>(nullptr), SC_MANAGER_CONNECT);
    Service service;
    expectWindowsError([&] { service.open(manager, "TarnTestMissing", SERVICE_START); }, ERROR_SERVICE_DOES_NOT_EXIST,
                       "Can't open service");
    Installed registered("TarnTest");
    service.open(manager, "TarnTest", SERVICE_START);
    expectWindowsError([&] { createService(service, "TarnTest"); }, ERROR_SERVICE_EXISTS, "Can't create service");
    CHECK_FALSE(service.isOpen()); // What was held is closed first.
    expectWindowsError([&] { registered.service.stop(); }, ERROR_SERVICE_NOT_ACTIVE, "Can't stop service");
    service.open(manager, L"TarnTest", SERVICE_QUERY_STATUS);
    expectWindowsError([&] { service.start(); }, ERROR_ACCESS_DENIED, "Can't start service");
    expectWindowsError([&] { service.remove(); }, ERROR_ACCESS_DENIED, "Can't delete service");
    service.close();

    struct Stale : ServiceManager {
        Stale() { setHandle(reinterpret_cast<SC_HANDLE>(&manager_)); }
        int manager_ = 0;
    } stale;
    expectWindowsError([&] { stale.close(); }, ERROR_INVALID_HANDLE, "Can't close service handle");
    CHECK_FALSE(stale.isOpen());
}

TEST_CASE("Service: all that are installed are listed, with what they do and how they are kept")
{
    const Installed registered("TarnTest");
    const ServiceManager manager(nullptr, SC_MANAGER_ENUMERATE_SERVICE);
    const auto listed = [&](unsigned long states) {
        const auto services = manager.getServices(SERVICE_WIN32, states);
        const auto found = std::ranges::find(services, L"TarnTest", &ServiceEntry::name);
        return found == services.end() ? 0 : found->status.dwCurrentState;
    };
    CHECK(manager.getServices().size() > 1);
    CHECK((listed(SERVICE_STATE_ALL) == SERVICE_STOPPED && listed(SERVICE_ACTIVE) == 0));
    registered.service.start();
    REQUIRE(reaches("TarnTest", SERVICE_RUNNING));
    CHECK((listed(SERVICE_STATE_ALL) == SERVICE_RUNNING && listed(SERVICE_INACTIVE) == 0));

    const ServiceConfiguration kept = registered.service.getConfiguration();
    CHECK((kept.serviceType == SERVICE_WIN32_OWN_PROCESS && kept.startType == SERVICE_DEMAND_START));
    CHECK((kept.binaryPath.endsWith(L"test_system.exe \"is a service\"") && kept.displayName == L"TarnTest"));
    CHECK((kept.description.empty() && kept.dependencies.empty()));
    Service dependent;
    dependent.create(ServiceManager(nullptr, managerAccess), L"TarnTestMissing", nullptr, SERVICE_ALL_ACCESS,
                     SERVICE_WIN32_OWN_PROCESS, SERVICE_DISABLED, SERVICE_ERROR_IGNORE, L"x", nullptr, nullptr,
                     L"TarnTest\0+Group\0", nullptr, nullptr);
    const auto dependencies = dependent.getConfiguration().dependencies;
    dependent.remove();
    CHECK((dependencies == std::vector<BasicString<wchar_t>>{L"TarnTest", L"+Group"} || isWine()));

    dependent.open(ServiceManager(nullptr, SC_MANAGER_CONNECT), "TarnTest", SERVICE_QUERY_STATUS);
    expectWindowsError([&] { dependent.getConfiguration(); }, ERROR_ACCESS_DENIED, "Can't query service configuration");
    expectWindowsError([] { ServiceManager().getServices(); }, ERROR_INVALID_HANDLE, "Can't list services");
}

TEST_CASE("Driver: a service that exists is started and stopped, and stays registered")
{
    Installed registered("TarnTest");
    {
        Driver driver(L"TarnTest", L"ignored", L"C:\\ignored.sys");
        REQUIRE(reaches("TarnTest", SERVICE_RUNNING));
        Driver second;
        second.load(L"TarnTest", L"ignored", L"C:\\ignored.sys"); // Running already: no error.
        second.unload();
        REQUIRE(reaches("TarnTest", SERVICE_STOPPED));
        second.unload();
    } // The first one has nothing to stop any more.
    CHECK(stateOf("TarnTest") == SERVICE_STOPPED);
}

TEST_CASE("Driver: a service that load had to create is deleted by unload, also when it did not start")
{
    Driver driver;
    expectWindowsError([&] { driver.load(L"TarnTestMissing", L"Missing", L"C:\\missing\\missing.sys"); },
                       "Can't start service");
    CHECK(stateOf("TarnTestMissing") == SERVICE_STOPPED);
    expectWindowsError([&] { driver.load(L"TarnTestMissing", L"Missing", L"C:\\missing\\missing.sys"); },
                       "Can't start service");
    driver.unload();
    CHECK(reaches("TarnTestMissing", 0));

    CHECK_THROWS_AS(driver.load(L"TarnTestMissing", nullptr, L"C:\\missing\\missing.sys"), WindowsError);
    CHECK_THROWS_AS(driver.load(L"TarnTestOther", nullptr, L"C:\\missing\\other.sys"), WindowsError);
    CHECK(reaches("TarnTestMissing", 0));
    Driver moved(std::move(driver));
    driver.unload();
    CHECK(stateOf("TarnTestOther") == SERVICE_STOPPED);
    driver = std::move(moved);
    driver.unload();
    CHECK(reaches("TarnTestOther", 0));

    CHECK_THROWS_AS(Driver(L"TarnTestMissing", L"Missing", L"C:\\missing\\missing.sys"), WindowsError);
    CHECK(reaches("TarnTestMissing", 0));
}
