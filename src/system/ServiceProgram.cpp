#include <tarn/ServiceProgram.h>

#include <tarn/CommandLine.h>
#include <tarn/Exception.h>

#include "../foundation/Check.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace tarn {
namespace {
// The system gives its callbacks no object but for controls.
std::atomic<ServiceProgram*> running = nullptr;

class Running {
public:
    explicit Running(ServiceProgram* program) { running = program; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() { running = nullptr; }
};

class ConsoleHandler {
public:
    explicit ConsoleHandler(PHANDLER_ROUTINE handler) : handler_(handler)
    {
        ensure(SetConsoleCtrlHandler(handler, TRUE), "Can't handle Ctrl+C");
    }
    ConsoleHandler(const ConsoleHandler&) = delete;
    ConsoleHandler& operator=(const ConsoleHandler&) = delete;
    ~ConsoleHandler() { SetConsoleCtrlHandler(handler_, FALSE); }

private:
    const PHANDLER_ROUTINE handler_;
};
} // namespace

struct ServiceProgram::ServiceInternals {
    static void WINAPI serviceMain(DWORD count, wchar_t** arguments);
    static DWORD WINAPI onControl(DWORD code, DWORD eventType, void* eventData, void* program);
    static BOOL WINAPI onConsole(DWORD event);
    static unsigned long runAndKeep(ServiceProgram& self, const std::vector<BasicString<wchar_t>>& arguments);
    static void control(ServiceProgram& self, unsigned long code);
    static void report(ServiceProgram& self, unsigned long state, unsigned long waitHintMs = 0);
    static void keepFailure(ServiceProgram& self);
    static void rethrow(ServiceProgram& self);
};

ServiceProgram::ServiceProgram(const wchar_t* name) : name_(name) {}

int ServiceProgram::main()
{
    const auto arguments = CommandLine::own();
    const bool isService = std::find(arguments.begin() + 1, arguments.end(), L"--service") != arguments.end();
    return isService ? runAsService() : runInConsole();
}

int ServiceProgram::runAsService()
{
    const Running self(this);
    BasicString<wchar_t> name(name_);
    const SERVICE_TABLE_ENTRYW services[] = {{name.data(), &ServiceInternals::serviceMain}, {nullptr, nullptr}};
    ensure(StartServiceCtrlDispatcherW(services), "Can't run as a service");
    ServiceInternals::rethrow(*this);
    return static_cast<int>(exitCode_);
}

int ServiceProgram::runInConsole()
{
    const Running self(this);
    const ConsoleHandler handler(&ServiceInternals::onConsole);
    const unsigned long code = ServiceInternals::runAndKeep(*this, CommandLine::own());
    ended_.set();
    ServiceInternals::rethrow(*this);
    return static_cast<int>(code);
}

void ServiceProgram::requestStop()
{
    stop_.set();
    goOn_.set(); // Who waits to go on is to see that it is over.
}

void ServiceProgram::reportProgress(unsigned nextStepMs)
{
    const AutoLock lock(lock_);
    if (state_ == SERVICE_STOP_PENDING || state_ == SERVICE_START_PENDING)
        ServiceInternals::report(*this, state_, nextStepMs);
}

unsigned long ServiceProgram::ServiceInternals::runAndKeep(ServiceProgram& self,
                                                           const std::vector<BasicString<wchar_t>>& arguments)
{
    try {
        return self.run(arguments);
    } catch (...) {
        keepFailure(self);
        return ERROR_EXCEPTION_IN_SERVICE;
    }
}

// The first one counts.
void ServiceProgram::ServiceInternals::keepFailure(ServiceProgram& self)
{
    const AutoLock lock(self.lock_);
    if (!self.failure_)
        self.failure_ = std::current_exception();
}

void ServiceProgram::ServiceInternals::rethrow(ServiceProgram& self)
{
    if (const std::exception_ptr failure = std::exchange(self.failure_, nullptr))
        std::rethrow_exception(failure);
}

// Everything that it calls is guarded: nothing can be thrown through the system.
void WINAPI ServiceProgram::ServiceInternals::serviceMain(DWORD count, wchar_t** arguments)
{
    ServiceProgram& self = *running.load();
    try {
        self.handle_ = ensure(RegisterServiceCtrlHandlerExW(self.name_.c_str(), &ServiceInternals::onControl, &self),
                              "Can't run as a service");
        report(self, SERVICE_RUNNING);
        const unsigned long code = runAndKeep(self, {arguments, arguments + count});
        const AutoLock lock(self.lock_);
        self.exitCode_ = code;
        self.isSystemCode_ = false;
        if (self.failure_)
            std::rethrow_exception(self.failure_);
    } catch (const WindowsError& error) {
        keepFailure(self);
        self.exitCode_ = error.getError();
        self.isSystemCode_ = true;
    } catch (...) {
        keepFailure(self);
        self.exitCode_ = ERROR_EXCEPTION_IN_SERVICE;
        self.isSystemCode_ = true;
    }
    report(self, SERVICE_STOPPED);
}

DWORD WINAPI ServiceProgram::ServiceInternals::onControl(DWORD code, DWORD, void*, void* program)
{
    ServiceProgram& self = *static_cast<ServiceProgram*>(program);
    try {
        control(self, code);
    } catch (...) {
        keepFailure(self);
        report(self, SERVICE_STOP_PENDING);
        SetEvent(self.stop_.getHandle());
        SetEvent(self.goOn_.getHandle());
    }
    return NO_ERROR;
}

void ServiceProgram::ServiceInternals::control(ServiceProgram& self, unsigned long code)
{
    constexpr unsigned long firstCommand = 128;
    switch (code) {
    case SERVICE_CONTROL_STOP:
    case SERVICE_CONTROL_SHUTDOWN:
        report(self, SERVICE_STOP_PENDING);
        self.requestStop();
        break;
    case SERVICE_CONTROL_PAUSE:
        self.goOn_.reset();
        report(self, SERVICE_PAUSED);
        break;
    case SERVICE_CONTROL_CONTINUE:
        self.goOn_.set();
        report(self, SERVICE_RUNNING);
        break;
    default:
        if (code >= firstCommand)
            self.onCommand(code);
    }
}

// A report that fails leaves the service manager with what it knew: there is nobody else to tell.
void ServiceProgram::ServiceInternals::report(ServiceProgram& self, unsigned long state, unsigned long waitHintMs)
{
    constexpr unsigned long usualStepMs = 30'000;
    AutoLock lock(self.lock_);
    if (self.state_ == SERVICE_STOP_PENDING && state != SERVICE_STOP_PENDING && state != SERVICE_STOPPED)
        return; // It ends, whatever else was asked for meanwhile.
    const bool isPending = state == SERVICE_STOP_PENDING || state == SERVICE_START_PENDING;
    self.checkPoint_ = isPending ? self.checkPoint_ + 1 : 0;
    self.state_ = state;
    SERVICE_STATUS status{};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    if (state == SERVICE_RUNNING || state == SERVICE_PAUSED)
        status.dwControlsAccepted =
            SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN | (self.canPause() ? SERVICE_ACCEPT_PAUSE_CONTINUE : 0);
    if (state == SERVICE_STOPPED) {
        status.dwWin32ExitCode =
            self.isSystemCode_ || self.exitCode_ == 0 ? self.exitCode_ : ERROR_SERVICE_SPECIFIC_ERROR;
        status.dwServiceSpecificExitCode = self.isSystemCode_ ? 0 : self.exitCode_;
    }
    status.dwCheckPoint = self.checkPoint_;
    status.dwWaitHint = isPending ? (waitHintMs ? waitHintMs : usualStepMs) : 0;
    const SERVICE_STATUS_HANDLE handle = self.handle_;
    if (state == SERVICE_STOPPED) // When the system knows of it, runAsService() returns, and the object may be gone.
        lock.unlock();
    SetServiceStatus(handle, &status);
}

BOOL WINAPI ServiceProgram::ServiceInternals::onConsole(DWORD event)
{
    ServiceProgram* const self = running;
    if (!self)
        return FALSE;
    SetEvent(self->stop_.getHandle());
    SetEvent(self->goOn_.getHandle());
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        WaitForSingleObject(self->ended_.getHandle(), INFINITE); // The program is ended when this returns.
    return TRUE;
}
} // namespace tarn
