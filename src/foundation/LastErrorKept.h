#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// Keeps the thread's last error for a scope, in what is no call whose failure a program looks for.
class LastErrorKept {
public:
    LastErrorKept() = default;
    LastErrorKept(const LastErrorKept&) = delete;
    LastErrorKept& operator=(const LastErrorKept&) = delete;
    ~LastErrorKept() { SetLastError(error_); }

private:
    const DWORD error_ = GetLastError();
};
} // namespace tarn
