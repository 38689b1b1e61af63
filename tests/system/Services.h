#pragma once

#include "Test.h"

#include <tarn/CommandLine.h>
#include <tarn/Service.h>

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

/// This program as the service "TarnTest", in either width; ServiceProgramTests.cpp has what it does.
template <class Ch> void createService(Service& service, const Ch* name)
{
    const BasicString<Ch> program(CommandLine(ownProgram()).add("is a service").c_str());
    service.create(ServiceManager(nullptr, SC_MANAGER_CONNECT | SC_MANAGER_CREATE_SERVICE), name, name,
                   SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE,
                   program.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
}

/// The same, for a scope.
struct Installed {
    template <class Ch> explicit Installed(const Ch* name) { createService(service, name); }
    ~Installed() noexcept(false)
    {
        try {
            service.stop();
        } catch (const WindowsError&) { // Not running.
        }
        service.remove();
        service.close();
        CHECK(reaches("TarnTest", 0));
    }

    Service service;
};
