#pragma once

#include <tarn/Windows.h>

namespace support {
/// The number of kernel handles that the process has open: the same before and after what leaks none.
inline unsigned long openHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}
} // namespace support
