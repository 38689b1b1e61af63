// A service that runs until it is told to stop. Started with the name of a file as its first argument, it
// writes the others there.

#include <windows.h>

#include <fstream>

namespace {
SERVICE_STATUS_HANDLE status;
HANDLE stopped;

void report(DWORD state)
{
    SERVICE_STATUS now{};
    now.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    now.dwCurrentState = state;
    now.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP : 0;
    SetServiceStatus(status, &now);
}

void WINAPI onControl(DWORD control)
{
    if (control == SERVICE_CONTROL_STOP) {
        report(SERVICE_STOP_PENDING);
        SetEvent(stopped);
    }
}

void WINAPI serviceMain(DWORD argc, char** argv)
{
    status = RegisterServiceCtrlHandlerA(argv[0], onControl);
    if (argc > 1) {
        std::ofstream out(argv[1]);
        for (DWORD i = 2; i < argc; ++i)
            out << argv[i] << ';';
    }
    report(SERVICE_RUNNING);
    WaitForSingleObject(stopped, INFINITE);
    report(SERVICE_STOPPED);
}
} // namespace

int main()
{
    stopped = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    char noName[] = "";
    const SERVICE_TABLE_ENTRYA services[] = {{noName, serviceMain}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherA(services) ? 0 : 1;
}
