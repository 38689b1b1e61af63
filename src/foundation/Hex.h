#pragma once

#include <charconv>
#include <concepts>
#include <string>

namespace tarn {
/// Lower-case hexadecimal digits without leading zeros or prefix, as messages show numbers.
template <std::unsigned_integral T> std::string toHex(T value)
{
    char digits[sizeof(T) * 2];
    return std::string(digits, std::to_chars(digits, digits + sizeof digits, value, 16).ptr);
}
} // namespace tarn
