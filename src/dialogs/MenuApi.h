#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline BOOL insertMenuItem(HMENU menu, UINT position, UINT flags, UINT_PTR id, const char* text)
{
    return InsertMenuA(menu, position, flags, id, text);
}
inline BOOL insertMenuItem(HMENU menu, UINT position, UINT flags, UINT_PTR id, const wchar_t* text)
{
    return InsertMenuW(menu, position, flags, id, text);
}
} // namespace tarn
