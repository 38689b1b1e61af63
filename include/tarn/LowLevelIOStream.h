#pragma once

#include <tarn/Export.h>
#include <tarn/Stream.h>

namespace tarn {
/// A file descriptor of the runtime library as a stream, without a buffer of its own.
///
/// The class leaves setFilePointer() and getFilePointer() open, so it cannot be used by itself: use
/// LowLevelFileStream below, or derive a class for a device that positions in another way. Copies share
/// the descriptor, and each would close it. Failures throw CRTError.
class TARN_API LowLevelIOStream : public BufferedOutputStream, public SeekableInputStream {
public:
    LowLevelIOStream() = default;
    /// As open().
    ///@{
    LowLevelIOStream(const char* name, int flags);
    LowLevelIOStream(const char* name, int flags, int mode);
    ///@}
    /// Share the descriptor; an assignment does not close the one before.
    ///@{
    LowLevelIOStream(const LowLevelIOStream&) = default;
    LowLevelIOStream& operator=(const LowLevelIOStream&) = default;
    ///@}
    /// A move takes the descriptor over, and leaves the other stream closed. An assignment closes the one before;
    /// of a failure in that the debugger alone hears: close() first where it matters.
    ///@{
    LowLevelIOStream(LowLevelIOStream&& other) noexcept;
    LowLevelIOStream& operator=(LowLevelIOStream&& other) noexcept;
    ///@}

    /// Throws "Error in LowLevelIOStream::write(...)".
    unsigned int write(const void* buffer, unsigned int size) override;
    /// Waits until the system has stored what was written. Throws "Can't flush".
    void flush() override;
    /// Throws "LowLevelIOStream::close()", and counts as open still.
    void close() override;
    /// As close(), with its failure; while an exception is on its way the debugger alone hears of that.
    virtual ~LowLevelIOStream() noexcept(false);

    /// Closes the file open so far, then opens another. `flags` and `mode` are those of `_open`
    /// (`_O_RDWR | _O_BINARY`, ...). `mode` is the permission of a file that is made: without, one to read and
    /// write. Throws "Fehler in LowLevelIOStream::open(...)\n" and is closed then.
    ///@{
    void open(const char* name, int flags);
    void open(const char* name, int flags, int mode);
    ///@}
    /// Closes the file open so far and takes this descriptor over.
    void attach(int descriptor);
    /// Leaves the descriptor to the caller, and is closed then; -1 when there is none.
    int detach() noexcept;
    /// The descriptor; -1 when there is none.
    int getHandle() const { return fd_; }
    /// Also after a close() that failed.
    bool isOpen() const { return fd_ != -1; }

    /// 0 at the end of the file. Throws "Fehler in LowLevelIOStream::read(...)".
    unsigned int read(void* buffer, unsigned int size) override;
    /// Throws "Fehler in LowLevelIOStream::seek(...)\n".
    unsigned long long seek(long long offset, whence origin) override;
    /// Backwards when negative.
    unsigned long long skip(long long count) { return seek(count, current); }

private:
    int fd_ = -1;
};

/// A file of any size to read and write at any position through the runtime library's descriptors. It can be
/// moved, not copied.
class TARN_API LowLevelFileStream : public LowLevelIOStream {
public:
    LowLevelFileStream() = default;
    /// As those of LowLevelIOStream.
    ///@{
    LowLevelFileStream(LowLevelFileStream&&) noexcept = default;
    LowLevelFileStream& operator=(LowLevelFileStream&&) noexcept = default;
    ///@}
    /// As open().
    ///@{
    LowLevelFileStream(const char* name, int flags) : LowLevelIOStream(name, flags) {}
    LowLevelFileStream(const char* name, int flags, int mode) : LowLevelIOStream(name, flags, mode) {}
    ///@}

    /// As seek(), with its error.
    void setFilePointer(long long offset, whence origin) override { seek(offset, origin); }
    /// Throws as seek().
    unsigned long long getFilePointer() override { return seek(0, current); }
};
} // namespace tarn
