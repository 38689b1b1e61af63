#pragma once

#include <tarn/Export.h>
#include <tarn/Layout.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tarn {
/// A view of a run of bits in a buffer that somebody else owns, for picking packed data apart in place.
///
/// Bits are numbered from the least significant: bit 0 of a view with offset 0 is the mask 0x01 of the
/// first byte, bit 8 the mask 0x01 of the second. Nothing is allocated and nothing is checked: the buffer
/// must outlive the view, and each index must lie inside it.
///
/// A copy made by the constructor views the same bits; assignment copies the bits' values instead.
class TARN_API BitField {
public:
    /// Stands for a single bit, so that `field[3] = true` works.
    ///
    /// Assigning one proxy to another makes it stand for the other's bit and changes no memory: to copy
    /// the value write `field[3] = bool(field[5])`.
    class TARN_API Bit {
    public:
        /// Stands for the bits of `*target` that `mask` has; the byte is the caller's.
        ///@{
        Bit(unsigned char* target, unsigned char mask) : byte_(target), mask_(mask) {}
        Bit(const Bit&) = default;
        ///@}

        /// The bit's value.
        operator bool() const { return (*byte_ & mask_) != 0; }
        /// Sets the bit and gives the value.
        bool operator=(bool value)
        {
            *byte_ = static_cast<unsigned char>(value ? *byte_ | mask_ : *byte_ & ~mask_);
            return value;
        }
        /// Stands for the other bit from now on.
        Bit& operator=(const Bit&) = default;

    private:
        unsigned char* byte_;
        unsigned char mask_;
    };

    /// All bits of the buffer, which may have up to 0x1FFFFFFF bytes.
    BitField(unsigned char* bytes, unsigned int byteCount) : BitField(bytes, 0, byteCount * 8) {}
    /// `count` bits, beginning with bit `offset` counted from the first bit of `bytes`.
    BitField(unsigned char* bytes, unsigned int offset, unsigned int count)
        : bytes_(bytes), offset_(offset), count_(count)
    {
    }
    /// `count` bits of `parent` from its bit `first` on; they may reach past the parent's end.
    BitField(const BitField& parent, unsigned int first, unsigned int count)
        : BitField(parent.bytes_, parent.offset_ + first, count)
    {
    }
    /// Views the same bits.
    BitField(const BitField&) = default;

    /// The bit `n` from 0; of a field that is not const it can be assigned to.
    ///@{
    bool get(unsigned int n) const { return (*byteOf(n) & maskOf(n)) != 0; }
    bool operator[](unsigned int n) const { return get(n); }
    Bit operator[](unsigned int n) { return Bit(byteOf(n), maskOf(n)); }
    ///@}

    /// Sets the bits `first` to `first + count - 1`.
    ///
    /// The byte that holds the bit after the range is read and written back, too, even when the range
    /// ends on a byte border or is empty: make the buffer one byte longer than the bits that you set.
    void set(unsigned int first, unsigned int count, bool value);
    /// Needs that byte behind the range, too.
    void set(bool value) { set(0, count_, value); }
    /// Needs that byte behind the range, too.
    void clear() { set(0, count_, false); }
    /// A number is not taken for a value of all bits: `set(3)` looks like bit 3, which is `field[3] = true`.
    template <class T>
    requires(std::is_scalar_v<T> && !std::same_as<T, bool>) void set(T) = delete;

    /// Copies bit values from `source`, as many as this view has: `source` must not be shorter.
    ///
    /// Bits are copied upward one after the other, so that overlapping views of one buffer arrive intact
    /// only when this view begins at or below `source`; above it the lowest bits repeat.
    const BitField& operator=(const BitField& source);

private:
    // Wider than the members, because the last bits of a buffer of 512 MB lie past 32 bits.
    std::uint64_t positionOf(unsigned int n) const { return std::uint64_t(offset_) + n; }
    unsigned char* byteOf(unsigned int n) const { return bytes_ + static_cast<std::size_t>(positionOf(n) / 8); }
    unsigned char maskOf(unsigned int n) const { return static_cast<unsigned char>(1u << positionOf(n) % 8); }
    void copyBits(const BitField& source, unsigned int first, unsigned int end);

    unsigned char* bytes_;
    unsigned int offset_;
    unsigned int count_;
};
TARN_LAYOUT(BitField, 12, 16);
} // namespace tarn
