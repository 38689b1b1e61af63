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
template <class IsHandle> unsigned counted(DWORD kind, ULONG_PTR step, IsHandle isHandle)
{
    if (const unsigned count = GetGuiResources(GetCurrentProcess(), kind))
        return count;
    unsigned count = 0;
    for (ULONG_PTR handle = step; handle < 0x10000; handle += step)
        count += isHandle(handle) ? 1 : 0;
    return count;
}
} // namespace

unsigned drawingObjects()
{
    return counted(GR_GDIOBJECTS, 1,
                   [](ULONG_PTR handle) { return GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) != 0; });
}

unsigned userObjects()
{
    return counted(GR_USEROBJECTS, 2, [](ULONG_PTR handle) {
        return IsWindow(reinterpret_cast<HWND>(handle)) || IsMenu(reinterpret_cast<HMENU>(handle));
    });
}
} // namespace support
