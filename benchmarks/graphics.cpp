#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/DeviceContext.h>
#include <tarn/Rect.h>

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
