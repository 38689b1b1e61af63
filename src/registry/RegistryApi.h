#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline LSTATUS regOpenKey(HKEY parent, const char* subkey, REGSAM access, HKEY* key)
{
    return RegOpenKeyExA(parent, subkey, 0, access, key);
}
inline LSTATUS regOpenKey(HKEY parent, const wchar_t* subkey, REGSAM access, HKEY* key)
{
    return RegOpenKeyExW(parent, subkey, 0, access, key);
}

inline LSTATUS regCreateKey(HKEY parent, const char* subkey, const char* className, DWORD options, REGSAM access,
                            SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* disposition)
{
    return RegCreateKeyExA(parent, subkey, 0, const_cast<char*>(className), options, access, security, key,
                           disposition);
}
inline LSTATUS regCreateKey(HKEY parent, const wchar_t* subkey, const wchar_t* className, DWORD options, REGSAM access,
                            SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* disposition)
{
    return RegCreateKeyExW(parent, subkey, 0, const_cast<wchar_t*>(className), options, access, security, key,
                           disposition);
}

inline LSTATUS regDeleteKey(HKEY parent, const char* subkey) { return RegDeleteKeyA(parent, subkey); }
inline LSTATUS regDeleteKey(HKEY parent, const wchar_t* subkey) { return RegDeleteKeyW(parent, subkey); }

inline LSTATUS regQueryValue(HKEY key, const char* name, DWORD* type, BYTE* data, DWORD* size)
{
    return RegQueryValueExA(key, name, nullptr, type, data, size);
}
inline LSTATUS regQueryValue(HKEY key, const wchar_t* name, DWORD* type, BYTE* data, DWORD* size)
{
    return RegQueryValueExW(key, name, nullptr, type, data, size);
}

inline LSTATUS regSetValue(HKEY key, const char* name, DWORD type, const BYTE* data, DWORD size)
{
    return RegSetValueExA(key, name, 0, type, data, size);
}
inline LSTATUS regSetValue(HKEY key, const wchar_t* name, DWORD type, const BYTE* data, DWORD size)
{
    return RegSetValueExW(key, name, 0, type, data, size);
}

inline LSTATUS regDeleteValue(HKEY key, const char* name) { return RegDeleteValueA(key, name); }
inline LSTATUS regDeleteValue(HKEY key, const wchar_t* name) { return RegDeleteValueW(key, name); }

inline LSTATUS regQueryInfoKey(HKEY key, char* className, DWORD* classLength, DWORD* subkeys, DWORD* maxSubkey,
                               DWORD* maxClass, DWORD* values, DWORD* maxValueName, DWORD* maxValueData,
                               DWORD* securityDescriptor, FILETIME* lastWrite)
{
    return RegQueryInfoKeyA(key, className, classLength, nullptr, subkeys, maxSubkey, maxClass, values, maxValueName,
                            maxValueData, securityDescriptor, lastWrite);
}
inline LSTATUS regQueryInfoKey(HKEY key, wchar_t* className, DWORD* classLength, DWORD* subkeys, DWORD* maxSubkey,
                               DWORD* maxClass, DWORD* values, DWORD* maxValueName, DWORD* maxValueData,
                               DWORD* securityDescriptor, FILETIME* lastWrite)
{
    return RegQueryInfoKeyW(key, className, classLength, nullptr, subkeys, maxSubkey, maxClass, values, maxValueName,
                            maxValueData, securityDescriptor, lastWrite);
}

inline LSTATUS regEnumKey(HKEY key, DWORD index, char* name, DWORD* nameLength, char* className, DWORD* classLength,
                          FILETIME* lastWrite)
{
    return RegEnumKeyExA(key, index, name, nameLength, nullptr, className, classLength, lastWrite);
}
inline LSTATUS regEnumKey(HKEY key, DWORD index, wchar_t* name, DWORD* nameLength, wchar_t* className,
                          DWORD* classLength, FILETIME* lastWrite)
{
    return RegEnumKeyExW(key, index, name, nameLength, nullptr, className, classLength, lastWrite);
}

inline LSTATUS regEnumValue(HKEY key, DWORD index, char* name, DWORD* nameLength, DWORD* type, DWORD* size)
{
    return RegEnumValueA(key, index, name, nameLength, nullptr, type, nullptr, size);
}
inline LSTATUS regEnumValue(HKEY key, DWORD index, wchar_t* name, DWORD* nameLength, DWORD* type, DWORD* size)
{
    return RegEnumValueW(key, index, name, nameLength, nullptr, type, nullptr, size);
}

inline DWORD expandEnvironmentStrings(const char* text, char* buffer, DWORD size)
{
    return ExpandEnvironmentStringsA(text, buffer, size);
}
inline DWORD expandEnvironmentStrings(const wchar_t* text, wchar_t* buffer, DWORD size)
{
    return ExpandEnvironmentStringsW(text, buffer, size);
}
} // namespace tarn
