#include <tarn/Bitmap.h>

#include "../foundation/Check.h"

#include <cstdlib>
#include <memory>
#include <string>

namespace tarn {
namespace {
struct DeleteContext {
    using pointer = HDC;
    void operator()(HDC context) const { DeleteDC(context); }
};
} // namespace

Bitmap::Bitmap(unsigned short resource, HINSTANCE module)
    : TypedGDIHandle(ensure(LoadBitmapW(module, MAKEINTRESOURCEW(resource)),
                            [&] { return "Can't load bitmap " + std::to_string(resource); }),
                     true)
{
}
Bitmap::Bitmap(int width, int height, unsigned planes, unsigned bitsPerPixel, const void* bits)
    : TypedGDIHandle(
          ensureGDI([&] { return CreateBitmap(width, height, planes, bitsPerPixel, bits); }, "Can't create bitmap"),
          true)
{
}
Bitmap::Bitmap(HDC context, int width, int height)
    : TypedGDIHandle(
          ensureGDI([&] { return CreateCompatibleBitmap(context, width, height); }, "Can't create compatible bitmap"),
          true)
{
}

void Bitmap::getHeader(BITMAPINFOHEADER& header) const
{
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[256]; // The system may write colours or masks behind the header.
    } info = {};
    info.header.biSize = sizeof info.header; // Without a number of bits this asks for the header only.
    constexpr char failed[] = "Can't query bitmap info header";
    const std::unique_ptr<HDC, DeleteContext> context(ensureGDI([] { return CreateCompatibleDC(nullptr); }, failed));
    ensureGDI(
        [&] {
            return GetDIBits(context.get(), getHandle(), 0, 0, nullptr, reinterpret_cast<BITMAPINFO*>(&info),
                             DIB_RGB_COLORS);
        },
        failed);
    header = info.header;
}

Size Bitmap::getSize() const
{
    BITMAPINFOHEADER header;
    getHeader(header);
    return Size(header.biWidth, std::abs(header.biHeight));
}
} // namespace tarn
