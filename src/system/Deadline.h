#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// The end of a time-out that several waits share. `INFINITE` never ends.
class Deadline {
public:
    explicit Deadline(unsigned timeoutMs) : timeoutMs_(timeoutMs) {}

    /// For the next wait; 0 when the time is up.
    unsigned remainingMs() const
    {
        if (timeoutMs_ == INFINITE)
            return INFINITE;
        const ULONGLONG passedMs = GetTickCount64() - beginMs_;
        return passedMs < timeoutMs_ ? static_cast<unsigned>(timeoutMs_ - passedMs) : 0;
    }

private:
    const ULONGLONG beginMs_ = GetTickCount64();
    const unsigned timeoutMs_;
};
} // namespace tarn
