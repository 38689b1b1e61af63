#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

namespace tarn {
/// Narrow text as the system's own narrow calls read it, in its ANSI code page; null is empty, as it is for a string.
inline BasicString<wchar_t> widened(const char* text) { return text ? a2w(text, CP_ACP) : BasicString<wchar_t>(); }
} // namespace tarn
