#pragma once

#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Service.h>

#include <utility>

namespace tarn {
/// Loads a kernel driver for the life of the object: registers it as a service when there is none of its
/// name, starts it, and undoes both. WindowsFile::ioControl talks to the loaded driver.
///
/// Needs the rights of an administrator. Failures throw WindowsError, also out of the destructor.
class TARN_API Driver {
public:
    Driver() = default;
    /// Loads; when that fails, a service registered on the way is removed again.
    Driver(const wchar_t* name, const wchar_t* displayName, const wchar_t* binaryPath);
    /// Take the driver over; the source has none then. What the target had is unloaded, of a failure of which
    /// the debugger alone hears.
    ///@{
    Driver(Driver&& other) noexcept
        : manager_(std::move(other.manager_)), service_(std::move(other.service_)),
          created_(std::exchange(other.created_, false))
    {
    }
    Driver& operator=(Driver&& other) noexcept;
    ///@}
    ~Driver() noexcept(false);

    /// Starts the service `name`, which is registered with the other two arguments when it does not exist;
    /// one that runs already is fine. Throws "Can't open service manager", "Can't open service", "Can't
    /// create service", "Can't start service". A service that was registered and did not start stays
    /// until unload(), or until load() is called for another. A driver of another name that is loaded already
    /// is unloaded first if this object has registered it, and otherwise stays loaded: call unload() before.
    void load(const wchar_t* name, const wchar_t* displayName, const wchar_t* binaryPath);
    /// Stops the driver, removes its service if load() registered it, and closes the handles. A driver
    /// that does not stop is no error. Does nothing when nothing is loaded. Throws "Can't delete service"
    /// (the handles are then kept, to try again) and "Can't close service handle".
    void unload();
    /// Closes the handles and leaves driver and service as they are. Throws "Can't close service handle".
    void detach();

private:
    bool shows(const wchar_t* displayName) const;
    void openOrCreate(const wchar_t* name, const wchar_t* displayName, const wchar_t* binaryPath);

    ServiceManager manager_;
    Service service_;
    bool created_ = false;
};
TARN_LAYOUT(Driver, 12, 24);
} // namespace tarn
