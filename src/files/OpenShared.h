#pragma once

#include <tarn/BasicString.h>

#include "../system/FreshHandle.h"

namespace tarn {
/// A file or folder that is there, opened so that nobody else is kept from reading, writing or deleting it. `path` is
/// that for the platform; `what` gives the text of the WindowsError that is thrown.
template <std::invocable Describe>
FreshHandle openShared(const BasicString<wchar_t>& path, DWORD access, Describe what, DWORD flags = 0)
{
    return FreshHandle(
        ensureNot(INVALID_HANDLE_VALUE,
                  CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr),
                  what));
}
} // namespace tarn
