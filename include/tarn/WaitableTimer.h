#pragma once

#include <tarn/Export.h>
#include <tarn/Time.h>
#include <tarn/WindowsHandle.h>

namespace tarn {
/// A timer to wait for, alone or with other handles: signaled when its time has come. For a window use
/// Window::setTimer(). It is set until cancel() or its end. Failures throw WindowsError.
class TARN_API WaitableTimer : public WindowsHandle {
public:
    /// Not set. With `manualReset` it stays signaled until it is set again; without, each wait that succeeds takes the
    /// signal away. Throws "Error in CreateWaitableTimer".
    explicit WaitableTimer(bool manualReset);
    /// One that programs share by its name ("Local\\NAME" for those of a session, "Global\\NAME" for all). When it is
    /// there already it stays as it is, and `existed`, if given, is set to true. Throws "Error in CreateWaitableTimer",
    /// with the code ERROR_INVALID_HANDLE when something else has the name.
    WaitableTimer(const wchar_t* name, bool manualReset, bool* existed = nullptr);
    /// One that is there. Throws "Can't open timer "NAME"".
    static WaitableTimer openNamed(const wchar_t* name);
    /// Without a name there is one argument, and a text is no `true`.
    template <IsText Text> explicit WaitableTimer(const Text&) = delete;

    /// Takes the signal away and gives it after so many milliseconds, and then in each period, if there is one.
    /// Throws "Error in SetWaitableTimer".
    void set(unsigned dueMs, unsigned periodMs = 0) const;
    /// The same for an instant by the system's clock, whose changes move it; one that is past signals at once. Throws
    /// also as Time::toFileTime() does.
    void setAt(Time due, unsigned periodMs = 0) const;
    /// No more signals; one that is there stays. Throws "Error in CancelWaitableTimer".
    void cancel() const;

private:
    explicit WaitableTimer(void* handle) : WindowsHandle(handle) {}
};
} // namespace tarn
