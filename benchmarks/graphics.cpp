#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/AutoClip.h>
#include <tarn/BufferedPaint.h>
#include <tarn/DPI.h>
#include <tarn/DeviceContext.h>
#include <tarn/Rect.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>

#include <vector>

// Drawing through the library against the same calls by hand, each unchecked.

namespace {
constexpr int calls = 2000; // Short, and often repeated: what else runs then disturbs few of the rounds.
constexpr unsigned long red = RGB(255, 0, 0);

// Paper in memory, so that no display takes part.
class Paper {
public:
    Paper() : bitmap_(tarn::DeviceContext(nullptr, false), 400, 300), former_(context.select(bitmap_)) {}
    ~Paper() { context.select(former_); }

private:
    tarn::Bitmap bitmap_;

public:
    tarn::DeviceContext context;

private:
    tarn::Bitmap former_;
};

template <class Draw> auto repeated(Draw draw)
{
    return [=] {
        for (int i = 0; i < calls; ++i)
            draw(i);
    };
}
} // namespace

TEST_CASE("Drawing")
{
    Paper paper;
    tarn::DeviceContext& context = paper.context;
    const HDC raw = context;
    const tarn::Rect area(10, 10, 26, 26);
    const tarn::Brush brush(red);
    const HBRUSH rawBrush = brush;
    tarn::Pen pens[] = {{red, PS_SOLID, 1}, {0, PS_SOLID, 1}};
    const HPEN rawPens[] = {pens[0], pens[1]};

    bench::Ratios ratios("Drawing, 2,000 calls");
    ratios.row("fillRectangle: a brush / FillRect", 1.1, repeated([&](int) { context.fillRectangle(brush, area); }),
               repeated([&](int) { FillRect(raw, &area, rawBrush); }));
    ratios.row("fillRectangle: a colour / SetBkColor, ExtTextOut", 1.1,
               repeated([&](int) { context.fillRectangle(red, area); }), repeated([&](int) {
                   const COLORREF former = SetBkColor(raw, red);
                   ExtTextOutW(raw, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
                   SetBkColor(raw, former);
               }));
    ratios.row("fillRectangle: a system colour / FillRect", 1.1,
               repeated([&](int) { context.fillRectangle(COLOR_BTNFACE, area); }),
               repeated([&](int) { FillRect(raw, &area, GetSysColorBrush(COLOR_BTNFACE)); }));
    ratios.row("lineTo / LineTo", 1.1, repeated([&](int i) { context.lineTo(i % 16, 3); }),
               repeated([&](int i) { LineTo(raw, i % 16, 3); }));
    ratios.row("select: a pen / SelectObject", 1.1,
               repeated([&](int i) { bench::keep(context.select(rawPens[i % 2])); }),
               repeated([&](int i) { bench::keep(SelectObject(raw, rawPens[i % 2])); }));
    context.select(static_cast<HPEN>(GetStockObject(BLACK_PEN)));
    ratios.row("drawText: 11 characters / TextOut", 1.1, repeated([&](int) { context.drawText(5, 5, L"eleven char"); }),
               repeated([&](int) { TextOutW(raw, 5, 5, L"eleven char", 11); }));
    ratios.row("drawText: narrow / TextOut", 1.1, repeated([&](int) { context.drawText(5, 5, "eleven char"); }),
               repeated([&](int) { TextOutA(raw, 5, 5, "eleven char", 11); }));
    const std::vector<POINT> triangle{{10, 10}, {30, 10}, {10, 30}};
    ratios.row("drawRectangle / Rectangle", 1.05, repeated([&](int) { context.drawRectangle(area); }),
               repeated([&](int) { Rectangle(raw, area.left, area.top, area.right, area.bottom); }));
    ratios.row("drawEllipse / Ellipse", 1.05, repeated([&](int) { context.drawEllipse(area); }),
               repeated([&](int) { Ellipse(raw, area.left, area.top, area.right, area.bottom); }));
    ratios.row("drawPolygon: a triangle / Polygon", 1.05, repeated([&](int) { context.drawPolygon(triangle); }),
               repeated([&](int) { Polygon(raw, triangle.data(), 3); }));
    ratios.row("setPixel / SetPixel", 1.05, repeated([&](int i) { bench::keep(context.setPixel(i % 16, 3, red)); }),
               repeated([&](int i) { bench::keep(SetPixel(raw, i % 16, 3, red)); }));
    const tarn::Rect column(5, 5, 105, 105);
    constexpr unsigned format = DT_WORDBREAK | DT_NOPREFIX;
    ratios.row("drawText: wrapped / DrawText", 1.05,
               repeated([&](int) { context.drawText(column, L"three or four words in a column"); }), repeated([&](int) {
                   tarn::Rect space = column;
                   DrawTextW(raw, L"three or four words in a column", -1, &space, format);
               }));
    ratios.row("getWrappedExtent / DrawText", 1.05,
               repeated([&](int) { bench::keep(context.getWrappedExtent(100, L"three or four words in a column")); }),
               repeated([&](int) {
                   tarn::Rect space(0, 0, 100, 0);
                   DrawTextW(raw, L"three or four words in a column", -1, &space, format | DT_CALCRECT);
                   bench::keep(space);
               }));
    const Paper other;
    const HDC from = other.context;
    ratios.row("blend: 16 by 16 / GdiAlphaBlend", 1.05, repeated([&](int) { context.blend(from, area, area, 100); }),
               repeated([&](int) {
                   GdiAlphaBlend(raw, 10, 10, 16, 16, from, 10, 10, 16, 16, {AC_SRC_OVER, 0, 100, 0});
               }));
    ratios.row("stretch: 16 by 16 to 32 by 32 / StretchBlt", 1.05,
               repeated([&](int) { context.stretch(from, tarn::Rect(10, 10, 42, 42), area); }), repeated([&](int) {
                   const int mode = SetStretchBltMode(raw, HALFTONE);
                   StretchBlt(raw, 10, 10, 32, 32, from, 10, 10, 16, 16, SRCCOPY);
                   SetStretchBltMode(raw, mode);
               }));
    ratios.row("AutoClip / GetClipRgn, IntersectClipRect", 1.05,
               repeated([&](int) { const tarn::AutoClip inside(context, area); }), repeated([&](int) {
                   const HRGN former = CreateRectRgn(0, 0, 0, 0);
                   const int had = GetClipRgn(raw, former);
                   IntersectClipRect(raw, area.left, area.top, area.right, area.bottom);
                   SelectClipRgn(raw, had > 0 ? former : nullptr);
                   DeleteObject(former);
               }));
    const tarn::DPI dpi(144);
    ratios.row("DPI::toPixels / MulDiv", 1.05, repeated([&](int i) { bench::keep(dpi.toPixels(i)); }),
               repeated([&](int i) { bench::keep(MulDiv(i, 144, 96)); }));
}

TEST_CASE("Painting")
{
    struct Painted : tarn::Window {
        void onPaint() override
        {
            tarn::BufferedPaint context(*this);
            context.fillRectangle(COLOR_WINDOW, context.getUpdateRectangle());
        }
    } ours;
    struct Raw : tarn::Window {
        void onPaint() override
        {
            PAINTSTRUCT paint;
            const HDC screen = BeginPaint(*this, &paint), memory = CreateCompatibleDC(screen);
            const RECT& area = paint.rcPaint;
            const int width = area.right - area.left, height = area.bottom - area.top;
            const HBITMAP buffer = CreateCompatibleBitmap(screen, width, height);
            const HGDIOBJ former = SelectObject(memory, buffer);
            SetViewportOrgEx(memory, -area.left, -area.top, nullptr);
            FillRect(memory, &area, GetSysColorBrush(COLOR_WINDOW));
            SetViewportOrgEx(memory, 0, 0, nullptr);
            BitBlt(screen, area.left, area.top, width, height, memory, 0, 0, SRCCOPY);
            SelectObject(memory, former);
            DeleteObject(buffer);
            DeleteDC(memory);
            EndPaint(*this, &paint);
        }
    } raw;
    const tarn::WindowClass windowClass(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, nullptr);
    for (tarn::Window* window : {static_cast<tarn::Window*>(&ours), static_cast<tarn::Window*>(&raw)}) {
        const int x = window == &raw ? 320 : 0;
        window->create(windowClass, L"", WS_POPUP | WS_VISIBLE, tarn::Rect(x, 0, x + 300, 200), nullptr, nullptr,
                       nullptr);
    }
    const auto painted = [](const tarn::Window& window) {
        return [&window] {
            for (int i = 0; i < 200; ++i) {
                InvalidateRect(window, nullptr, FALSE);
                UpdateWindow(window);
            }
        };
    };
    bench::Ratios ratios("Painting a window, 200 times");
    ratios.row("BufferedPaint / a bitmap by hand", 1.05, painted(ours), painted(raw));
    ours.destroy();
    raw.destroy();
}

TEST_CASE("Drawing: growth", "[.growth]")
{
    const bench::Growth growth("Filling rectangles with a brush", "rectangles");
    Paper paper;
    tarn::DeviceContext& context = paper.context;
    const HDC raw = context;
    const tarn::Rect area(10, 10, 26, 26);
    const tarn::Brush brush(red);
    const HBRUSH rawBrush = brush;
    growth.line("library", bench::tens(0, 5), [&](unsigned size) {
        return [&, size] {
            for (unsigned i = 0; i < size; ++i)
                context.fillRectangle(brush, area);
        };
    });
    growth.line("FillRect", bench::tens(0, 5), [&](unsigned size) {
        return [&, size] {
            for (unsigned i = 0; i < size; ++i)
                FillRect(raw, &area, rawBrush);
        };
    });
}
