#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

namespace tarn {
/// The name of a window message, "WM_PAINT" for instance, for traces. Of an unnamed number it gives the
/// range and the distance into it: "WM_USER+1", "WM_PENWINFIRST+5" (for all three ranges of extensions), or
/// "Unknown window message 1000".
TARN_API BasicString<char> getWMIdentifier(unsigned int msg);
} // namespace tarn
