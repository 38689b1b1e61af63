#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline HMODULE loadLibrary(const char* name) { return LoadLibraryA(name); }
inline HMODULE loadLibrary(const wchar_t* name) { return LoadLibraryW(name); }

inline HMODULE loadLibraryEx(const char* name, DWORD flags) { return LoadLibraryExA(name, nullptr, flags); }
inline HMODULE loadLibraryEx(const wchar_t* name, DWORD flags) { return LoadLibraryExW(name, nullptr, flags); }

inline HMODULE getModuleHandle(const char* name) { return GetModuleHandleA(name); }
inline HMODULE getModuleHandle(const wchar_t* name) { return GetModuleHandleW(name); }

inline DWORD getModuleFileName(HMODULE module, char* name, DWORD size)
{
    return GetModuleFileNameA(module, name, size);
}
inline DWORD getModuleFileName(HMODULE module, wchar_t* name, DWORD size)
{
    return GetModuleFileNameW(module, name, size);
}

// With the flag FORMAT_MESSAGE_ALLOCATE_BUFFER only: `text` receives the buffer.
inline DWORD formatMessage(DWORD flags, HMODULE source, DWORD id, DWORD language, char** text)
{
    return FormatMessageA(flags, source, id, language, reinterpret_cast<char*>(text), 0, nullptr);
}
inline DWORD formatMessage(DWORD flags, HMODULE source, DWORD id, DWORD language, wchar_t** text)
{
    return FormatMessageW(flags, source, id, language, reinterpret_cast<wchar_t*>(text), 0, nullptr);
}

inline DWORD getFileVersionInfoSize(const char* name) { return GetFileVersionInfoSizeA(name, nullptr); }
inline DWORD getFileVersionInfoSize(const wchar_t* name) { return GetFileVersionInfoSizeW(name, nullptr); }

inline BOOL getFileVersionInfo(const char* name, DWORD size, void* data)
{
    return GetFileVersionInfoA(name, 0, size, data);
}
inline BOOL getFileVersionInfo(const wchar_t* name, DWORD size, void* data)
{
    return GetFileVersionInfoW(name, 0, size, data);
}
} // namespace tarn
