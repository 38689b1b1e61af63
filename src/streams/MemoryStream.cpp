#include <tarn/MemoryStream.h>

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
} // namespace

void MemoryInputStream::setFilePointer(long long offset, whence origin)
{
    const long long target = targetOf(offset, origin, position_, size_);
    if (target < 0 || target > size_)
        throw std::runtime_error("Bad seek position");
    position_ = static_cast<unsigned int>(target);
}

void MemoryOutputStream::setFilePointer(long long offset, whence origin)
{
    const long long target = targetOf(offset, origin, position_, buffer_.size());
    if (target < 0)
        throw std::runtime_error("Can't seek to negative offset");
    if (target > buffer_.size())
        buffer_ = grown(static_cast<unsigned long long>(target));
    position_ = static_cast<unsigned int>(target);
}

unsigned int MemoryOutputStream::writeGrowing(const void* data, unsigned int count)
{
    Array<char> larger = grown(static_cast<unsigned long long>(position_) + count);
    // Before the old buffer goes: the data may lie in it.
    std::memcpy(larger.data() + position_, data, count);
    buffer_.swap(larger);
    position_ += count;
    return count;
}

Array<char> MemoryOutputStream::grown(unsigned long long newSize) const
{
    if (newSize > largestSize)
        throw std::runtime_error("New size too large for a size_t");
    Array<char> larger(static_cast<unsigned int>(newSize));
    std::copy_n(buffer_.data(), buffer_.size(), larger.data());
    return larger;
}
} // namespace tarn
