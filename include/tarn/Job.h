#pragma once

#include <tarn/Export.h>
#include <tarn/WindowsHandle.h>

namespace tarn {
class Process;

/// A set of processes that end together: a child that is put into a job takes along whatever it starts.
///
/// Give it to a start as `ProcessOptions::job`, so that the child is in it before it does anything. Unless
/// endWithOwner() was called, closing the job ends nothing. The system signals a job only when a limit of its
/// processors' time is reached: wait for the processes. Failures throw WindowsError.
class TARN_API Job : public WindowsHandle {
public:
    /// Without processes, name and limits. Throws "Can't create job".
    Job();

    /// Puts a running process into the job; those that it has started before stay outside. Throws "Can't put
    /// process into job": for one that has ended, and before Windows 8 for one that is in another job.
    void add(const Process& process) const;
    /// Whether all processes of the job are ended when its last handle is closed, also when this process crashes.
    /// Throws "Can't change limits of job".
    void endWithOwner(bool ends = true) const;
    /// Ends all its processes with this exit code. Throws "Can't end job".
    void terminate(unsigned exitCode) const;
    /// How many have not ended. Throws "Can't ask job for its processes".
    unsigned getProcessCount() const;
};
} // namespace tarn
