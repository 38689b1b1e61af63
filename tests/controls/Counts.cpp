#include "Controls.h"

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

unsigned drawingObjects()
{
    if (const unsigned count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return count;
    // Where the system does not count them, it also takes handles by their lower half alone.
    unsigned count = 0;
    for (ULONG_PTR handle = 1; handle < 0x10000; ++handle)
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) != 0;
    return count;
}
} // namespace support

TEST_CASE("The counters of leaks notice what is left over", "[controls][load]")
{
    const unsigned objects = support::drawingObjects();
    const HBRUSH brush = CreateSolidBrush(1);
    CHECK(support::drawingObjects() == objects + 1);
    DeleteObject(brush);
    CHECK(support::drawingObjects() == objects);

    constexpr int count = 20000;
    std::vector<int*> numbers;
    numbers.reserve(count);
    const auto makeNumbers = [&] {
        for (int i = 0; i < count; ++i)
            numbers.push_back(new int(i));
    };
    const auto dropNumbers = [&] {
        for (const int* number : numbers)
            delete number;
        numbers.clear();
    };
    makeNumbers();
    dropNumbers();
    const std::size_t before = support::usedBytes();
    makeNumbers();
    CHECK(support::usedBytes() >= before + count * sizeof(int));
    dropNumbers();
    CHECK(support::usedBytes() < before + count * sizeof(int) / 10);
}
