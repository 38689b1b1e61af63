#include <tarn/Service.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/ZeroSeparated.h"
#include "Deadline.h"
#include "ServiceApi.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
constexpr const char* notConfigured = "Can't configure service";

template <class Ch> SC_HANDLE openManager(const Ch* machine, unsigned long access)
{
    return ensure(openSCManager(machine, access), "Can't open service manager");
}

template <class Ch> SC_HANDLE openServiceIn(SC_HANDLE manager, const Ch* name, unsigned long access)
{
    return ensure(openService(manager, name, access), "Can't open service");
}

template <class Ch> void startWith(SC_HANDLE service, const Ch** arguments, unsigned count)
{
    ensure(startService(service, count, arguments), "Can't start service");
}
} // namespace

ServiceHandle::~ServiceHandle() noexcept(false)
{
    closeAtEnd([this] { close(); });
}

ServiceHandle& ServiceHandle::operator=(ServiceHandle&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { close(); });
        handle_ = other.detach();
    }
    return *this;
}

void ServiceHandle::close()
{
    // Given up also when closing fails, so that the destructor does not fail a second time over it.
    if (SC_HANDLE const handle = std::exchange(handle_, nullptr))
        ensure(CloseServiceHandle(handle), "Can't close service handle");
}

void ServiceManager::open(const char* machine, unsigned long access)
{
    close();
    setHandle(openManager(machine, access));
}
void ServiceManager::open(const wchar_t* machine, unsigned long access)
{
    close();
    setHandle(openManager(machine, access));
}
void ServiceManager::open(unsigned long access) { open(static_cast<const wchar_t*>(nullptr), access); }

std::vector<ServiceEntry> ServiceManager::getServices(unsigned long types, unsigned long states) const
{
    constexpr DWORD mostBytes = 256 * 1024; // The platform takes no larger buffer, and goes on with the next call.
    std::vector<ServiceEntry> services;
    std::vector<BYTE> buffer;
    DWORD resume = 0;
    for (bool more = true; more;) {
        DWORD needed = 0, count = 0;
        more = !EnumServicesStatusExW(getHandle(), SC_ENUM_PROCESS_INFO, types, states, buffer.data(),
                                      static_cast<DWORD>(buffer.size()), &needed, &count, &resume, nullptr);
        if (more && (GetLastError() != ERROR_MORE_DATA || (count == 0 && buffer.size() == mostBytes)))
            throwLastError("Can't list services");
        const auto* const entries = reinterpret_cast<const ENUM_SERVICE_STATUS_PROCESSW*>(buffer.data());
        for (DWORD i = 0; i < count; ++i)
            services.push_back({entries[i].lpServiceName, entries[i].lpDisplayName, entries[i].ServiceStatusProcess});
        if (more && count == 0)
            buffer.resize(std::min(mostBytes, static_cast<DWORD>(buffer.size()) + needed));
    }
    return services;
}

void Service::create(const ServiceManager& manager, const char* name, const char* displayName, unsigned long access,
                     unsigned long serviceType, unsigned long startType, unsigned long errorControl,
                     const char* binaryPath, const char* loadOrderGroup, unsigned long* tagId, const char* dependencies,
                     const char* serviceStartName, const char* password)
{
    close();
    setHandle(
        ensure(CreateServiceA(manager.getHandle(), name, displayName, access, serviceType, startType, errorControl,
                              binaryPath, loadOrderGroup, tagId, dependencies, serviceStartName, password),
               "Can't create service"));
}
void Service::create(const ServiceManager& manager, const wchar_t* name, const wchar_t* displayName,
                     unsigned long access, unsigned long serviceType, unsigned long startType,
                     unsigned long errorControl, const wchar_t* binaryPath, const wchar_t* loadOrderGroup,
                     unsigned long* tagId, const wchar_t* dependencies, const wchar_t* serviceStartName,
                     const wchar_t* password)
{
    close();
    setHandle(
        ensure(CreateServiceW(manager.getHandle(), name, displayName, access, serviceType, startType, errorControl,
                              binaryPath, loadOrderGroup, tagId, dependencies, serviceStartName, password),
               "Can't create service"));
}

void Service::open(const ServiceManager& manager, const char* name, unsigned long access)
{
    close();
    setHandle(openServiceIn(manager.getHandle(), name, access));
}
void Service::open(const ServiceManager& manager, const wchar_t* name, unsigned long access)
{
    close();
    setHandle(openServiceIn(manager.getHandle(), name, access));
}

