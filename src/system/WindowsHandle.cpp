#include <tarn/WindowsHandle.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

namespace tarn {
WindowsHandle::~WindowsHandle() noexcept(false)
{
    closeAtEnd([this] { close(); });
}

WindowsHandle& WindowsHandle::operator=(WindowsHandle&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { close(); });
        handle_ = other.detach();
    }
    return *this;
}

WindowsHandle& WindowsHandle::operator=(void* handle)
{
    attach(handle);
    return *this;
}

void WindowsHandle::attach(void* handle)
{
    close();
    handle_ = handle;
}

void WindowsHandle::close()
{
    if (isOpen())
        ensure(CloseHandle(handle_), "Error while closing handle");
    handle_ = INVALID_HANDLE_VALUE;
}

WindowsHandle::wait_result WindowsHandle::wait(unsigned timeoutMs) const
{
    switch (WaitForSingleObject(handle_, timeoutMs)) {
    case WAIT_OBJECT_0:
        return signaled;
    case WAIT_ABANDONED:
        return abandoned;
    case WAIT_TIMEOUT:
        return timeout;
    default:
        throwLastError("Error while retrieving handle state");
    }
}

std::pair<WindowsHandle::wait_result, unsigned> WindowsHandle::wait(const WindowsHandle& a, const WindowsHandle& b,
                                                                    unsigned long timeoutMs, bool waitAll)
{
    void* const handles[] = {a.handle_, b.handle_};
    return wait(2, handles, waitAll, timeoutMs);
}

std::pair<WindowsHandle::wait_result, unsigned> WindowsHandle::waitForAny(const std::vector<void*>& handles,
                                                                          unsigned timeoutMs)
{
    return wait(static_cast<unsigned>(handles.size()), handles.data(), false, timeoutMs);
}

WindowsHandle::wait_result WindowsHandle::waitForAll(const std::vector<void*>& handles, unsigned timeoutMs)
{
    return wait(static_cast<unsigned>(handles.size()), handles.data(), true, timeoutMs).first;
}

std::pair<WindowsHandle::wait_result, unsigned> WindowsHandle::wait(unsigned count, void* const* handles, bool waitAll,
                                                                    unsigned long timeoutMs)
{
    const DWORD result = WaitForMultipleObjects(count, handles, waitAll, timeoutMs);
    if (result < WAIT_OBJECT_0 + count)
        return {signaled, result - WAIT_OBJECT_0};
    if (result >= WAIT_ABANDONED_0 && result < WAIT_ABANDONED_0 + count)
        return {abandoned, result - WAIT_ABANDONED_0};
    if (result == WAIT_TIMEOUT)
        return {timeout, 0};
    throwLastError("Multi wait failed");
}
} // namespace tarn
