#pragma once

#include <tarn/Windows.h>
#include <tarn/WindowsHandle.h>

#include "../foundation/Check.h"

#include <memory>

namespace tarn {
struct CloseFreshHandle {
    void operator()(void* handle) const { CloseHandle(handle); }
};

/// A handle just opened, until its owner has it.
using FreshHandle = std::unique_ptr<void, CloseFreshHandle>;

/// Closes it, for those whom an end that stays open would keep waiting. Throws `what`.
inline void closeNow(FreshHandle& fresh, const char* what)
{
    if (fresh)
        ensure(CloseHandle(fresh.release()), what);
}

/// Makes `owner` the owner; when it cannot close the handle that it held, the fresh one is closed.
inline void giveTo(WindowsHandle& owner, FreshHandle fresh)
{
    owner.attach(fresh.get());
    fresh.release();
}
} // namespace tarn
