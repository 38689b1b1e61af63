#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>
#include <tarn/WindowsHandle.h>

namespace tarn {
/// What AutoLock locks: CriticalSection within one process, Mutex where a handle is needed. Both work with
/// `std::unique_lock` and `std::scoped_lock`, too, which takes two without a deadlock.
class TARN_API Lockable {
public:
    Lockable() = default;
    /// The interface has no state of its own.
    ///@{
    Lockable(const Lockable&) = default;
    Lockable& operator=(const Lockable&) = default;
    ///@}

    /// Waits until the lock is free and takes it.
    virtual void lock() = 0;
    /// Frees the lock, which the calling thread holds.
    virtual void unlock() = 0;

protected:
    ~Lockable() = default;
};

/// The fast lock within a process; the thread that holds it may lock it again. Reports no errors.
class TARN_API CriticalSection : public Lockable {
public:
    CriticalSection() { InitializeCriticalSection(&section_); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    ~CriticalSection() { DeleteCriticalSection(&section_); }

    void lock() final { EnterCriticalSection(&section_); }
    void unlock() final { LeaveCriticalSection(&section_); }
    /// False when another thread holds the lock; do not wait. The second is for the standard library's locks.
    ///@{
    bool tryLock() { return TryEnterCriticalSection(&section_) != FALSE; }
    bool try_lock() { return tryLock(); }
    ///@}

private:
    CRITICAL_SECTION section_;
};

/// A mutex of the system: slower than a CriticalSection, but it is a handle to wait for, and
/// a thread that ends without unlocking does not block the others for ever. Failures throw WindowsError.
class TARN_API Mutex : public WindowsHandle, public Lockable {
public:
    /// Throws "Error in CreateMutex".
    explicit Mutex(bool initiallyOwned);
    /// One that programs share by its name ("Local\\NAME" for those of a session, "Global\\NAME" for all). When it is
    /// there already, `existed`, if given, is set to true, and the calling thread does not own it, whatever
    /// `initiallyOwned` says. Throws "Error in CreateMutex", with the code ERROR_INVALID_HANDLE when something else has
    /// the name.
    Mutex(const wchar_t* name, bool initiallyOwned, bool* existed = nullptr);
    /// One that is there. Throws "Can't open mutex "NAME"".
    static Mutex openNamed(const wchar_t* name);
    /// Without a name there is one argument, and a text is no `true`.
    template <IsText Text> explicit Mutex(const Text&) = delete;

    /// Waits without end. A mutex that its owner's end abandoned counts as locked. Throws "Error while
    /// retrieving handle state".
    void lock() override;
    /// Throws "Error in ReleaseMutex", for a mutex of another thread for instance.
    void unlock() override;
    /// False when another thread holds the mutex; do not wait. The second is for the standard library's locks.
    /// Throw as lock().
    ///@{
    bool tryLock() { return wait(0) != timeout; }
    bool try_lock() { return tryLock(); }
    ///@}

private:
    struct Opened {
        void* handle;
    };
    explicit Mutex(Opened opened) : WindowsHandle(opened.handle) {}
};

/// Holds a lock for the length of a scope. Give it a name, as in `AutoLock lock(section);`: without one,
/// `AutoLock(section);` declares a variable called `section` that holds nothing.
///
/// A copy holds the same lock and unlocks it too: copy only holders that hold nothing.
class TARN_API AutoLock {
public:
    AutoLock() = default;
    /// As lock().
    [[nodiscard]] AutoLock(Lockable& lockable)
    {
        lockable.lock();
        held_ = &lockable;
    }
    /// Hold the same lock; an assignment does not unlock the one before.
    ///@{
    AutoLock(const AutoLock&) = default;
    AutoLock& operator=(const AutoLock&) = default;
    ///@}
    /// A failure to unlock is dropped: call unlock() to hear of it.
    virtual ~AutoLock()
    {
        try {
            unlock();
        } catch (...) {
        }
    }

    /// Unlocks the lock held so far before it locks `lockable`.
    void lock(Lockable& lockable)
    {
        unlock();
        lockable.lock();
        held_ = &lockable;
    }
    /// Unlocks what is held, if anything, and forgets it, also when that throws.
    void unlock()
    {
        if (Lockable* const held = std::exchange(held_, nullptr))
            held->unlock();
    }

private:
    Lockable* held_ = nullptr;
};
} // namespace tarn
