#include <tarn/Driver.h>

#include <tarn/Exception.h>

#include "../foundation/Closing.h"

namespace tarn {
Driver::Driver(const wchar_t* name, const wchar_t* displayName, const wchar_t* binaryPath)
{
    try {
        load(name, displayName, binaryPath);
    } catch (...) {
        try { // No destructor follows a constructor that throws.
            unload();
        } catch (...) { // What stopped the loading matters more.
        }
        throw;
    }
}

Driver::~Driver() noexcept(false)
{
    closeAtEnd([this] { unload(); });
}

Driver& Driver::operator=(Driver&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { unload(); });
        manager_ = std::move(other.manager_);
        service_ = std::move(other.service_);
        created_ = std::exchange(other.created_, false);
    }
    return *this;
}

void Driver::openOrCreate(const wchar_t* name, const wchar_t* displayName, const wchar_t* binaryPath)
{
    try {
        service_.open(manager_, name, READ_CONTROL | SERVICE_START | SERVICE_STOP);
    } catch (const WindowsError& e) {
        if (e.getError() != ERROR_SERVICE_DOES_NOT_EXIST)
            throw;
        manager_.open(READ_CONTROL | SC_MANAGER_CREATE_SERVICE);
        service_.create(manager_, name, displayName, SERVICE_ALL_ACCESS, SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START,
                        SERVICE_ERROR_IGNORE, binaryPath, nullptr, nullptr, nullptr, nullptr, nullptr);
        created_ = true;
    }
}

// No two services have the same display name.
bool Driver::shows(const wchar_t* displayName) const
{
    constexpr DWORD longest = 8192;
    alignas(QUERY_SERVICE_CONFIGW) char buffer[longest];
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer);
    DWORD needed = 0;
    return QueryServiceConfigW(service_.getHandle(), config, longest, &needed) &&
           lstrcmpiW(config->lpDisplayName, displayName) == 0;
}

void Driver::load(const wchar_t* name, const wchar_t* displayName, const wchar_t* binaryPath)
{
    // Its handle is kept, since it alone may delete the service.
    const bool again = created_ && shows(displayName && *displayName ? displayName : name);
    if (!again) {
        if (created_)
            unload();
        manager_.open(READ_CONTROL);
        openOrCreate(name, displayName, binaryPath);
    }
    try {
        service_.start();
    } catch (const WindowsError& e) {
        if (e.getError() != ERROR_SERVICE_ALREADY_RUNNING)
            throw;
    }
}

void Driver::unload()
{
    if (service_.isOpen()) {
        try {
            service_.stop();
        } catch (const WindowsError&) { // Not running, or not to be stopped: either way this object lets go of it.
        }
        if (created_)
            service_.remove();
    }
    detach();
}

void Driver::detach()
{
    created_ = false;
    service_.close();
    manager_.close();
}
} // namespace tarn
