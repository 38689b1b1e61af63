#pragma once

#include <tarn/Export.h>
#include <tarn/WindowsHandle.h>

namespace tarn {
/// A kernel event: one thread sets it, others wait for it with the inherited wait().
///
/// Use it to say that something happened; to guard data use a Lockable. Owns its handle and closes it on
/// destruction; cannot be copied. set(), reset() and wait() may be called from any thread; close() and
/// attach() need the object to yourself. Failures throw WindowsError.
class TARN_API Event : public WindowsHandle {
public:
    /// An unnamed event. With `manualReset` it stays signaled until reset(); without, each wait that
    /// succeeds takes the signal away. Throws "Error in CreateEvent".
    Event(bool manualReset, bool initiallySignaled);
    /// One that programs share by its name ("Local\\NAME" for those of a session, "Global\\NAME" for all). When it is
    /// there already it stays as it is, and `existed`, if given, is set to true. Throws "Error in CreateEvent", with
    /// the code ERROR_INVALID_HANDLE when something else has the name.
    Event(const wchar_t* name, bool manualReset, bool initiallySignaled, bool* existed = nullptr);
    /// One that is there. Throws "Can't open event "NAME"".
    static Event openNamed(const wchar_t* name);
    /// Without a name there are two arguments, and a text is no `true`.
    ///@{
    template <IsText Text> Event(const Text&, bool) = delete;
    template <IsText Text> Event(bool, const Text&) = delete;
    ///@}

    /// Throws "Error in SetEvent".
    void set() const;
    /// Throws "Error in ResetEvent".
    void reset() const;
    /// Wakes the threads waiting at this moment, then resets. Throws "Error in PulseEvent". A thread that
    /// the system takes off its wait for an instant misses the pulse: prefer set() on a manual-reset event.
    void pulse() const;

private:
    struct Opened {
        void* handle;
    };
    explicit Event(Opened opened) : WindowsHandle(opened.handle) {}
};
} // namespace tarn
