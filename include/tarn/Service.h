#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <utility>
#include <vector>

namespace tarn {
/// Owns one handle of the service manager; the base of ServiceManager and Service, which can be moved and not
/// copied. Failures throw WindowsError, also out of the destructor.
class TARN_API ServiceHandle : private boost::noncopyable {
public:
    ~ServiceHandle() noexcept(false);

    /// Throws "Can't close service handle".
    void close();
    /// Gives the handle to the caller, open; null when there was none.
    SC_HANDLE detach() noexcept { return std::exchange(handle_, nullptr); }
    /// False before opening and after close().
    bool isOpen() const { return handle_ != nullptr; }

protected:
    ServiceHandle() = default;
    /// Takes the handle over.
    ServiceHandle(ServiceHandle&& other) noexcept : handle_(other.detach()) {}
    /// Closes the handle held so far; of a failure of that the debugger alone hears.
    ServiceHandle& operator=(ServiceHandle&& other) noexcept;
    /// Null while closed. Lent, not given.
    SC_HANDLE getHandle() const { return handle_; }
    /// Takes ownership; the object must not hold another handle.
    void setHandle(SC_HANDLE handle) { handle_ = handle; }

private:
    SC_HANDLE handle_ = nullptr;
};

/// A service among others, in ServiceManager::getServices().
struct ServiceEntry {
    /// What Service::open() takes.
    BasicString<wchar_t> name;
    /// What people read.
    BasicString<wchar_t> displayName;
    /// State, process, and what it accepts, at that moment.
    SERVICE_STATUS_PROCESS status{};
};

/// How a service is kept. The numbers are the platform's.
struct ServiceConfiguration {
    /// A `SERVICE_WIN32_OWN_PROCESS` for instance.
    unsigned long serviceType = 0;
    /// A `SERVICE_..._START`.
    unsigned long startType = 0;
    /// A `SERVICE_ERROR_...`.
    unsigned long errorControl = 0;
    /// With its arguments.
    BasicString<wchar_t> binaryPath;
    /// Empty where the system's own account is meant.
    BasicString<wchar_t> account;
    /// What people read.
    ///@{
    BasicString<wchar_t> displayName, description;
    ///@}
    /// The names of the services that have to run before; those of groups begin with "+".
    std::vector<BasicString<wchar_t>> dependencies;
};

/// The database of a machine's services, which Service looks in. Opening closes the handle held before,
/// also when it then fails.
class TARN_API ServiceManager : public ServiceHandle {
public:
    ServiceManager() = default;
    /// Throws as open() does.
    ServiceManager(const char* machine, unsigned long access) { open(machine, access); }

    /// The manager of `machine` (null: this one) for `access`, a set of the platform's `SC_MANAGER_`
    /// rights. Throws "Can't open service manager".
    ///@{
    void open(const char* machine, unsigned long access);
    void open(const wchar_t* machine, unsigned long access);
    void open(unsigned long access);
    ///@}

    /// All services of these types (a set of the platform's `SERVICE_WIN32`, `SERVICE_DRIVER` and the like) that are
    /// active, inactive or either (`SERVICE_ACTIVE`, `SERVICE_INACTIVE`), as they are at the moment. Needs the right
    /// `SC_MANAGER_ENUMERATE_SERVICE`. Throws "Can't list services".
    std::vector<ServiceEntry> getServices(unsigned long types = SERVICE_WIN32,
                                          unsigned long states = SERVICE_STATE_ALL) const;

private:
    friend class Service; // For the manager's handle.
};
TARN_LAYOUT(ServiceManager, 4, 8);

/// One service, of a kind that the service manager starts: a program or a kernel driver.
///
/// Closing it leaves the service as it is. create() and open() close the handle held before, also when
/// they then fail.
class TARN_API Service : public ServiceHandle {
public:
    /// Registers a service; the arguments are those of the platform's `CreateService`. A path with blanks
    /// has to stand in quotation marks within `binaryPath`. Throws "Can't create service".
    ///@{
    void create(const ServiceManager& manager, const char* name, const char* displayName, unsigned long access,
                unsigned long serviceType, unsigned long startType, unsigned long errorControl, const char* binaryPath,
                const char* loadOrderGroup, unsigned long* tagId, const char* dependencies,
                const char* serviceStartName, const char* password);
    void create(const ServiceManager& manager, const wchar_t* name, const wchar_t* displayName, unsigned long access,
                unsigned long serviceType, unsigned long startType, unsigned long errorControl,
                const wchar_t* binaryPath, const wchar_t* loadOrderGroup, unsigned long* tagId,
                const wchar_t* dependencies, const wchar_t* serviceStartName, const wchar_t* password);
    ///@}

    /// Throws "Can't open service".
    ///@{
    void open(const ServiceManager& manager, const char* name, unsigned long access);
    void open(const ServiceManager& manager, const wchar_t* name, unsigned long access);
    ///@}

    /// Marks the service for deletion: it is gone when it has stopped and its last handle is closed, this
    /// object's included. Throws "Can't delete service".
    void remove() const;

    /// Returns when the service has been launched, which is before it runs. Throws "Can't start service".
    ///@{
    void start(const char** arguments, unsigned count) const;
    void start(const wchar_t** arguments, unsigned count) const;
    void start() const;
    ///@}
    /// Asks the service to stop and returns what it reports, which may be that it is still stopping.
    /// Throws "Can't stop service".
    SERVICE_STATUS stop();
    /// Sends one of the platform's `SERVICE_CONTROL_` numbers, to pause for instance, or a command of the service's
    /// own, 128 to 255. Throws "Can't control service".
    SERVICE_STATUS control(unsigned long code) const;

    /// What it does at the moment. Throws "Can't query service status".
    SERVICE_STATUS_PROCESS getStatus() const;
    /// Waits until it is in one of the platform's states, `SERVICE_RUNNING` for instance; false when the time is up.
    /// Looks again every few milliseconds. Throws as getStatus().
    bool waitForState(unsigned long state, unsigned timeoutMs) const;

    /// How it is kept at the moment. Needs the right `SERVICE_QUERY_CONFIG`. Throws "Can't query service
    /// configuration".
    ServiceConfiguration getConfiguration() const;
    /// How it is to be kept: what people read of it, when it starts (one of the platform's `SERVICE_..._START`
    /// numbers), and that it is started again `delayMs` after it has ended without being told, so many times a day. The
    /// rest is said to create(). Needs the right `SERVICE_CHANGE_CONFIG`, and `SERVICE_START` for restarts. Throw
    /// "Can't configure service".
    ///@{
    void setDescription(const wchar_t* text) const;
    void setStartType(unsigned long startType) const;
    void setRestart(unsigned delayMs, unsigned times) const;
    ///@}

private:
    friend class Driver; // For the service's handle.
};
TARN_LAYOUT(Service, 4, 8);
} // namespace tarn
