#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <concepts>
#include <utility>
#include <vector>

namespace tarn {
/// What would be taken for `true` where a bool is expected: a name, given where there are no names.
template <class T>
concept IsText = std::convertible_to<T, const char*> || std::convertible_to<T, const wchar_t*>;

/// Owns the handle of a kernel object and closes it: on destruction, on close() and before it takes
/// another one. Can be moved and not copied. Failures throw WindowsError, also out of the destructor.
///
/// One object is not changed from two threads at once; waiting is allowed from any thread.
class TARN_API WindowsHandle : private boost::noncopyable {
public:
    /// How a wait ended: by time, because the owner of a mutex ended without unlocking it, or as wished.
    enum wait_result { timeout = 0, abandoned = 1, signaled = 2 };

    WindowsHandle() : handle_(INVALID_HANDLE_VALUE) {}
    /// Takes ownership of `handle`.
    WindowsHandle(void* handle) : handle_(handle) {}
    /// The source then holds none.
    WindowsHandle(WindowsHandle&& other) noexcept : handle_(other.detach()) {}
    /// Closes the handle held so far; of a failure of that the debugger alone hears.
    WindowsHandle& operator=(WindowsHandle&& other) noexcept;
    virtual ~WindowsHandle() noexcept(false);

    /// Closes the handle held so far, as close() does, and takes this one.
    WindowsHandle& operator=(void* handle);
    /// The same.
    void attach(void* handle);
    /// Throws "Error while closing handle" and keeps the handle.
    void close();
    /// Gives the handle to the caller, open, and holds none.
    void* detach() noexcept { return std::exchange(handle_, INVALID_HANDLE_VALUE); }

    /// Lent, not given: do not close it.
    ///@{
    void* getHandle() const { return handle_; }
    operator void*() const { return handle_; }
    ///@}
    /// Neither `INVALID_HANDLE_VALUE` nor null.
    ///@{
    bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE && handle_; }
    // A template, which gives no other numbers.
    template <std::same_as<bool> Bool> operator Bool() const { return isOpen(); }
    bool operator!() const { return !isOpen(); }
    ///@}

    /// Throws "Error while retrieving handle state". Ask isOpen() first when in doubt: for the system,
    /// `INVALID_HANDLE_VALUE` names the calling process, so waiting with no handle never fails or ends.
    wait_result wait(unsigned timeoutMs) const;
    /// Without waiting; as wait(0) it takes the signal of an auto-reset event away. Throws as wait().
    bool isSignaled() const { return wait(0) == signaled; }

    /// Waits for one or for both of two handles. The second value is the index, 0 or 1, of the handle
    /// that was signaled or abandoned (0 after a time-out). Throws "Multi wait failed".
    static std::pair<wait_result, unsigned> wait(const WindowsHandle& a, const WindowsHandle& b,
                                                 unsigned long timeoutMs, bool waitAll);
    /// Waits until one of up to 64 handles is signaled: `waitForAny({stop, child, timer}, 1000)`. The second value is
    /// the index of the first one that was signaled or abandoned (0 after a time-out). Throws "Multi wait failed", for
    /// no handles and for more than 64, too.
    static std::pair<wait_result, unsigned> waitForAny(const std::vector<void*>& handles, unsigned timeoutMs);
    /// Waits until all of up to 64 handles are signaled at the same time, and takes no signal away before. `abandoned`
    /// when one of them is a mutex whose owner ended. Throws as waitForAny(); for one that is named twice, too.
    static wait_result waitForAll(const std::vector<void*>& handles, unsigned timeoutMs);

private:
    static std::pair<wait_result, unsigned> wait(unsigned count, void* const* handles, bool waitAll,
                                                 unsigned long timeoutMs);

    void* handle_;
};
} // namespace tarn
