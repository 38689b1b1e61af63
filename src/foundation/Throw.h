#pragma once

#include <tarn/ErrorTrace.h>

#include <utility>

namespace tarn {
/// Does nothing. Every error of the library passes here just before it is thrown, so that one breakpoint
/// (`break tarn::aboutToThrow`) meets them all, whatever their class.
[[gnu::noinline, gnu::cold]] inline void aboutToThrow() noexcept
{
    asm volatile(""); // Keeps the calls of a function that does nothing.
}

/// An error that carries its trace.
template <class E> class Traced final : public E, public ErrorTrace {
public:
    Traced(E&& error, const void* returnAddress) : E(std::move(error)), ErrorTrace(returnAddress) {}
    const std::type_info& getErrorType() const noexcept override { return typeid(E); }
};

template <class E> [[noreturn, gnu::noinline, gnu::cold]] void throwTraced(E& error, const void* returnAddress)
{
    throw Traced<E>(std::move(error), returnAddress);
}

/// Throws `error`: the only way in which the library's sources throw what they made themselves. A function that does
/// nothing else gives its own return address, so that the trace begins with its caller.
template <class E> [[noreturn, gnu::noinline, gnu::cold]] void throwError(E error, const void* returnAddress = nullptr)
{
    aboutToThrow();
    if (ErrorTrace::isEnabled())
        throwTraced(error, returnAddress ? returnAddress : __builtin_return_address(0));
    throw error;
}

namespace detail {
// What its making needs is gone when it is thrown.
template <class E, class... Arguments> E madeOf(Arguments... arguments) { return E(arguments...); }

template <class E, class... Arguments>
[[noreturn, gnu::noinline, gnu::cold]] void throwNewTraced(const void* returnAddress, Arguments... arguments)
{
    throw Traced<E>(madeOf<E>(arguments...), returnAddress);
}
} // namespace detail

/// As throwError(), of what an error is made of: numbers and pointers. It is made in its place, so that on the way to
/// the handler there is nothing to destroy, for which the unwinder stops, and no frame of this function: each takes a
/// fifth of the time of a throw.
template <class E, class... Arguments>
[[noreturn, gnu::always_inline]] inline void throwNew(const void* returnAddress, Arguments... arguments)
{
    aboutToThrow();
    if (ErrorTrace::isEnabled())
        detail::throwNewTraced<E>(returnAddress, arguments...);
    throw detail::madeOf<E>(arguments...);
}
} // namespace tarn
