#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline DWORD getPrivateProfileString(const char* section, const char* key, const char* defaultValue, char* buffer,
                                     DWORD size, const char* file)
{
    return GetPrivateProfileStringA(section, key, defaultValue, buffer, size, file);
}
inline DWORD getPrivateProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* defaultValue,
                                     wchar_t* buffer, DWORD size, const wchar_t* file)
{
    return GetPrivateProfileStringW(section, key, defaultValue, buffer, size, file);
}

inline BOOL writePrivateProfileString(const char* section, const char* key, const char* value, const char* file)
{
    return WritePrivateProfileStringA(section, key, value, file);
}
inline BOOL writePrivateProfileString(const wchar_t* section, const wchar_t* key, const wchar_t* value,
                                      const wchar_t* file)
{
    return WritePrivateProfileStringW(section, key, value, file);
}
} // namespace tarn
