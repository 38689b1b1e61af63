#pragma once

#include <cstddef>

/// @file
/// How the layouts that programs may rely on are kept.

namespace tarn::detail {
constexpr std::size_t ofEdition(std::size_t on32, std::size_t on64) { return sizeof(void*) == 4 ? on32 : on64; }
} // namespace tarn::detail

/// Asserts the size that `Class` has in 32-bit programs, and the one in 64-bit programs, in bytes: whichever edition is
/// built. Stands below each class whose layout is promised; the promises are listed in docs/stable.md.
#define TARN_LAYOUT(Class, bytesOn32, bytesOn64)                                                                       \
    static_assert(sizeof(Class) == tarn::detail::ofEdition(bytesOn32, bytesOn64),                                      \
                  "Programs rely on the layout of " #Class ": see docs/stable.md")
