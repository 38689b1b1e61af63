#pragma once

#include <tarn/Windows.h>

#include <cstddef>
#include <cstring>

// The order of identifiers, to be inlined: tables of them compare a great many.

namespace tarn {
/// The number whose order is that of the eight bytes in memory that begin at `offset`.
inline unsigned long long ordinal(const GUID& guid, std::size_t offset)
{
    unsigned long long value;
    std::memcpy(&value, reinterpret_cast<const char*>(&guid) + offset, sizeof value);
    return __builtin_bswap64(value);
}

inline bool isLess(const GUID& a, const GUID& b)
{
    const unsigned long long first = ordinal(a, 0), otherFirst = ordinal(b, 0);
    return first != otherFirst ? first < otherFirst : ordinal(a, 8) < ordinal(b, 8);
}
} // namespace tarn
