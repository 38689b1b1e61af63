#pragma once

#include "Throw.h"

#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include <concepts>
#include <string>
#include <type_traits>

// The checks that turn a failing call into a WindowsError, one for each way in which calls report
// failure. `what` is the fixed description, or a callable that composes it (called on failure only).
// CRTCheck.h has the check for calls of the runtime library, HRESULTHolder::throwOnError is that for COM's.

namespace tarn {
/// Throws WindowsError for a code that no call reported as the last error.
[[noreturn, gnu::noinline, gnu::cold]] void throwWindowsError(unsigned long error, const char* what = "");

/// Throws WindowsError for the calling thread's last error, which is read before anything else happens.
[[noreturn, gnu::noinline, gnu::cold]] void throwLastError(const char* what);

template <std::invocable Describe> [[noreturn, gnu::noinline, gnu::cold]] void throwLastError(Describe what)
{
    const DWORD error = GetLastError();
    throwError(WindowsError(error, std::string(what())), __builtin_return_address(0));
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

// The checks below take the call, not its result: they clear the last error before the call runs, so that
// no old failure of something else is taken for the call's own.

/// A result that `isFailure` holds for is a failure. The checks below are this one with a name for what
/// `isFailure` asks.
template <std::invocable Call, std::predicate<std::invoke_result_t<Call>> IsFailure, class What>
auto ensureClearing(Call call, IsFailure isFailure, What what)
{
    SetLastError(ERROR_SUCCESS);
    const auto result = call();
    if (isFailure(result))
        throwLastError(what);
    return result;
}

/// The result `failed` is a failure only when the call set the last error.
template <std::invocable Call, class What>
auto ensureClearedNot(std::invoke_result_t<Call> failed, Call call, What what)
{
    return ensureClearing(
        call, [=](const auto& result) { return result == failed && GetLastError() != ERROR_SUCCESS; }, what);
}

/// A zero result is a failure only when the call set the last error.
template <std::invocable Call, class What> auto ensureCleared(Call call, What what)
{
    return ensureClearedNot(std::invoke_result_t<Call>(), call, what);
}

/// The result `failed` is a failure, whether or not the call set the last error, as with drawing calls.
template <std::invocable Call, class What> auto ensureGDINot(std::invoke_result_t<Call> failed, Call call, What what)
{
    return ensureClearing(
        call, [=](const auto& result) { return result == failed; }, what);
}

/// A false, null or zero result is a failure, whether or not the call set the last error.
template <std::invocable Call, class What> auto ensureGDI(Call call, What what)
{
    return ensureGDINot(std::invoke_result_t<Call>(), call, what);
}

/// For calls that return their error code (the registry): any but ERROR_SUCCESS is a failure.
inline void ensureCode(LSTATUS code, const char* what = "")
{
    if (code != ERROR_SUCCESS)
        throwWindowsError(static_cast<unsigned long>(code), what);
}
} // namespace tarn
