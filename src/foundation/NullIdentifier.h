#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// COM passes identifiers by pointer, so the reference may well be null; the compiler takes it for granted
/// that it is not and must not see the comparison.
inline bool isNull(const GUID& guid)
{
    const GUID* address = &guid;
    asm("" : "+r"(address));
    return !address;
}
} // namespace tarn
