#pragma once

#include <tarn/Bitmap.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
/// @file
/// Pictures in files, by the system's codecs: PNG, JPEG, BMP, GIF, TIFF and what else is installed.
///
/// The calling thread needs COM, by a COMApartment. Failures throw COMError or WindowsError as
/// HRESULTHolder::throwOnError does.

/// The (first) picture of a file, whatever its kind, as a bitmap of 32 bits a pixel; the colours are multiplied by the
/// opacity of their pixel, as DeviceContext::blend() takes them. Throws "Can't load picture".
///@{
TARN_API Bitmap loadPicture(const char* file);
TARN_API Bitmap loadPicture(const wchar_t* file);
///@}

/// Writes a bitmap, which must not be selected into a context, as the kind of picture that the file's extension says:
/// png, jpg or jpeg, bmp, gif, tif or tiff. A file that exists is replaced, also by a broken one when
/// the disk is full. With `hasOpacity` the pixels are as
/// loadPicture() gives them; without, none is transparent. Throws "Can't save picture".
///@{
TARN_API void savePicture(HBITMAP bitmap, const char* file, bool hasOpacity = false);
TARN_API void savePicture(HBITMAP bitmap, const wchar_t* file, bool hasOpacity = false);
///@}
} // namespace tarn
