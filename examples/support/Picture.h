#pragma once

#include <tarn/Windows.h>

namespace support {
/// Writes what a bitmap shows as a PNG file, of the kind that its extension says. The bitmap must not be selected
/// into a context. Throws as tarn::savePicture().
void savePicture(HBITMAP bitmap, const wchar_t* file);

/// Writes a part of what a context shows as a PNG file.
void savePicture(HDC context, const RECT& part, const wchar_t* file);

/// Writes what a window shows as a PNG file: the whole of it, or its client area. It must be visible and
/// uncovered; call its update() before, so that it has drawn itself.
void savePicture(HWND window, bool wholeWindow, const wchar_t* file);

/// Reads a picture file into a new bitmap, which the caller owns. Throws as tarn::loadPicture().
HBITMAP loadPicture(const wchar_t* file);
} // namespace support
