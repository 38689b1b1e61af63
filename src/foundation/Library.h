#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// The library's own module, for its window classes and resources.
HINSTANCE getLibraryInstance();
} // namespace tarn
