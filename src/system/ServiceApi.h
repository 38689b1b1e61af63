#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline SC_HANDLE openSCManager(const char* machine, DWORD access)
{
    return OpenSCManagerA(machine, SERVICES_ACTIVE_DATABASEA, access);
}
inline SC_HANDLE openSCManager(const wchar_t* machine, DWORD access)
{
    return OpenSCManagerW(machine, SERVICES_ACTIVE_DATABASEW, access);
}

inline SC_HANDLE openService(SC_HANDLE manager, const char* name, DWORD access)
{
    return OpenServiceA(manager, name, access);
}
inline SC_HANDLE openService(SC_HANDLE manager, const wchar_t* name, DWORD access)
{
    return OpenServiceW(manager, name, access);
}

inline BOOL startService(SC_HANDLE service, DWORD count, const char** arguments)
{
    return StartServiceA(service, count, arguments);
}
inline BOOL startService(SC_HANDLE service, DWORD count, const wchar_t** arguments)
{
    return StartServiceW(service, count, arguments);
}
} // namespace tarn
