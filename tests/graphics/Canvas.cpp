#include "Canvas.h"

#include <tarn/Rect.h>

namespace support {
std::string pixelsOf(const tarn::DeviceContext& context, int width, int height)
{
    const std::pair<unsigned long, char> letters[] = {
        {white, '.'}, {black, '#'}, {red, 'R'}, {green, 'G'}, {blue, 'B'}};
    tarn::DeviceContext borrowed(context.getHandle());
    const tarn::Point origin = borrowed.setViewportOrigin(0, 0);
    std::string text;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            char letter = '?';
            for (const auto& [colour, shown] : letters)
                if (context.getPixel(x, y) == colour)
                    letter = shown;
            text += letter;
        }
        text += '\n';
    }
    borrowed.setViewportOrigin(origin);
    return text;
}

HBITMAP newDIBSection(int width, int height, unsigned short bitsPerPixel)
{
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[5];
    } info = {{sizeof(BITMAPINFOHEADER), width, height, 1, bitsPerPixel, BI_RGB, 0, 0, 0, 0, 0},
              {{0, 0, 0, 0}, {255, 255, 255, 0}, {0, 0, 255, 0}, {0, 255, 0, 0}, {255, 0, 0, 0}}};
    info.header.biClrUsed = bitsPerPixel == 1 ? 2 : bitsPerPixel == 8 ? 5 : 0;
    void* bits;
    return CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits, nullptr, 0);
}

Canvas::Canvas(int width, int height, unsigned short bitsPerPixel, unsigned long colour)
    : width_(width), height_(height), bitmap_(newDIBSection(width, height, bitsPerPixel), true)
{
    context.select(bitmap_);
    context.fillRectangle(colour, tarn::Rect(0, 0, width, height));
}

NoFreeGDIObjects::NoFreeGDIObjects(std::size_t but)
{
    while (const HBRUSH brush = CreateSolidBrush(red))
        taken_.push_back(brush);
    for (; but && !taken_.empty(); --but) {
        DeleteObject(taken_.back());
        taken_.pop_back();
    }
}

NoFreeGDIObjects::~NoFreeGDIObjects()
{
    for (const HBRUSH brush : taken_)
        DeleteObject(brush);
}
} // namespace support
