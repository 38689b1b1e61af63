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
} // namespace tarn
