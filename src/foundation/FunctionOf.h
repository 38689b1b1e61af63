#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// A function that a library exports, looked up because some versions of it lack the function: null then, and when
/// there is no library.
template <class Function> Function* functionOf(HMODULE module, const char* name)
{
    return module ? reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}
} // namespace tarn
