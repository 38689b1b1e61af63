#pragma once

#include "Test.h"

#include <concepts>

namespace support {
template <class Ch> const Ch* pick(const char* narrow, const wchar_t* wide)
{
    if constexpr (std::same_as<Ch, char>)
        return narrow;
    else
        return wide;
}
} // namespace support

/// A literal in the width of the surrounding TEMPLATE_TEST_CASE.
#define TEXT_OF(text) pick<TestType>(text, L##text)
