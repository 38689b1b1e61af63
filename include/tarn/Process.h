#pragma once

#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/WindowsHandle.h>

namespace tarn {
/// A child process: starts a program and tells when it has ended, and with which exit code.
///
/// The object owns the handle only: destroying or closing it neither ends the child nor waits for it.
/// Wait with the inherited wait(). Failures throw WindowsError.
class TARN_API Process : public WindowsHandle {
public:
    Process() = default;
    /// Take the child over; the source then knows of none.
    ///@{
    Process(Process&& other) noexcept
        : WindowsHandle(std::move(other)), id_(std::exchange(other.id_, 0)),
          threadID_(std::exchange(other.threadID_, 0))
    {
    }
    Process& operator=(Process&& other) noexcept;
    ///@}
    /// Starts as create() does.
    Process(const char* commandLine, unsigned long creationFlags) { create(commandLine, creationFlags); }

    /// Starts the program that the command line begins with (in quotation marks when its path has blanks),
    /// in this process's environment and folder. It inherits no handles. A child held before is let go of
    /// when the new one has started. Throws "Can't create process "COMMANDLINE"".
    void create(const char* commandLine, unsigned long creationFlags);
    /// The same with the three handles as the child's standard input, output and error. They must be
    /// inheritable, as those of a Pipe can be. The child inherits every other inheritable handle of this
    /// process too: close your copy of what you gave it as soon as it runs, and make what it must not
    /// have uninheritable before (Pipe::keepReadEnd(), Pipe::keepWriteEnd()).
    void create(const char* commandLine, void* stdIn, void* stdOut, void* stdErr, unsigned long creationFlags);

    /// 259 (`STILL_ACTIVE`) while the child runs. An object without a child answers 259, too, and its wait()
    /// never ends, because to the system `INVALID_HANDLE_VALUE` is the calling process: ask isOpen() first.
    /// Throws "Can't retrieve process exit code".
    unsigned long getExitCode() const;

    /// 0 before create(); the system may give the number to another process after the end.
    unsigned long getID() const { return id_; }
    /// The identifier of the child's first thread.
    unsigned long getThreadID() const { return threadID_; }

private:
    void launch(const char* commandLine, STARTUPINFOA& startup, bool inheritHandles, unsigned long creationFlags);

    DWORD id_ = 0;
    DWORD threadID_ = 0;
};
TARN_LAYOUT(Process, 16, 24);
} // namespace tarn
