#include "Counts.h"

#include <catch2/catch.hpp>

#include <tarn/Windows.h>

namespace support {
std::size_t usedBytes()
{
    HANDLE heaps[64];
    const DWORD heapCount = GetProcessHeaps(64, heaps);
    REQUIRE(heapCount <= 64);
    std::size_t bytes = 0;
    for (DWORD i = 0; i < heapCount; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry)) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)
                bytes += entry.cbData;
        }
    }
    return bytes;
}

namespace {
// Where the system does not count, as Wine does not, it also takes handles by their lower half alone.
template <class IsHandle> unsigned countedHandles(ULONG_PTR step, IsHandle isHandle)
{
    unsigned count = 0;
    for (ULONG_PTR handle = step; handle < 0x10000; handle += step)
        count += isHandle(handle) ? 1 : 0;
    return count;
}

// Asked for one by one, each handle that is no window of the process would be a question to another one.
unsigned ownWindows(HWND parent)
{
    unsigned count = 0;
    for (HWND window = nullptr; (window = FindWindowExW(parent, window, nullptr, nullptr)) != nullptr;) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId())
            count += 1 + ownWindows(window);
    }
    return count;
}
} // namespace

unsigned drawingObjects()
{
    if (const unsigned count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return count;
    return countedHandles(1, [](ULONG_PTR handle) { return GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) != 0; });
}

unsigned userObjects()
{
    if (const unsigned count = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS))
        return count;
    return ownWindows(GetDesktopWindow()) + ownWindows(HWND_MESSAGE) +
           countedHandles(2, [](ULONG_PTR handle) { return IsMenu(reinterpret_cast<HMENU>(handle)) != FALSE; });
}
} // namespace support
