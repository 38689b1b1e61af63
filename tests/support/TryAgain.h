#pragma once

#include <tarn/BasicString.h>
#include <tarn/Exception.h>
#include <tarn/Windows.h>

namespace support {
/// The path of this program, which starts itself for what a test does in another process.
inline tarn::BasicString<wchar_t> ownProgram()
{
    wchar_t path[MAX_PATH];
    return {path, GetModuleFileNameW(nullptr, path, MAX_PATH)};
}

/// What `start()` gives, which starts a process: again when that fails as in 64-bit Wine, which has an internal error
/// once in some thousands of processes.
template <class Start> auto tryAgain(const Start& start)
{
    try {
        return start();
    } catch (const tarn::WindowsError& e) {
        if (e.getError() != ERROR_INTERNAL_ERROR)
            throw;
    }
    return start();
}
} // namespace support
