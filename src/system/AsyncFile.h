#pragma once

#include "Deadline.h"
#include "FreshHandle.h"

#include <tarn/Event.h>

namespace tarn {
/// One end of a pipe, or a folder, that is used without blocking: one thread waits for several of them, or for some
/// time. One transfer is under way at a time, and its memory has to stay until it has ended. Failures throw
/// WindowsError.
class AsyncFile {
public:
    /// Takes a file that was opened with `FILE_FLAG_OVERLAPPED`. What transfers throw begins with `failed`.
    AsyncFile(FreshHandle file, const char* failed) : file_(std::move(file)), failed_(failed) {}
    AsyncFile(const AsyncFile&) = delete;
    AsyncFile& operator=(const AsyncFile&) = delete;
    ~AsyncFile() { close(); }

    /// Nothing must be pending.
    ///@{
    void beginRead(void* buffer, unsigned size);
    void beginWrite(const void* data, unsigned size);
    void beginConnect();
    /// For a folder: what happens in it. The count is then 0 when more did than there is room for.
    void beginWatch(void* buffer, unsigned size, bool recursive);
    ///@}
    /// The number of bytes, 0 when the other side is gone. Waits if need be.
    unsigned finish();
    /// False when the time is up; what is under way goes on then.
    bool wait(const Deadline& deadline) const;
    /// begin, wait and finish: whether all was transferred in time. If not, this end is closed.
    ///@{
    bool read(void* buffer, unsigned size, const Deadline& deadline);
    bool write(const void* data, unsigned size, const Deadline& deadline);
    ///@}

    /// Signaled when finish() would not wait. The same for the life of the object.
    void* getEvent() const { return done_.getHandle(); }
    bool isPending() const { return pending_; }
    /// Whether finish() would not wait. Throws as WindowsHandle::wait() does.
    bool isReady() const { return pending_ && done_.isSignaled(); }
    /// When the other side is gone, and after close().
    bool isOver() const { return !file_; }
    /// Ends what is pending, and this end.
    void close();
    /// The same, and goes on with another file.
    void reset(FreshHandle file);

private:
    template <class Call> void begin(Call call);
    void noteEnd(unsigned long error);

    const Event done_{true, false};
    FreshHandle file_;
    const char* const failed_;
    OVERLAPPED overlapped_{};
    bool pending_ = false;
};
} // namespace tarn
