#pragma once

#include <tarn/Export.h>

#include <array>

namespace tarn {
namespace detail {
/// DeHam48's answer for each byte.
extern TARN_API const std::array<signed char, 256> deHam48Table;
} // namespace detail

/// Decodes a byte in the Hamming 8/4 code of teletext (ETS 300 706): the four data bits as 0 to 15, with
/// an error in any one bit corrected, or -1 for a byte with two wrong bits.
///
/// Bit 0 of `byte` is the one transmitted first. May be called from any thread at any time.
inline signed char DeHam48(unsigned char byte) { return detail::deHam48Table[byte]; }
} // namespace tarn
