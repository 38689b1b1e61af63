#pragma once

#include "../foundation/Check.h"

#include <tarn/Windows.h>

namespace tarn {
/// The handle of an object that `create` makes or, when there is one of the name, opens. The last error tells which.
template <class Create> HANDLE ensureNamed(Create create, bool* existed, const char* what)
{
    SetLastError(ERROR_SUCCESS);
    const HANDLE handle = ensure(create(), what);
    if (existed)
        *existed = GetLastError() == ERROR_ALREADY_EXISTS;
    return handle;
}
} // namespace tarn
