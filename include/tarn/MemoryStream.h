#pragma once

#include <tarn/Array.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Stream.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace tarn {
/// Reads from the caller's memory, which is not copied and has to stay for as long as it is read. Copies
/// of the stream read the same memory, each from its own position.
class TARN_API MemoryInputStream : public SeekableInputStream {
public:
    /// Without data, as if over an empty buffer.
    MemoryInputStream() = default;
    /// As setBuffer().
    MemoryInputStream(const void* data, unsigned int size) { setBuffer(data, size); }

    /// Goes over to other memory, at its start.
    void setBuffer(const void* data, unsigned int size)
    {
        data_ = static_cast<const char*>(data);
        size_ = size;
        position_ = 0;
    }

    /// `buffer` may lie in the memory that is read.
    unsigned int read(void* buffer, unsigned int count) override;
    /// Goes on by as many bytes, or as there are, and says where they lie.
    std::string_view take(unsigned int count)
    {
        count = std::min(size_ - position_, count);
        return {data_ + std::exchange(position_, position_ + count), count};
    }
    /// Throws `std::runtime_error` "Bad seek position" for a position before the start or behind the end.
    void setFilePointer(long long offset, whence origin) override;
    /// From the start of the memory.
    unsigned long long getFilePointer() override { return position_; }

private:
    const char* data_ = nullptr;
    unsigned int size_ = 0;
    unsigned int position_ = 0;
};

/// Writes into memory of its own, at any position. Copies are deep.
///
/// The memory is always exactly as large as the stream, so that a write at the end may move all of it, where the heap
/// cannot let it grow in its place. Put a BufferingOutputStream in front where much is written in small pieces.
///
/// Failures leave the stream as it was: `std::runtime_error` "New size too large for a size_t" at 4 GB,
/// BadAllocation when the memory cannot be had.
class TARN_API MemoryOutputStream : public OutputStream, public Seekable {
public:
    MemoryOutputStream() = default;
    /// Copy the memory and the position.
    ///@{
    MemoryOutputStream(const MemoryOutputStream&) = default;
    MemoryOutputStream& operator=(const MemoryOutputStream&) = default;
    ///@}
    /// A move takes the memory over, and leaves the other stream empty, at its start.
    ///@{
    MemoryOutputStream(MemoryOutputStream&& other) noexcept
        : buffer_(std::move(other.buffer_)), position_(std::exchange(other.position_, 0))
    {
    }
    MemoryOutputStream& operator=(MemoryOutputStream&& other) noexcept
    {
        buffer_ = std::move(other.buffer_);
        position_ = std::exchange(other.position_, 0);
        return *this;
    }
    ///@}

    /// The first byte, null while there is none. Valid until the stream grows.
    const void* getData() const { return buffer_.data(); }

    /// All of the bytes, or an exception. They may be bytes of the stream itself.
    unsigned int write(const void* data, unsigned int count) override;
    /// A position behind the end makes the stream that long; what lies between holds any bytes. Throws
    /// `std::runtime_error` "Can't seek to negative offset", too.
    void setFilePointer(long long offset, whence origin) override;
    /// From the start of the memory.
    unsigned long long getFilePointer() override { return position_; }
    unsigned long long getSize() override { return buffer_.size(); }

private:
    void grow(unsigned long long newSize);
    void move(unsigned int size);

    Array<char> buffer_;
    unsigned int position_ = 0;
};

TARN_LAYOUT(MemoryOutputStream, 20, 40);
} // namespace tarn
