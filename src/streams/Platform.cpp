#include "Platform.h"

#include "../foundation/FunctionOf.h"

#include <tarn/Windows.h>

#include <malloc.h>

#include <algorithm>

namespace tarn {
namespace {
struct Stack {
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
};

// For Windows 7, which cannot be asked for both ends.
void WINAPI findStack(ULONG_PTR* low, ULONG_PTR* high)
{
    MEMORY_BASIC_INFORMATION page{};
    VirtualQuery(&page, &page, sizeof page);
    *low = reinterpret_cast<ULONG_PTR>(page.AllocationBase);
    *high = reinterpret_cast<ULONG_PTR>(page.BaseAddress) + page.RegionSize;
}

using FindStack = void WINAPI(ULONG_PTR* low, ULONG_PTR* high);
FindStack* stackFinder() noexcept
{
    FindStack* const found = functionOf<FindStack>(GetModuleHandleW(L"kernel32.dll"), "GetCurrentThreadStackLimits");
    return found ? found : &findStack;
}
} // namespace

bool stackHasRoom() noexcept
{
    static FindStack* const find = stackFinder();
    Stack stack;
    find(&stack.low, &stack.high);
    const ULONG_PTR kept = std::min<ULONG_PTR>(256 << 10, (stack.high - stack.low) / 4);
    return reinterpret_cast<ULONG_PTR>(&stack) - stack.low >= kept;
}

bool growsInPlace(void* memory, std::size_t size) noexcept { return _expand(memory, size) != nullptr; }

bool liesInLibrary(const void* address) noexcept
{
    HMODULE module = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                              static_cast<const wchar_t*>(address), &module) &&
           module != GetModuleHandleW(nullptr);
}
} // namespace tarn
