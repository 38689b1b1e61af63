#pragma once

#include <tarn/Array.h>
#include <tarn/Export.h>
#include <tarn/Stream.h>

#include <cstdint>
#include <exception>

namespace tarn {
namespace detail {
/// A checksum that any one changed bit changes, and any other damage but in one case of four billion.
class TARN_API Checksum {
public:
    /// More bytes, which count as a piece of their own.
    void add(const void* data, unsigned int size) noexcept;
    /// Of all so far.
    std::uint32_t get() const noexcept;

private:
    std::uint32_t lanes_[4] = {0x243F6A88, 0x85A308D3, 0x13198A2E, 0x03707344};
};
} // namespace detail

/// Writes what it is given to another stream in blocks with their lengths and checksums, so that a reader hears of all
/// damage, of a flipped bit as of a missing end: to be put between an Archive and its file.
///
/// The other stream stays the caller's, must outlive this one, and is not closed. It takes large pieces only, so no
/// BufferingOutputStream is needed. Call close() at the end, to hear of failures.
class TARN_API FramedOutputStream final : public BufferedOutputStream {
public:
    /// Throws BadAllocation.
    explicit FramedOutputStream(OutputStream& target);
    FramedOutputStream(const FramedOutputStream&) = delete;
    FramedOutputStream& operator=(const FramedOutputStream&) = delete;
    /// As close(), unless a failure was thrown before or an exception is on its way: then the end is not written, and
    /// who reads hears of it.
    ~FramedOutputStream() noexcept(false);

    /// All of the bytes, or an exception: what the other stream throws, or EndOfFile "EOF in writeFully(...)" when it
    /// takes fewer bytes than it was given. Nothing more is passed on then.
    unsigned int write(const void* data, unsigned int count) override;
    /// Passes on what is held back as a block of its own, and has the other stream flush itself if it can. Throws as
    /// write().
    void flush() override;
    /// Writes the end, and flushes. Throws as write(), which throws Exception "The frame is closed" from here on.
    void close() override;

private:
    void pass();
    void end();

    OutputStream& target_;
    Array<char> buffer_;
    unsigned int used_;
    unsigned long long written_ = 0;
    detail::Checksum checksum_;
    std::exception_ptr failure_;
    bool isClosed_ = false;
};

/// Reads what a FramedOutputStream wrote. No byte is given out before the checksum of its block was right.
///
/// The other stream stays the caller's and must outlive this one. Not a byte behind the frame is read from it.
class TARN_API FramedInputStream final : public InputStream {
public:
    /// Reads nothing yet.
    explicit FramedInputStream(InputStream& source) : source_(source) {}
    FramedInputStream(const FramedInputStream&) = delete;
    FramedInputStream& operator=(const FramedInputStream&) = delete;

    /// 0 behind the end of the frame alone. Throws Exception "The data are damaged" for a block whose checksum is
    /// wrong, and for what is no frame, and EndOfFile "EOF in readFully(...)" when the other stream ends before the
    /// frame does. It asks that stream until a block is there, so that one can be read that delivers in pieces (a
    /// pipe).
    unsigned int read(void* buffer, unsigned int count) override;
    /// To be called when all is read: sees that the end of the frame is here. Throws as read(), and Exception "The data
    /// go on" when there is more to read.
    void finish();

    /// How many bytes it has given out.
    unsigned long long getReadCount() const { return read_ - (filled_ - position_); }

private:
    bool nextBlock();
    void readWhole(void* buffer, unsigned int size);
    void check();

    InputStream& source_;
    Array<char> buffer_;
    unsigned int position_ = 0;
    unsigned int filled_ = 0;
    unsigned long long read_ = 0;
    detail::Checksum checksum_;
    bool hasBegun_ = false;
    bool isBroken_ = false;
    bool isAtEnd_ = false;
};
} // namespace tarn
