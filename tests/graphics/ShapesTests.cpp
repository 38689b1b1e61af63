#include "Test.h"

#include "Canvas.h"
#include "Failures.h"

#include <tarn/AutoClip.h>
#include <tarn/AutoSelect.h>
#include <tarn/Rect.h>

TEST_CASE("DeviceContext: shapes have the pen's outline and the brush's filling")
{
    Canvas canvas(6, 5);
    const DeviceContext& context = canvas.context;
    const Pen pen(red, PS_SOLID, 1);
    const Brush brush(blue);
    const AutoSelect usePen(context, pen);
    const AutoSelect useBrush(context, brush);
    const std::vector<POINT> triangle{{0, 0}, {4, 0}, {0, 4}};
    const auto& [draw, expected] = GENERATE_REF(table<std::function<void()>, std::string>({
        {[&] { context.drawRectangle(Rect(1, 1, 5, 4)); }, "......\n.RRRR.\n.RBBR.\n.RRRR.\n......\n"},
        {[&] { context.drawLines(triangle); }, "RRRRR.\n...R..\n..R...\n.R....\n......\n"},
        {[&] { context.drawPolygon(triangle); }, "RRRRR.\nRBBR..\nRBR...\nRR....\nR.....\n"},
        {[&] { context.drawFrame(brush, Rect(1, 1, 5, 4)); }, "......\n.BBBB.\n.B..B.\n.BBBB.\n......\n"},
        {[&] {
             context.drawCurves(std::vector<POINT>{{0, 1}, {1, 1}, {2, 1}, {4, 1}});
         },
         "......\nRRRR..\n......\n......\n......\n"},
    }));
    draw();
    CHECK(canvas.pixels() == expected);
}

TEST_CASE("DeviceContext: a pixel gets its colour, or there is none")
{
    Canvas canvas(3, 2);
    CHECK((canvas.context.setPixel(1, 0, red) == red && canvas.context.setPixel(Point(2, 1), blue) == blue));
    const unsigned long outside = canvas.context.setPixel(3, 0, red);
    CHECK((outside == CLR_INVALID || isWine()));
    CHECK(canvas.pixels() == ".R.\n..B\n");
}

TEST_CASE("DeviceContext: round shapes stay inside of their bounds")
{
    Canvas canvas(20, 20);
    const DeviceContext& context = canvas.context;
    const Pen pen(red, PS_SOLID, 1);
    const AutoSelect usePen(context, pen);
    const AutoSelect useBrush(context, Brush(blue));
    const Rect bounds(2, 2, 18, 18);
    const bool isPie = GENERATE(false, true);
    if (isPie)
        context.drawPie(bounds, Point(17, 10), Point(10, 2)); // The quarter at the upper right.
    else
        GENERATE(0, 1) ? context.drawEllipse(bounds) : context.drawRoundRectangle(bounds, Size(12, 12));
    CHECK((context.getPixel(2, 2) == white && context.getPixel(1, 10) == white && context.getPixel(18, 10) == white));
    CHECK(context.getPixel(12, 7) == blue);
    CHECK(context.getPixel(7, 12) == (isPie ? white : blue));
    Canvas line(20, 20);
    const AutoSelect linePen(line.context, pen);
    line.context.drawArc(bounds, Point(17, 10), Point(10, 2));
    CHECK((line.context.getPixel(12, 7) == white && line.pixels().find('R') != std::string::npos));
}

TEST_CASE("AutoClip: drawing stays inside while it lives, also inside of an outer one")
{
    Canvas canvas(5, 2);
    const DeviceContext& context = canvas.context;
    {
        const AutoClip outer(context, Rect(1, 0, 4, 2));
        {
            const HRGN region = CreateRectRgn(0, 1, 3, 9);
            const AutoClip inner(context, region);
            DeleteObject(region);
            context.fillRectangle(red, Rect(0, 0, 5, 2));
            CHECK(context.getClipRectangle() == Rect(1, 1, 3, 2));
        }
        context.fillRectangle(blue, Rect(3, 0, 5, 2));
    }
    CHECK(canvas.pixels() == "...B.\n.RRB.\n");
    CHECK(context.getClipRectangle() == Rect(0, 0, 5, 2));
    expectWindowsError([] { const AutoClip none(nullptr, Rect()); }, ERROR_INVALID_HANDLE, "Can't clip drawing");
}

