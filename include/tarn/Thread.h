#pragma once

#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Lock.h>
#include <tarn/WindowsHandle.h>

#include <atomic>

namespace tarn {
/// Work that runs on a thread of its own: derive, override run(), call start() and, for its result, join().
///
/// The object can be started again when its thread has finished. An exception that leaves run(), a hardware
/// fault included, ends the thread with the exit code 0, which is all that join() tells; joinOrThrow() throws
/// the exception. One that nobody asked for is told to the debugger when the object ends or is started again.
/// All members may be called from any thread; those that look at the object's
/// state take its mutex, which join() holds while it waits, so run() must call none of isRunning(),
/// getID(), isCurrent(), join() and joinOrThrow() on its own object while another thread may be joining it. Failures
/// throw WindowsError.
///
/// Every derived class calls join() in its destructor. The one here waits too, but by then the members of the
/// derived class are gone already, and so is its run(): a thread that has not come so far as to begin with it
/// ends the program, with a message on standard error and to the debugger. A thread that is suspended has to
/// be resumed first, and run() must not destroy its own object, or the wait never ends.
class TARN_API Thread : public WindowsHandle {
public:
    /// Throws "Error in CreateMutex".
    Thread();
    /// It stays where it is, since its thread knows it by its address.
    ///@{
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ///@}
    /// A failure to join is dropped.
    ~Thread() noexcept(false) override;

    /// What the thread does; the result is its exit code.
    virtual unsigned long run() = 0;

    /// With `suspended` the thread does nothing until resume(). A thread of this object that is still
    /// running is let go of: it runs on, and nobody can join it any more. Throws "Can't create thread".
    void start(bool suspended = false);
    /// Waits until the thread has finished and returns its exit code, as often as it is called; 0 at once
    /// when nothing was started. Throws "Error waiting for thread exit", "Can't retrieve the thread's exit
    /// code", but not before run() has returned: the caller may be your destructor.
    unsigned long join();
    /// As join(); when an exception has left run(), throws it, as often as it is called. It is the same object
    /// each time: do not change it.
    unsigned long joinOrThrow();

    /// Stops the thread wherever it is, with the locks that it holds: for debuggers and tests. Nests.
    /// Throws "Can't suspend thread".
    void suspend() const;
    /// Throws "Can't resume thread".
    void resume() const;

    /// From start() until run() has returned, also while suspended.
    bool isRunning() const;
    /// 0 before the first start().
    unsigned long getID() const;
    /// Whether the calling thread is this one, and running.
    bool isCurrent() const;
    /// Of the calling thread, whoever started it.
    static unsigned long getCurrentID();

    /// The lock of the object's own state, to guard more with it.
    Mutex& getMutex() const { return mutex_; }

protected:
    /// Ends the calling thread at once, without unwinding: call it from run() only, and when no object on
    /// the stack needs its destructor.
    [[noreturn]] void exit(unsigned long code);

private:
    static DWORD WINAPI proc(void* object);
    struct ThreadInternals; // Derived classes see private names, and should see none that a program has.

    DWORD id_ = 0;
    std::atomic<DWORD> running_ = 0; // The identifier of the thread that runs, or 0.
    mutable Mutex mutex_;
};
TARN_LAYOUT(Thread, 28, 48);
} // namespace tarn
