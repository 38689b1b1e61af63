#include <tarn/BitField.h>

#include <algorithm>
#include <cstring>

namespace tarn {
namespace {
unsigned char bitsBelow(std::uint64_t position) { return static_cast<unsigned char>((1u << position % 8) - 1); }

void setMasked(unsigned char& byte, int mask, bool value)
{
    byte = static_cast<unsigned char>((byte & ~mask) | (value ? mask : 0));
}

/// Copies as a loop from the first byte to the last does: where `to` lies above `from` and they overlap,
/// the first bytes repeat.
void copyUpward(unsigned char* to, const unsigned char* from, std::size_t count)
{
    const std::uintptr_t distance = reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from);
    if (distance == 0 || distance >= count) {
        std::memmove(to, from, count);
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        to[i] = from[i];
}
} // namespace

void BitField::set(unsigned int first, unsigned int count, bool value)
{
    const std::uint64_t start = positionOf(first);
    const std::uint64_t end = start + count;
    unsigned char* const startByte = bytes_ + static_cast<std::size_t>(start / 8);
    unsigned char* const endByte = bytes_ + static_cast<std::size_t>(end / 8);
    if (startByte == endByte) {
        setMasked(*startByte, ~bitsBelow(start) & bitsBelow(end), value);
        return;
    }
    setMasked(*startByte, ~bitsBelow(start), value);
    std::memset(startByte + 1, value ? 0xFF : 0, static_cast<std::size_t>(endByte - startByte - 1));
    // Also when no bit of it belongs to the range: callers rely on the accesses being always the same.
    setMasked(*endByte, bitsBelow(end), value);
}

const BitField& BitField::operator=(const BitField& source)
{
    const unsigned int phase = offset_ % 8;
    if (source.offset_ % 8 != phase) {
        copyBits(source, 0, count_);
        return *this;
    }
    const unsigned int head = std::min(count_, (8 - phase) % 8);
    const unsigned int wholeBytes = (count_ - head) / 8;
    copyBits(source, 0, head);
    if (wholeBytes != 0)
        copyUpward(byteOf(head), source.byteOf(head), wholeBytes);
    copyBits(source, head + wholeBytes * 8, count_);
    return *this;
}

void BitField::copyBits(const BitField& source, unsigned int first, unsigned int end)
{
    for (unsigned int n = first; n < end; ++n)
        (*this)[n] = source[n];
}
} // namespace tarn
