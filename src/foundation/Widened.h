#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

namespace tarn {
/// Narrow text as the system's own narrow calls read it, in its ANSI code page; null is empty, as it is for a string.
/// For code of both widths wide text, too, as it is.
///@{
inline BasicString<wchar_t> widened(const char* text) { return text ? a2w(text, CP_ACP) : BasicString<wchar_t>(); }
inline BasicString<wchar_t> widened(const wchar_t* text) { return text; }
///@}
} // namespace tarn
