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
    LowLevelIOStream(const char* name, int flags); ///< As open().
    /// Share the descriptor; an assignment does not close the one before.
    ///@{
    LowLevelIOStream(const LowLevelIOStream&) = default;
    LowLevelIOStream& operator=(const LowLevelIOStream&) = default;
    ///@}

    /// Throws "Error in LowLevelIOStream::write(...)".
    unsigned int write(const void* buffer, unsigned int size) override;
    void flush() override; ///< Waits until the system has stored what was written. Throws "Can't flush".
    /// Throws "LowLevelIOStream::close()", and counts as open still.
    void close() override;
    virtual ~LowLevelIOStream() noexcept(false); ///< As close(), with its failure.

    /// Closes the file open so far, then opens another. `flags` and `mode` are those of `_open`
    /// (`_O_RDWR | _O_BINARY`, ...; `_S_IREAD | _S_IWRITE` where a file may be created). Throws
    /// "Fehler in LowLevelIOStream::open(...)\n" and is closed then.
    ///@{
    void open(const char* name, int flags);
    void open(const char* name, int flags, int mode);
    ///@}
    bool isOpen() const { return fd_ != -1; } ///< Also after a close() that failed.

    /// 0 at the end of the file. Throws "Fehler in LowLevelIOStream::read(...)".
    unsigned int read(void* buffer, unsigned int size) override;
    /// Throws "Fehler in LowLevelIOStream::seek(...)\n".
    unsigned long long seek(long long offset, whence origin) override;
    unsigned long long skip(long long count) { return seek(count, current); } ///< Backwards when negative.

private:
    int fd_ = -1;
};

/// A file of any size to read and write at any position through the runtime library's descriptors.
class TARN_API LowLevelFileStream : public LowLevelIOStream {
public:
    LowLevelFileStream() = default;
    LowLevelFileStream(const char* name, int flags) : LowLevelIOStream(name, flags) {} ///< As open().

    /// As seek(), with its error.
    void setFilePointer(long long offset, whence origin) override { seek(offset, origin); }
    /// Throws as seek().
    unsigned long long getFilePointer() override { return seek(0, current); }
};
} // namespace tarn
