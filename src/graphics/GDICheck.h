#pragma once

#include "../foundation/Check.h"

#include <concepts>
#include <type_traits>

// Drawing calls may fail without setting the last error. Cleared before the call, it cannot put an old
// failure of something else into the message.

namespace tarn {
/// A false, null or zero result is a failure, whether or not the call set the last error.
template <std::invocable Call> auto ensureGDI(Call call, const char* what)
{
    SetLastError(ERROR_SUCCESS);
    return ensure(call(), what);
}

/// The result `failed` is a failure, whether or not the call set the last error.
template <std::invocable Call> auto ensureGDINot(std::invoke_result_t<Call> failed, Call call, const char* what)
{
    SetLastError(ERROR_SUCCESS);
    return ensureNot(failed, call(), what);
}
} // namespace tarn
