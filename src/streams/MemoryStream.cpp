#include <tarn/MemoryStream.h>

#include "../foundation/Throw.h"
#include "CopyPiece.h"
#include "Platform.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>

namespace tarn {
namespace {
constexpr unsigned long long largestSize = std::numeric_limits<unsigned int>::max();
constexpr unsigned int roomySize = sizeof(void*) * 0x10000; // Half of what the heap gives pages of its own.
constexpr unsigned int pageSize = 0x1000;
constexpr unsigned long long largestRoom = 0x4000000;

// Sums that do not fit count as the largest number: no stream reaches that far.
long long targetOf(long long offset, Seekable::whence origin, unsigned int position, unsigned int size)
{
    const long long base = origin == Seekable::current ? position : origin == Seekable::end ? size : 0;
    return offset > std::numeric_limits<long long>::max() - base ? std::numeric_limits<long long>::max()
                                                                 : base + offset;
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
    const char* from = static_cast<const char*>(data);
    if (count > buffer_.size() - position_) {
        // Growing may move the data, too, when they lie in the stream itself.
        const std::less<const char*> isBefore;
        const bool isOwn = !isBefore(from, buffer_.data()) && isBefore(from, buffer_.data() + buffer_.size());
        const auto offset = isOwn ? from - buffer_.data() : 0;
        grow(static_cast<unsigned long long>(position_) + count);
        if (isOwn)
            from = buffer_.data() + offset;
    }
    copyPiece(buffer_.data() + position_, from, count);
    position_ += count;
    return count;
}

void MemoryOutputStream::setFilePointer(long long offset, whence origin)
{
    const long long target = targetOf(offset, origin, position_, buffer_.size());
    if (target < 0)
        throwError(std::runtime_error("Can't seek to negative offset"));
    if (target > buffer_.size())
        grow(static_cast<unsigned long long>(target));
    position_ = static_cast<unsigned int>(target);
}

void MemoryOutputStream::grow(unsigned long long newSize)
{
    if (newSize > largestSize)
        throwError(std::runtime_error("New size too large for a size_t"));
    const auto size = static_cast<unsigned int>(newSize);
    // What the heap needs for itself may shift the borders of its pages.
    const bool isSamePage = (size + 0x100ull) / pageSize == buffer_.size() / pageSize;
    if (size < roomySize || buffer_.empty() || isSamePage || growsInPlace(buffer_.data(), size))
        buffer_.resize(size);
    else
        move(size);
}

// A block with pages of its own would be moved for each page more. So more is asked for than is needed, and given back
// before it is used: a heap that lets a block keep its place then has room behind it. Without the memory for that it
// moves as it must.
void MemoryOutputStream::move(unsigned int size)
{
    const auto room = std::min({3ull * size, largestRoom, largestSize - size});
    try {
        Array<char> moved(size + static_cast<unsigned int>(room));
        moved.resize(size);
        std::memcpy(moved.data(), buffer_.data(), buffer_.size());
        buffer_.swap(moved);
    } catch (const BadAllocation&) {
        buffer_.resize(size);
    }
}
} // namespace tarn
