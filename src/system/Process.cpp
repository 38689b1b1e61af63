#include <tarn/Process.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "FreshHandle.h"

namespace tarn {
TARN_LAYOUT(STARTUPINFOA, 68, 104);

namespace {
STARTUPINFOA emptyStartup()
{
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    return startup;
}
} // namespace

Process& Process::operator=(Process&& other) noexcept
{
    if (this != &other) {
        WindowsHandle::operator=(std::move(other));
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

void Process::create(const char* commandLine, void* stdIn, void* stdOut, void* stdErr, unsigned long creationFlags)
{
    STARTUPINFOA startup = emptyStartup();
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = stdIn;
    startup.hStdOutput = stdOut;
    startup.hStdError = stdErr;
    launch(commandLine, startup, true, creationFlags);
}

void Process::launch(const char* commandLine, STARTUPINFOA& startup, bool inheritHandles, unsigned long creationFlags)
{
    BasicString<char> writable(commandLine); // The platform may write into it.
    PROCESS_INFORMATION child{};
    ensure(CreateProcessA(nullptr, writable.data(), nullptr, nullptr, inheritHandles, creationFlags, nullptr, nullptr,
                          &startup, &child),
           [&] { return "Can't create process " + quoted(commandLine); });
    const FreshHandle thread(child.hThread);
    giveTo(*this, FreshHandle(child.hProcess));
    id_ = child.dwProcessId;
    threadID_ = child.dwThreadId;
}

unsigned long Process::getExitCode() const
{
    DWORD code = 0;
    ensure(GetExitCodeProcess(getHandle(), &code), "Can't retrieve process exit code");
    return code;
}
} // namespace tarn