void Service::remove() const { ensure(DeleteService(getHandle()), "Can't delete service"); }

void Service::start(const char** arguments, unsigned count) const { startWith(getHandle(), arguments, count); }
void Service::start(const wchar_t** arguments, unsigned count) const { startWith(getHandle(), arguments, count); }
void Service::start() const { start(static_cast<const char**>(nullptr), 0); }

SERVICE_STATUS Service::stop()
{
    SERVICE_STATUS status{};
    ensure(ControlService(getHandle(), SERVICE_CONTROL_STOP, &status), "Can't stop service");
    return status;
}

SERVICE_STATUS Service::control(unsigned long code) const
{
    SERVICE_STATUS status{};
    ensure(ControlService(getHandle(), code, &status), "Can't control service");
    return status;
}

SERVICE_STATUS_PROCESS Service::getStatus() const
{
    SERVICE_STATUS_PROCESS status{};
    DWORD needed = 0;
    ensure(QueryServiceStatusEx(getHandle(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), sizeof status,
                                &needed),
           "Can't query service status");
    return status;
}

bool Service::waitForState(unsigned long state, unsigned timeoutMs) const
{
    constexpr DWORD pauseMs = 10;
    for (const Deadline deadline(timeoutMs); getStatus().dwCurrentState != state; Sleep(pauseMs))
        if (deadline.remainingMs() == 0)
            return false;
    return true;
}

namespace {
/// What `call` puts into a buffer, which takes its place, its size, and where to say how large it has to be.
template <class Call> std::vector<BYTE> configurationBy(Call call)
{
    std::vector<BYTE> buffer;
    for (DWORD needed = 0; !call(buffer.data(), static_cast<DWORD>(buffer.size()), &needed); buffer.resize(needed))
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            throwLastError("Can't query service configuration");
    return buffer;
}
} // namespace

ServiceConfiguration Service::getConfiguration() const
{
    const auto bytes = configurationBy([this](BYTE* buffer, DWORD size, DWORD* needed) {
        return QueryServiceConfigW(getHandle(), reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer), size, needed);
    });
    const auto described = configurationBy([this](BYTE* buffer, DWORD size, DWORD* needed) {
        return QueryServiceConfig2W(getHandle(), SERVICE_CONFIG_DESCRIPTION, buffer, size, needed);
    });
    const auto& stored = *reinterpret_cast<const QUERY_SERVICE_CONFIGW*>(bytes.data());
    const auto dependencies = textsAt<wchar_t>(stored.lpDependencies);
    return {stored.dwServiceType,
            stored.dwStartType,
            stored.dwErrorControl,
            stored.lpBinaryPathName,
            stored.lpServiceStartName,
            stored.lpDisplayName,
            reinterpret_cast<const SERVICE_DESCRIPTIONW*>(described.data())->lpDescription,
            {dependencies.begin(), dependencies.end()}};
}

void Service::setDescription(const wchar_t* text) const
{
    BasicString<wchar_t> writable(text);
    SERVICE_DESCRIPTIONW description{writable.data()};
    ensure(ChangeServiceConfig2W(getHandle(), SERVICE_CONFIG_DESCRIPTION, &description), notConfigured);
}

void Service::setStartType(unsigned long startType) const
{
    ensure(ChangeServiceConfigW(getHandle(), SERVICE_NO_CHANGE, startType, SERVICE_NO_CHANGE, nullptr, nullptr, nullptr,
                                nullptr, nullptr, nullptr, nullptr),
           notConfigured);
}

void Service::setRestart(unsigned delayMs, unsigned times) const
{
    constexpr DWORD day = 24 * 60 * 60;
    std::vector<SC_ACTION> actions(times, SC_ACTION{SC_ACTION_RESTART, delayMs});
    actions.push_back({SC_ACTION_NONE, 0}); // Or the last one would be done for ever.
    SERVICE_FAILURE_ACTIONSW failure{day, nullptr, nullptr, static_cast<DWORD>(actions.size()), actions.data()};
    ensure(ChangeServiceConfig2W(getHandle(), SERVICE_CONFIG_FAILURE_ACTIONS, &failure), notConfigured);
    SERVICE_FAILURE_ACTIONS_FLAG alsoForErrors{TRUE}; // And not for crashes alone.
    ensure(ChangeServiceConfig2W(getHandle(), SERVICE_CONFIG_FAILURE_ACTIONS_FLAG, &alsoForErrors), notConfigured);
}
} // namespace tarn