TEST_CASE("DeviceContext: text is wrapped into its rectangle, and measured before")
{
    Canvas canvas(100, 100);
    DeviceContext& context = canvas.context;
    const Size line = context.getTextExtent("word");
    const Size wrapped = context.getWrappedExtent(line.cx + 2, L"word word word");
    CHECK((wrapped.cx <= line.cx + 2 && wrapped.cy >= 3 * line.cy));
    CHECK((context.getWrappedExtent(10, "").cy == 0 && context.drawText(Rect(), L"") == 0));
    CHECK(context.drawText(Rect(0, 0, line.cx + 2, 100), "word word word") == wrapped.cy);
    constexpr unsigned cutting = DT_MODIFYSTRING | DT_END_ELLIPSIS | DT_SINGLELINE; // A literal cannot be modified.
    CHECK(context.drawText(Rect(0, 0, line.cx, 100), "word word", cutting) == line.cy);
    CHECK(context.getWrappedExtent(line.cx, L"word word", cutting).cy == line.cy);
    Canvas aligned(100, 40);
    CHECK(aligned.context.setBackgroundMode(TRANSPARENT) == OPAQUE);
    CHECK(aligned.context.getBackgroundMode() == TRANSPARENT);
    aligned.context.fillRectangle(green, Rect(0, 0, 100, 40));
    aligned.context.drawText(Rect(0, 0, 100, 40), L"x", DT_RIGHT | DT_BOTTOM | DT_SINGLELINE);
    const std::string pixels = aligned.pixels();
    CHECK((pixels.find('.') == std::string::npos && pixels.substr(0, 20 * 101).find('#') == std::string::npos));
    CHECK(pixels.find('#') != std::string::npos);
}

TEST_CASE("DeviceContext: pictures are stretched, and blended as a whole or by the pixel")
{
    std::uint32_t* source = nullptr;
    const Bitmap bitmap = Bitmap::withPixels(2, 1, source);
    source[0] = 0xFFFF0000; // Red.
    source[1] = 0x00000000; // Nothing.
    const DeviceContext memory = DeviceContext::createCompatible(nullptr);
    const AutoSelect use(memory, bitmap);
    Canvas canvas(4, 2);
    canvas.context.blend(memory, Rect(0, 0, 2, 2), Rect(0, 0, 1, 1), 128);
    canvas.context.blend(memory, Rect(3, 0, 4, 2), Rect(1, 0, 2, 1), 255, true);
    CHECK((canvas.context.getPixel(0, 0) == RGB(255, 127, 127) && canvas.context.getPixel(3, 0) == white));
    canvas.context.fillRectangle(white, Rect(0, 0, 4, 2));
    canvas.context.stretch(memory, Rect(2, 1, 4, 2), Rect(0, 0, 1, 1));
    canvas.context.stretch(memory, Rect(0, 0, 2, 1), Rect(1, 0, 2, 1));
    CHECK(canvas.pixels() == "##..\n..RR\n");
    CHECK(GetStretchBltMode(canvas.context) == BLACKONWHITE); // As before.
}

TEST_CASE("DeviceContext: what cannot be drawn is named")
{
    const DeviceContext gone(reinterpret_cast<HDC>(0x7001));
    const Rect rect(0, 0, 4, 4);
    expectFailures({
        {"Can't draw rectangle", [&] { gone.drawRectangle(rect); }},
        {"Can't draw round rectangle", [&] { gone.drawRoundRectangle(rect, Size(1, 1)); }},
        {"Can't draw ellipse", [&] { gone.drawEllipse(rect); }},
        {"Can't draw pie", [&] { gone.drawPie(rect, Point(4, 0), Point(0, 4)); }},
        {"Can't draw arc", [&] { gone.drawArc(rect, Point(4, 0), Point(0, 4)); }},
        {"Can't draw polygon", [&] { gone.drawPolygon({}); }},
        {"Can't draw lines", [&] { gone.drawLines({}); }},
        {"Can't draw curves", [&] { gone.drawCurves({}); }},
        {"Can't draw frame", [&] { gone.drawFrame(Brush(red), rect); }, silentOnWine},
        {"Can't draw frame", [&] { gone.drawFocusFrame(rect); }, silentOnWine},
        {"Can't draw text", [&] { gone.drawText(rect, "x"); }},
        {"Can't retrieve text extent", [&] { gone.getWrappedExtent(9, L"x"); }, silentOnWine},
        {"Can't get clipping rectangle", [&] { gone.getClipRectangle(); }},
        {"Can't set background mode", [&] { gone.getBackgroundMode(); }},
        {"Can't stretch bits", [&] { gone.stretch(gone, rect, rect); }},
        {"Can't blend bits", [&] { gone.blend(gone, rect, rect, 9); }},
        {"Can't draw icon", [&] { gone.drawIcon(rect, nullptr); }},
    });
}
