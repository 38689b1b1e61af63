#pragma once

#include <array>

namespace tarn {
namespace detail {
/// DeHam48's answer for each byte. Any two codes differ in at least four bits, so that no byte is within one bit of two
/// of them.
inline constexpr std::array<signed char, 256> deHam48 = [] {
    constexpr unsigned char codes[16] = {0x15, 0x02, 0x49, 0x5E, 0x64, 0x73, 0x38, 0x2F,
                                         0xD0, 0xC7, 0x8C, 0x9B, 0xA1, 0xB6, 0xFD, 0xEA};
    std::array<signed char, 256> table{};
    table.fill(-1);
    for (signed char value = 0; value < 16; ++value) {
        table[codes[value]] = value;
        for (unsigned int bit = 1; bit < 256; bit <<= 1)
            table[codes[value] ^ bit] = value;
    }
    return table;
}();
} // namespace detail

/// Decodes a byte in the Hamming 8/4 code of teletext (ETS 300 706): the four data bits as 0 to 15, with
/// an error in any one bit corrected, or -1 for a byte with two wrong bits.
///
/// Bit 0 of `byte` is the one transmitted first. May be called from any thread at any time.
constexpr signed char DeHam48(unsigned char byte) { return detail::deHam48[byte]; }
} // namespace tarn
