#include <tarn/Process.h>

#include <tarn/Job.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "FreshHandle.h"
#include "InheritedHandles.h"

#include <mutex>
#include <shared_mutex>

namespace tarn {
TARN_LAYOUT(STARTUPINFOA, 68, 104);

namespace {
STARTUPINFOA emptyStartup()
{
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    return startup;
}

// Held by all while a child inherits the handles that were listed for it, and by one alone while a child inherits
// whatever is inheritable: it would get the copies that are meant for others.
class Starting {
public:
    void lock() { AcquireSRWLockExclusive(&lock_); }
    void unlock() { ReleaseSRWLockExclusive(&lock_); }
    void lock_shared() { AcquireSRWLockShared(&lock_); }
    void unlock_shared() { ReleaseSRWLockShared(&lock_); }

private:
    SRWLOCK lock_ = SRWLOCK_INIT;
} starting;

STARTUPINFOEXW startupFor(const ProcessOptions& options, InheritedHandles& inherited)
{
    STARTUPINFOEXW startup{};
    STARTUPINFOW& info = startup.StartupInfo;
    info.cb = sizeof startup;
    if (options.showWindow) {
        info.dwFlags |= STARTF_USESHOWWINDOW;
        info.wShowWindow = *options.showWindow;
    }
    if (options.stdIn || options.stdOut || options.stdErr) {
        info.dwFlags |= STARTF_USESTDHANDLES;
        const auto given = [&](void* handle, DWORD own) {
            return inherited.addCopy(handle ? handle : GetStdHandle(own));
        };
        info.hStdInput = given(options.stdIn, STD_INPUT_HANDLE);
        info.hStdOutput = given(options.stdOut, STD_OUTPUT_HANDLE);
        info.hStdError = given(options.stdErr, STD_ERROR_HANDLE);
    }
    for (void* const handle : options.handles)
        inherited.add(handle);
    startup.lpAttributeList = inherited.getAttributes();
    if (!startup.lpAttributeList)
        info.cb = sizeof info;
    return startup;
}

// Who reads from a pipe to which this process has a copy of the child's end would wait for ever.
void closeCopies(InheritedHandles& inherited, const PROCESS_INFORMATION& child)
{
    try {
        inherited.closeCopies();
    } catch (...) {
        TerminateProcess(child.hProcess, ERROR_CANCELLED);
        CloseHandle(child.hThread);
        CloseHandle(child.hProcess);
        throw;
    }
}

// The child has been made suspended. One that does not get into its job ends before it has done anything.
void beginInJob(const Job& job, const PROCESS_INFORMATION& child, bool suspended)
{
    try {
        ensure(AssignProcessToJobObject(job, child.hProcess), "Can't put process into job");
        if (!suspended)
            ensureNot(static_cast<DWORD>(-1), ResumeThread(child.hThread), "Can't resume thread");
    } catch (...) {
        TerminateProcess(child.hProcess, ERROR_CANCELLED);
        throw;
    }
}
} // namespace

Process& Process::operator=(Process&& other) noexcept
{
    if (this != &other) {
        WindowsHandle::operator=(static_cast<WindowsHandle&&>(other));
        id_ = std::exchange(other.id_, 0);
        threadID_ = std::exchange(other.threadID_, 0);
    }
    return *this;
}

void Process::create(const char* commandLine, unsigned long creationFlags)
{
    STARTUPINFOA startup = emptyStartup();
    launch(commandLine, startup, false, creationFlags);
}

void Process::create(const wchar_t* commandLine, const ProcessOptions& options)
{
    BasicString<wchar_t> writable(commandLine); // The platform may write into it.
    BasicString<wchar_t> environment = options.environment ? options.environment->getBlock() : BasicString<wchar_t>();
    PROCESS_INFORMATION child{};
    {
        const std::shared_lock lock(starting);
        InheritedHandles inherited;
        STARTUPINFOEXW startup = startupFor(options, inherited);
        const DWORD flags = options.creationFlags | CREATE_UNICODE_ENVIRONMENT |
                            (startup.lpAttributeList ? EXTENDED_STARTUPINFO_PRESENT : 0) |
                            (options.job ? CREATE_SUSPENDED : 0);
        ensure(CreateProcessW(nullptr, writable.data(), nullptr, nullptr, startup.lpAttributeList != nullptr, flags,
                              options.environment ? environment.data() : nullptr,
                              options.workingFolder.empty() ? nullptr : options.workingFolder.c_str(),
                              &startup.StartupInfo, &child),
               [&] { return "Can't create process " + quoted(commandLine); });
        closeCopies(inherited, child);
    }
    takeOver(child, options.job, (options.creationFlags & CREATE_SUSPENDED) != 0);
}

void Process::create(const char* commandLine, void* stdIn, void* stdOut, void* stdErr, unsigned long creationFlags)
{
    STARTUPINFOA startup = emptyStartup();
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = stdIn;
    startup.hStdOutput = stdOut;
    startup.hStdError = stdErr;
    const std::unique_lock lock(starting);
    launch(commandLine, startup, true, creationFlags);
}

void Process::launch(const char* commandLine, STARTUPINFOA& startup, bool inheritHandles, unsigned long creationFlags)
{
    BasicString<char> writable(commandLine); // The platform may write into it.
    PROCESS_INFORMATION child{};
    ensure(CreateProcessA(nullptr, writable.data(), nullptr, nullptr, inheritHandles, creationFlags, nullptr, nullptr,
                          &startup, &child),
           [&] { return "Can't create process " + quoted(commandLine); });
    takeOver(child, nullptr, false);
}

void Process::takeOver(const PROCESS_INFORMATION& child, const Job* job, bool suspended)
{
    const FreshHandle thread(child.hThread);
    FreshHandle process(child.hProcess);
    if (job)
        beginInJob(*job, child, suspended);
    giveTo(*this, std::move(process));
    id_ = child.dwProcessId;
    threadID_ = child.dwThreadId;
}

unsigned long Process::getExitCode() const
{
    DWORD code = 0;
    ensure(GetExitCodeProcess(getHandle(), &code), "Can't retrieve process exit code");
    return code;
}

void Process::terminate(unsigned exitCode) const
{
    ensure(TerminateProcess(getHandle(), exitCode), "Can't end process");
}
} // namespace tarn
