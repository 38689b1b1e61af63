#include "TransparentBlit.h"

#include <tarn/AutoColour.h>

#include "../foundation/Check.h"

namespace tarn {
namespace {
constexpr unsigned long black = RGB(0, 0, 0);
constexpr unsigned long white = RGB(255, 255, 255);
constexpr char blitFailed[] = "Can't blit bits";

// 24 bits for every kind of target: the colours stay exact for the comparison, and there is no fourth byte
// that could differ between equal colours.
HBITMAP newTrueColourBitmap(const SIZE& size)
{
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = size.cy;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    return ensureGDI([&] { return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0); }, blitFailed);
}

HBITMAP newMaskBitmap(const SIZE& size)
{
    return ensureGDI([&] { return CreateBitmap(size.cx, size.cy, 1, 1, nullptr); }, blitFailed);
}

void selectBitmap(HDC context, HBITMAP bitmap)
{
    ensureGDI([=] { return SelectObject(context, bitmap); }, blitFailed);
}

} // namespace

TransparentPicture::TransparentPicture(const DeviceContext& target, HDC source, const POINT& position, const SIZE& size,
                                       unsigned long transparentColour)
    : size_(size), pictureBitmap_(newTrueColourBitmap(size), true), maskBitmap_(newMaskBitmap(size), true),
      picture_(DeviceContext::createCompatible(target)), mask_(DeviceContext::createCompatible(target))
{
    selectBitmap(picture_, pictureBitmap_);
    selectBitmap(mask_, maskBitmap_);
    picture_.setTextColour(target.getTextColour());
    picture_.setBackgroundColour(target.getBackgroundColour());
    const unsigned long key = asCopiedFrom(source, transparentColour);
    picture_.blit(source, 0, 0, size.cx, size.cy, position.x, position.y, SRCCOPY);
    makeMask(key);
    blackenTransparent();
}

// What a colour looks like in the picture after the source has kept it. With 16 bits it keeps few exactly.
unsigned long TransparentPicture::asCopiedFrom(HDC source, unsigned long colour)
{
    BITMAP description = {};
    const HGDIOBJ selected = ensureGDI([=] { return GetCurrentObject(source, OBJ_BITMAP); }, blitFailed);
    ensureGDI([&] { return GetObjectW(selected, sizeof description, &description); }, blitFailed);
    if (description.bmBitsPixel != 16)
        return colour;
    const Bitmap pixel(ensureGDI([=] { return CreateCompatibleBitmap(source, 1, 1); }, blitFailed), true);
    const DeviceContext memory =
        DeviceContext::createCompatible(picture_); // After the bitmap, which it has to let go of first.
    selectBitmap(memory, pixel);
    ensureGDINot(
        CLR_INVALID, [&] { return SetPixel(memory, 0, 0, colour); }, blitFailed);
    picture_.blit(memory, 0, 0, 1, 1, 0, 0, SRCCOPY);
    return picture_.getPixel(0, 0);
}

// Copied to a monochrome bitmap, pixels of the source's background colour become ones and all others zeros.
void TransparentPicture::makeMask(unsigned long transparentColour)
{
    picture_.setBackgroundColour(transparentColour);
    mask_.blit(picture_, 0, 0, size_.cx, size_.cy, 0, 0, SRCCOPY);
}

void TransparentPicture::blackenTransparent()
{
    picture_.setTextColour(white);
    picture_.setBackgroundColour(black);
    picture_.blit(mask_, 0, 0, size_.cx, size_.cy, 0, 0, SRCAND);
    picture_.setBackgroundColour(white); // On a monochrome target white pixels, and only they, are ones.
}

// Blackens in the target what the picture covers, then adds the picture, which is black elsewhere.
void TransparentPicture::draw(const DeviceContext& target, const POINT& position)
{
    const AutoBackgroundColour ones(target, white); // Colours in which the bits of the mask arrive.
    const AutoTextColour zeros(target, black);
    target.blit(mask_, position.x, position.y, size_.cx, size_.cy, 0, 0, SRCAND);
    target.blit(picture_, position.x, position.y, size_.cx, size_.cy, 0, 0, SRCPAINT);
}
} // namespace tarn
