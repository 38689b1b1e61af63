#pragma once

/// @file
/// How the layouts that programs may rely on are kept.

/// Asserts the size that `Class` has in 32-bit programs, and the one in 64-bit programs, in bytes: whichever edition is
/// built. Stands below each class whose layout is promised; the promises are listed in docs/stable.md.
#define TARN_LAYOUT(Class, bytesOn32, bytesOn64)                                                                       \
    static_assert(sizeof(Class) == (sizeof(void*) == 4 ? (bytesOn32) : (bytesOn64)),                                   \
                  "Programs rely on the layout of " #Class ": see docs/stable.md")
