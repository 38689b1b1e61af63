#pragma once

#include <tarn/Export.h>
#include <tarn/WindowsHandle.h>

namespace tarn {
/// Counts what is free: acquire() takes one and waits when there is none, release() gives back. Any thread may do
/// either, also in other programs when the semaphore has a name. Within one program `std::counting_semaphore` is
/// faster; this one is a handle to wait for. A thread that ends gives nothing back. Failures throw WindowsError.
class TARN_API Semaphore : public WindowsHandle {
public:
    /// With `initial` of at most `maximum` free. Throws "Error in CreateSemaphore".
    Semaphore(long initial, long maximum);
    /// One that programs share by its name ("Local\\NAME" for those of a session, "Global\\NAME" for all). When it is
    /// there already it stays as it is, and `existed`, if given, is set to true. Throws "Error in CreateSemaphore",
    /// with the code ERROR_INVALID_HANDLE when something else has the name.
    Semaphore(const wchar_t* name, long initial, long maximum, bool* existed = nullptr);
    /// One that is there. Throws "Can't open semaphore "NAME"".
    static Semaphore openNamed(const wchar_t* name);

    /// Waits without end. Throws as wait() does.
    void acquire() const { wait(INFINITE); }
    /// False when there was none free in this time. Throws as wait() does.
    bool tryAcquire(unsigned timeoutMs = 0) const { return wait(timeoutMs) != timeout; }
    /// Returns how many were free before. Throws "Error in ReleaseSemaphore", for more than the maximum for instance,
    /// and gives back none then.
    long release(long count = 1) const;

private:
    explicit Semaphore(void* handle) : WindowsHandle(handle) {}
};
} // namespace tarn
