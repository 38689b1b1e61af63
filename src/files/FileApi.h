#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline HANDLE createFile(const char* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD creation,
                         DWORD flags, HANDLE templateFile)
{
    return CreateFileA(name, access, share, security, creation, flags, templateFile);
}
inline HANDLE createFile(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD creation,
                         DWORD flags, HANDLE templateFile)
{
    return CreateFileW(name, access, share, security, creation, flags, templateFile);
}

inline DWORD getFileAttributes(const char* name) { return GetFileAttributesA(name); }
inline DWORD getFileAttributes(const wchar_t* name) { return GetFileAttributesW(name); }

inline BOOL getFileAttributesEx(const char* name, WIN32_FILE_ATTRIBUTE_DATA* data)
{
    return GetFileAttributesExA(name, GetFileExInfoStandard, data);
}
inline BOOL getFileAttributesEx(const wchar_t* name, WIN32_FILE_ATTRIBUTE_DATA* data)
{
    return GetFileAttributesExW(name, GetFileExInfoStandard, data);
}

inline DWORD getShortPathName(const char* name, char* path, DWORD size) { return GetShortPathNameA(name, path, size); }
inline DWORD getShortPathName(const wchar_t* name, wchar_t* path, DWORD size)
{
    return GetShortPathNameW(name, path, size);
}

inline DWORD getFullPathName(const char* name, char* path, DWORD size)
{
    return GetFullPathNameA(name, size, path, nullptr);
}
inline DWORD getFullPathName(const wchar_t* name, wchar_t* path, DWORD size)
{
    return GetFullPathNameW(name, size, path, nullptr);
}

inline DWORD getTempPath(DWORD size, char* path) { return GetTempPathA(size, path); }
inline DWORD getTempPath(DWORD size, wchar_t* path) { return GetTempPathW(size, path); }

inline BOOL deleteFile(const char* name) { return DeleteFileA(name); }
inline BOOL deleteFile(const wchar_t* name) { return DeleteFileW(name); }

// `name` has room for MAX_PATH characters.
inline UINT getTempFileName(const char* folder, char* name) { return GetTempFileNameA(folder, "tmp", 0, name); }
inline UINT getTempFileName(const wchar_t* folder, wchar_t* name) { return GetTempFileNameW(folder, L"tmp", 0, name); }
} // namespace tarn
