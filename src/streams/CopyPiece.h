#pragma once

#include <cstring>

namespace tarn {
/// The first and the last bytes of a piece, which overlap unless it has twice as many. All are read before any is
/// written, because a piece may be copied over a part of itself.
template <unsigned int size> void copyBothEnds(char* to, const char* from, unsigned int count)
{
    char first[size], last[size];
    std::memcpy(first, from, size);
    std::memcpy(last, from + count - size, size);
    std::memcpy(to, first, size);
    std::memcpy(to + count - size, last, size);
}

/// Copies bytes, also over a part of themselves. Most pieces are single numbers and short texts, which are copied
/// faster than the runtime library is called.
inline void copyPiece(char* to, const char* from, unsigned int count)
{
    if (count > 32)
        std::memmove(to, from, count);
    else if (count >= 16)
        copyBothEnds<16>(to, from, count);
    else if (count >= 8)
        copyBothEnds<8>(to, from, count);
    else if (count >= 4)
        copyBothEnds<4>(to, from, count);
    else if (count >= 2)
        copyBothEnds<2>(to, from, count);
    else if (count == 1)
        *to = *from;
}
} // namespace tarn
