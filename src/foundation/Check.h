#pragma once

#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include <concepts>
#include <string>

// The checks that turn a failing call into a WindowsError, one for each way in which calls report
// failure. `what` is the fixed description, or a callable that composes it (called on failure only).

namespace tarn {
/// Throws WindowsError for the calling thread's last error, which is read before anything else happens.
[[noreturn, gnu::noinline, gnu::cold]] void throwLastError(const char* what);

template <std::invocable Describe> [[noreturn, gnu::noinline]] void throwLastError(Describe what)
{
    const DWORD error = GetLastError();
    throw WindowsError(error, std::string(what()));
}

/// A false, null or zero result is a failure; any other is handed on, so that calls nest.
template <class T, class What> T ensure(T result, What what)
{
    if (!result)
        throwLastError(what);
    return result;
}

/// The result `failed` is a failure; any other is handed on.
template <class T, class What> T ensureNot(std::type_identity_t<T> failed, T result, What what)
{
    if (result == failed)
        throwLastError(what);
    return result;
}

/// A zero result is a failure only when the call set the last error. Takes the call, not its result,
/// because the last error has to be cleared before the call runs.
template <std::invocable Call, class What> auto ensureCleared(Call call, What what)
{
    SetLastError(ERROR_SUCCESS);
    const auto result = call();
    if (!result && GetLastError() != ERROR_SUCCESS)
        throwLastError(what);
    return result;
}

/// For calls that return their error code (the registry): any but ERROR_SUCCESS is a failure.
inline void ensureCode(LSTATUS code, const char* what = "")
{
    if (code != ERROR_SUCCESS)
        throw WindowsError(static_cast<unsigned long>(code), what);
}
} // namespace tarn
