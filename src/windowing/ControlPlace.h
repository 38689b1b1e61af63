#pragma once

#include <tarn/Rect.h>
#include <tarn/Windows.h>

namespace tarn {
/// Where a control is, in the coordinates of its parent. A combo box is as high as with its list, which would be lost
/// if it were given the height of its field.
Rect placeIn(HWND parent, HWND control);
} // namespace tarn
