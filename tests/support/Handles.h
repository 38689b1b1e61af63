#pragma once

#include <tarn/Windows.h>

namespace support {
/// The number of kernel handles that the process has open: the same before and after what leaks none.
/// Looks at the first 1024 handle values, because Wine's GetProcessHandleCount always says 0.
inline unsigned long openHandles()
{
    unsigned long count = 0;
    for (ULONG_PTR value = 4; value <= 4 * 1024; value += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    return count;
}

/// The handle once more, with other rights; null when that fails.
inline HANDLE duplicateOf(HANDLE handle, DWORD access)
{
    HANDLE duplicate = nullptr;
    DuplicateHandle(GetCurrentProcess(), handle, GetCurrentProcess(), &duplicate, access, FALSE, 0);
    return duplicate;
}
} // namespace support
