// Draws into memory and shows the pixels as characters: device contexts, drawing objects, text.

#include "Tour.h"

#include <tarn/AutoSelect.h>
#include <tarn/DeviceContext.h>
#include <tarn/Exception.h>
#include <tarn/Rect.h>

#include <cmath>
#include <iostream>

namespace {
constexpr unsigned long white = RGB(255, 255, 255);
constexpr unsigned long dark = RGB(0, 0, 0);

// Two rows of pixels in one line of characters, which are about twice as high as wide.
void print(const tarn::DeviceContext& context, const tarn::Rect& area)
{
    for (int y = area.top; y < area.bottom; y += 2) {
        for (int x = area.left; x < area.right; ++x) {
            const bool upper = context.getPixel(x, y) != white;
            const bool lower = context.getPixel(x, y + 1) != white;
            std::cout << (upper && lower ? '#' : upper ? '"' : lower ? '.' : ' ');
        }
        std::cout << '\n';
    }
}

void drawWave(tarn::DeviceContext& context, const tarn::Rect& area)
{
    const tarn::Point center = area.getCenter();
    const auto height = [&](int x) {
        return static_cast<int>(std::lround(center.y - std::sin(x * 0.14) * (area.getHeight() / 2.0 - 4)));
    };
    context.moveTo(area.left + 2, height(0));
    for (int x = 1; x < area.getWidth() - 4; ++x)
        context.lineTo(area.left + 2 + x, height(x));
}

void drawTitle(tarn::DeviceContext& context, const tarn::Rect& area, const wchar_t* title)
{
    const tarn::Font font(-13, 0, 0, 0, FW_BOLD, false, false, false, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                          CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, DEFAULT_PITCH, L"Tahoma");
    const tarn::AutoSelect use(context, font);
    const tarn::Size extent = context.getTextExtent(title);
    context.drawText(area.left + (area.getWidth() - extent.cx) / 2, area.top, title);
    std::cout << "The title is " << extent.cx << " by " << extent.cy << " pixels.\n\n";
}

void showOwnership()
{
    tarn::Pen pen(RGB(200, 30, 30), PS_SOLID, 3);
    tarn::Pen taker(pen);
    std::cout << "\nAfter copying a pen the copy " << (taker.isOwner() ? "owns" : "borrows")
              << " it, and the original is " << (pen.isNull() ? "empty" : "still there") << ".\n";

    tarn::DeviceContext closed;
    closed.close();
    try {
        closed.drawText(0, 0, "too late");
    } catch (const tarn::WindowsError& e) {
        std::cout << "Drawing on a closed context: " << e.getDescription() << " (error " << e.getError() << ")\n";
    }
}

void showGraphics()
{
    const tarn::Rect paper(0, 0, 76, 44);
    const tarn::DeviceContext screen(nullptr, false);
    tarn::DeviceContext context = tarn::DeviceContext::createCompatible(screen);
    const tarn::Bitmap bitmap(screen, paper.getWidth(), paper.getHeight());
    const tarn::AutoSelect use(context, bitmap);

    context.fillRectangle(white, paper);
    drawTitle(context, paper, L"tarn draws");
    const tarn::Rect frame(0, 20, paper.right, paper.bottom);
    context.drawRectangle3D(frame, dark, dark);
    drawWave(context, frame);
    print(context, paper);
    showOwnership();
}

const tour::Section section(100, "Graphics", showGraphics);
} // namespace
