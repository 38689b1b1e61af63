#pragma once

#include "FreshHandle.h"

#include <tarn/Event.h>

namespace tarn {
/// A pipe to or from a child process, of which one end is this process's and asynchronous: one thread waits for several
/// of them. Failures throw WindowsError.
class AsyncPipe {
public:
    enum class Direction { fromChild, toChild };

    /// Throws "Can't make pipe for child process".
    explicit AsyncPipe(Direction direction);
    AsyncPipe(const AsyncPipe&) = delete;
    AsyncPipe& operator=(const AsyncPipe&) = delete;
    ~AsyncPipe();

    void* childsEnd() const { return childsEnd_.get(); }
    /// To be called when the child has its own.
    void closeChildsEnd() { childsEnd_.reset(); }

    /// Signaled when the read or write that was begun has ended.
    void* getEvent() const { return done_.getHandle(); }
    /// From beginning to read or write to its end.
    bool isPending() const { return pending_; }
    /// Whether finish() would not wait. Throws as WindowsHandle::wait() does.
    bool isReady() const { return pending_ && done_.isSignaled(); }
    /// When the other side is gone, and after close().
    bool isOver() const { return !ownEnd_; }

    /// Nothing must be pending, and the memory has to stay until the end.
    ///@{
    void beginRead(void* buffer, unsigned size);
    void beginWrite(const void* data, unsigned size);
    ///@}
    /// The number of bytes, 0 when the pipe is over now. Waits if need be.
    unsigned finish();
    /// Ends what is pending, and this process's end.
    void close();

private:
    void begun(bool done);
    void noteEnd(unsigned long error);

    const Direction direction_;
    const Event done_{true, false};
    FreshHandle ownEnd_, childsEnd_;
    OVERLAPPED overlapped_{};
    bool pending_ = false;
};
} // namespace tarn
