#pragma once

#include <tarn/Size.h>
#include <tarn/Windows.h>

namespace tarn {
/// The size that the dialog of a template has, found out with a hidden one. Throws "Can't create dummy
/// dialog for getSize()" and "Can't get window rect for dummy dialog in getSize()".
Size sizeOfTemplate(HINSTANCE instance, unsigned short resource);
} // namespace tarn
