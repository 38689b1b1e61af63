#pragma once

namespace tarn {
/// Does nothing. Every error of the library passes here just before it is thrown, so that one breakpoint
/// (`break tarn::aboutToThrow`) meets them all, whatever their class.
[[gnu::noinline, gnu::cold]] inline void aboutToThrow() noexcept
{
    asm volatile(""); // Keeps the calls of a function that does nothing.
}

/// Throws `error`: the only way in which the library's sources throw what they made themselves.
template <class E> [[noreturn, gnu::noinline, gnu::cold]] void throwError(E error)
{
    aboutToThrow();
    throw error;
}
} // namespace tarn
