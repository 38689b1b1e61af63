#pragma once

#include <tarn/Windows.h>

/// The state of a service, or 0 when there is none of that name.
inline DWORD stateOf(const char* name)
{
    const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE service = OpenServiceA(manager, name, SERVICE_QUERY_STATUS);
    SERVICE_STATUS status{};
    if (service) {
        QueryServiceStatus(service, &status);
        CloseServiceHandle(service);
    }
    CloseServiceHandle(manager);
    return status.dwCurrentState;
}

inline bool reaches(const char* name, DWORD state)
{
    for (int i = 0; i < 6000 && stateOf(name) != state; ++i)
        Sleep(10);
    return stateOf(name) == state;
}
