#pragma once

#include <tarn/Bitmap.h>
#include <tarn/DeviceContext.h>
#include <tarn/Windows.h>

namespace tarn {
/// A part of a bitmap, copied into memory together with a mask of the pixels that have the transparent
/// colour, ready to be drawn.
class TransparentPicture {
public:
    /// `source` is a memory context with the bitmap; `target` says in which colours a monochrome one shows.
    TransparentPicture(const DeviceContext& target, HDC source, const POINT& position, const SIZE& size,
                       unsigned long transparentColour);

    void draw(const DeviceContext& target, const POINT& position);

private:
    unsigned long asCopiedFrom(HDC source, unsigned long colour);
    void makeMask(unsigned long transparentColour);
    void blackenTransparent();

    SIZE size_;
    // The contexts come last, so that they let go of the bitmaps before these are deleted.
    Bitmap pictureBitmap_;
    Bitmap maskBitmap_;
    DeviceContext picture_;
    DeviceContext mask_;
};
} // namespace tarn
