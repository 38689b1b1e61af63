#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// Loads a library from the system's own folder, and never one of that name that lies beside the program or in the
/// current folder; null when this system has none.
inline HMODULE loadSystemLibrary(const wchar_t* name)
{
    return LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}
} // namespace tarn
