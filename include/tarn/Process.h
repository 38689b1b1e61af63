#pragma once

#include <tarn/BasicString.h>
#include <tarn/Environment.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/WindowsHandle.h>

#include <optional>
#include <vector>

namespace tarn {
class Job;

/// How a child is to start, for Process::create(). What is not said is as for this process. Name what you say:
/// `child.create(command, ProcessOptions{.workingFolder = folder, .showWindow = SW_HIDE})`.
struct ProcessOptions {
    /// Empty for this process's own current folder.
    BasicString<wchar_t> workingFolder = {};
    /// Nothing for that of this process.
    std::optional<Environment> environment = {};
    /// How the first window is shown: one of the platform's `SW_` numbers.
    std::optional<unsigned short> showWindow = {};
    /// The child's standard input, output and error, which need not be inheritable: it gets copies. When one is
    /// given, a null stands for this process's own, and when none is, all three are as the platform has them (those of
    /// the console, if the child shares it).
    ///@{
    void* stdIn = nullptr;
    void* stdOut = nullptr;
    void* stdErr = nullptr;
    ///@}
    /// More handles for the child, which it has under the same numbers. They must be inheritable.
    std::vector<void*> handles = {};
    /// The job that the child begins in.
    const Job* job = nullptr;
    /// The platform's flags, `CREATE_NO_WINDOW` for instance.
    unsigned long creationFlags = 0;
};

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
    /// Start as create() does.
    ///@{
    Process(const char* commandLine, unsigned long creationFlags) { create(commandLine, creationFlags); }
    Process(const wchar_t* commandLine, const ProcessOptions& options) { create(commandLine, options); }
    ///@}

    /// Starts the program that the command line begins with (in quotation marks when its path has blanks),
    /// in this process's environment and folder. It inherits no handles. A child held before is let go of
    /// when the new one has started. Throws "Can't create process "COMMANDLINE"".
    void create(const char* commandLine, unsigned long creationFlags);
    /// The same with every character, and with all that can be said of a start. The child inherits the handles that
    /// the options name and no others, so that threads may start children at the same time. A CommandLine converts to
    /// the text. Throws also "Can't put process into job"; the child has run nothing then, and has ended.
    void create(const wchar_t* commandLine, const ProcessOptions& options);
    /// As the first, with the three handles as the child's standard input, output and error. They must be
    /// inheritable, as those of a Pipe can be. The child inherits every other inheritable handle of this
    /// process too: close your copy of what you gave it as soon as it runs, and make what it must not
    /// have uninheritable before (Pipe::keepReadEnd(), Pipe::keepWriteEnd()).
    void create(const char* commandLine, void* stdIn, void* stdOut, void* stdErr, unsigned long creationFlags);

    /// 259 (`STILL_ACTIVE`) while the child runs. An object without a child answers 259, too, and its wait()
    /// never ends, because to the system `INVALID_HANDLE_VALUE` is the calling process: ask isOpen() first.
    /// Throws "Can't retrieve process exit code".
    unsigned long getExitCode() const;
    /// Ends the child where it is, with this exit code; what it has started goes on (a Job ends all). Returns before
    /// the child has ended: wait(). Throws "Can't end process", for a child that has ended already, too.
    void terminate(unsigned exitCode) const;

    /// 0 before create(); the system may give the number to another process after the end.
    unsigned long getID() const { return id_; }
    /// The identifier of the child's first thread.
    unsigned long getThreadID() const { return threadID_; }

private:
    void launch(const char* commandLine, STARTUPINFOA& startup, bool inheritHandles, unsigned long creationFlags);
    void takeOver(const PROCESS_INFORMATION& child, const Job* job, bool suspended);

    DWORD id_ = 0;
    DWORD threadID_ = 0;
};
TARN_LAYOUT(Process, 16, 24);
} // namespace tarn
