#include "SystemModules.h"

#include <cwchar>

namespace tarn {
HMODULE moduleOf(const void* address) noexcept
{
    HMODULE module = nullptr;
    constexpr DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExW(flags, static_cast<const wchar_t*>(address), &module);
    return module;
}

bool isCodeOfSystem(const void* address) noexcept
{
    const HMODULE module = moduleOf(address);
    wchar_t path[MAX_PATH], folder[MAX_PATH];
    const UINT length = GetSystemWindowsDirectoryW(folder, MAX_PATH);
    if (!module || !length || length >= MAX_PATH || !GetModuleFileNameW(module, path, MAX_PATH))
        return true;
    return _wcsnicmp(path, folder, length) == 0 && path[length] == L'\\';
}
} // namespace tarn
