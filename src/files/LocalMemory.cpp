#include <tarn/LocalMemory.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

#include <utility>

namespace tarn {
LocalMemory::LocalMemory(LocalMemory&& other) noexcept : lockCount_(other.lockCount_) { handle_ = other.detach(); }
LocalMemory& LocalMemory::operator=(LocalMemory&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { free(); });
        lockCount_ = other.lockCount_;
        handle_ = other.detach();
    }
    return *this;
}
LocalMemory::~LocalMemory() noexcept(false)
{
    closeAtEnd([this] { free(); });
}

void* LocalMemory::lock()
{
    if (isFixed())
        return handle_;
    void* const memory = ensure(LocalLock(handle_), "Can't lock local memory handle");
    ++lockCount_;
    return memory;
}

bool LocalMemory::unlock()
{
    if (isFixed())
        return false;
    const BOOL locked = ensureCleared([&] { return LocalUnlock(handle_); }, "Can't unlock local memory handle");
    if (lockCount_ > 0) // Not so when it was locked before it came here.
        --lockCount_;
    return locked != FALSE;
}

void LocalMemory::free()
{
    if (!handle_)
        return;
    while (lockCount_ > 0)
        unlock();
    ensure(LocalFree(handle_) == nullptr, "Can't free local memory handle");
    handle_ = nullptr;
    lockCount_ = fixed;
}

void* LocalMemory::detach() noexcept
{
    lockCount_ = fixed;
    return std::exchange(handle_, nullptr);
}

LocalMemory::Flags LocalMemory::getFlags() const
{
    return Flags{ensureNot(LMEM_INVALID_HANDLE, LocalFlags(handle_), "Can't query flags for local memory handle")};
}

LocalMemory::Access::~Access()
{
    closeQuietly([this] { memory_.unlock(); });
}
} // namespace tarn
