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
using OwnedContext = std::unique_ptr<HDC, DeleteContext>;

BITMAPINFO pixelsFormat(int width, int height)
{
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}; // From the top.
    return info;
}
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

Bitmap Bitmap::withPixels(int width, int height, std::uint32_t*& pixels)
{
    const BITMAPINFO info = pixelsFormat(width, height);
    void* bits = nullptr;
    const auto make = [&] { return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0); };
    Bitmap bitmap(ensureGDI(make, "Can't create bitmap"), true);
    pixels = static_cast<std::uint32_t*>(bits);
    return bitmap;
}

std::vector<std::uint32_t> Bitmap::getPixels() const
{
    constexpr const char* failed = "Can't get pixels of bitmap";
    const Size size = getSize();
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
    BITMAPINFO info = pixelsFormat(size.cx, size.cy);
    const OwnedContext context(ensureGDI([] { return CreateCompatibleDC(nullptr); }, failed));
    const auto rows = static_cast<UINT>(size.cy);
    ensureGDI([&] { return GetDIBits(context.get(), getHandle(), 0, rows, pixels.data(), &info, DIB_RGB_COLORS); },
              failed);
    return pixels;
}

void Bitmap::getHeader(BITMAPINFOHEADER& header) const
{
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[256]; // The system may write colours or masks behind the header.
    } info = {};
    info.header.biSize = sizeof info.header; // Without a number of bits this asks for the header only.
    constexpr char failed[] = "Can't query bitmap info header";
    const OwnedContext context(ensureGDI([] { return CreateCompatibleDC(nullptr); }, failed));
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
