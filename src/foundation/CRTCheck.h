#pragma once

#include "Throw.h"

#include <tarn/Exception.h>

#include <cerrno>
#include <string>
#include <type_traits>

namespace tarn {
/// Throws CRTError for `errno`, which is read before anything else happens. `what` is the description, or
/// a callable that composes it.
template <class What> [[noreturn, gnu::noinline, gnu::cold]] void throwCRTError(What what)
{
    const int error = errno;
    if constexpr (std::is_invocable_v<What>)
        throwError(CRTError(error, what()), __builtin_return_address(0));
    else
        throwError(CRTError(error, what), __builtin_return_address(0));
}

/// For functions of the runtime library that set `errno`: the result `failed` is a failure; any other is
/// handed on, so that calls nest.
template <class T, class What> T ensureCRT(std::type_identity_t<T> failed, T result, What what)
{
    if (result == failed)
        throwCRTError(what);
    return result;
}
} // namespace tarn
