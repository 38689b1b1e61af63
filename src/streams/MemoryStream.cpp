#include <tarn/MemoryStream.h>

#include "../foundation/Throw.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace tarn {
namespace {
constexpr unsigned long long largestSize = std::numeric_limits<unsigned int>::max();

// Sums that do not fit count as the largest number: no stream reaches that far.
long long targetOf(long long offset, Seekable::whence origin, unsigned int position, unsigned int size)
{
    const long long base = origin == Seekable::current ? position : origin == Seekable::end ? size : 0;
    return offset > std::numeric_limits<long long>::max() - base ? std::numeric_limits<long long>::max()
                                                                 : base + offset;
}

// The first and the last bytes of a piece, which overlap unless it has twice as many. All are read before any is
// written, because a piece may be copied over a part of itself.
template <unsigned int size> void copyBothEnds(char* to, const char* from, unsigned int count)
{
    char first[size], last[size];
    std::memcpy(first, from, size);
    std::memcpy(last, from + count - size, size);
    std::memcpy(to, first, size);
    std::memcpy(to + count - size, last, size);
}

// Most pieces are single numbers and short texts, which are copied faster than the runtime library is called.
void copyPiece(char* to, const char* from, unsigned int count)
{
    if (count > 16)
        std::memmove(to, from, count);
    else if (count >= 8)
        copyBothEnds<8>(to, from, count);
    else if (count >= 4)
        copyBothEnds<4>(to, from, count);
    else if (count >= 2)
        copyBothEnds<2>(to, from, count);
    else if (count == 1)
        *to = *from;
}
} // namespace

unsigned int MemoryInputStream::read(void* buffer, unsigned int count)
{
    count = std::min(size_ - position_, count);
    copyPiece(static_cast<char*>(buffer), data_ + position_, count);
    position_ += count;
    return count;
}

void MemoryInputStream::setFilePointer(long long offset, whence origin)
{
    const long long target = targetOf(offset, origin, position_, size_);
    if (target < 0 || target > size_)
        throwError(std::runtime_error("Bad seek position"));
    position_ = static_cast<unsigned int>(target);
}

unsigned int MemoryOutputStream::write(const void* data, unsigned int count)
{
    const char* const from = static_cast<const char*>(data);
    if (count <= buffer_.size() - position_) {
        copyPiece(buffer_.data() + position_, from, count);
    } else {
        Array<char> larger = grown(static_cast<unsigned long long>(position_) + count);
        // Before the old buffer goes: the data may lie in it.
        std::memcpy(larger.data() + position_, from, count);
        buffer_.swap(larger);
    }
    position_ += count;
    return count;
}

void MemoryOutputStream::setFilePointer(long long offset, whence origin)
{
    const long long target = targetOf(offset, origin, position_, buffer_.size());
    if (target < 0)
        throwError(std::runtime_error("Can't seek to negative offset"));
    if (target > buffer_.size())
        buffer_ = grown(static_cast<unsigned long long>(target));
    position_ = static_cast<unsigned int>(target);
}

Array<char> MemoryOutputStream::grown(unsigned long long newSize) const
{
    if (newSize > largestSize)
        throwError(std::runtime_error("New size too large for a size_t"));
    Array<char> larger(static_cast<unsigned int>(newSize));
    std::copy_n(buffer_.data(), buffer_.size(), larger.data());
    return larger;
}
} // namespace tarn
