#pragma once

#include <tarn/Array.h>
#include <tarn/Export.h>
#include <tarn/Stream.h>

#include <exception>

namespace tarn {
class MemoryOutputStream;

/// Gathers small writes, and passes them on to another stream in large pieces: to be put in front of one that is slow
/// with small ones (WindowsFile, LowLevelFileStream, a MemoryOutputStream that grows).
///
/// The other stream stays the caller's, must outlive this one, and is not closed. Ask this one for the position and
/// the size while it is in use. Call flush() to hear of failures in time.
class TARN_API BufferingOutputStream final : public BufferedOutputStream, public Seekable {
public:
    /// Holds back up to `size` bytes, without one up to 64 KB, and in front of a MemoryOutputStream as many as that
    /// holds, once the heap has moved much of it to let it grow. Throw BadAllocation.
    ///@{
    explicit BufferingOutputStream(OutputStream& target);
    BufferingOutputStream(OutputStream& target, unsigned int size);
    ///@}
    BufferingOutputStream(const BufferingOutputStream&) = delete;
    BufferingOutputStream& operator=(const BufferingOutputStream&) = delete;
    /// As flush(), when something is held back and no failure was thrown before; while an exception is on its way the
    /// debugger alone hears of one.
    ~BufferingOutputStream() noexcept(false);

    /// All of the bytes, or an exception: what the other stream throws, or EndOfFile "EOF in writeFully(...)" when it
    /// takes fewer bytes than it was given. How much of what was held back has arrived is not known then; nothing more
    /// is passed on, and each further call throws the same again.
    unsigned int write(const void* data, unsigned int count) override;
    /// Passes on what is held back, and has the other stream flush itself if it can. Throws as write().
    void flush() override;
    /// As flush(). More may be written.
    void close() override { flush(); }

    /// Of the other stream; what is held back counts. Throw Exception "The stream below has no position" where there
    /// is none, and as write().
    ///@{
    void setFilePointer(long long offset, whence origin) override;
    unsigned long long getFilePointer() override;
    unsigned long long getSize() override;
    ///@}

private:
    void pass();
    void enlarge() noexcept;

    OutputStream& target_;
    MemoryOutputStream* memory_ = nullptr; // The target, when the buffer grows with it.
    Array<char> buffer_;
    unsigned int used_ = 0;
    std::exception_ptr failure_;
};

/// Takes large pieces from another stream, and gives them out as they are asked for: to be put in front of one that is
/// slow with small reads.
///
/// The other stream stays the caller's and must outlive this one. Its position is ahead of what was read: ask this one.
class TARN_API BufferingInputStream final : public SeekableInputStream {
public:
    /// Takes up to `size` bytes at a time. Throws BadAllocation.
    explicit BufferingInputStream(InputStream& source, unsigned int size = 0x10000);
    BufferingInputStream(const BufferingInputStream&) = delete;
    BufferingInputStream& operator=(const BufferingInputStream&) = delete;
    /// Sets the other stream, if it has a position, back to behind what was read. Throws what that throws; while an
    /// exception is on its way the debugger alone hears of it.
    ~BufferingInputStream() noexcept(false);

    /// Asks the other stream until all of the bytes are there, or it has none: a source that delivers in pieces (a
    /// pipe) can be read with readFully().
    unsigned int read(void* buffer, unsigned int count) override;
    /// As of the other stream. Throw Exception "The stream below has no position" where there is none.
    ///@{
    void setFilePointer(long long offset, whence origin) override;
    unsigned long long getFilePointer() override;
    unsigned long long getSize() override;
    ///@}

private:
    InputStream& source_;
    Array<char> buffer_;
    unsigned int position_ = 0;
    unsigned int filled_ = 0;
};
} // namespace tarn
