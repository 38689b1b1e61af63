#include "Test.h"

#include "Canvas.h"

#include <tarn/AutoClip.h>
#include <tarn/DPI.h>
#include <tarn/Icon.h>
#include <tarn/Rect.h>

#include <initializer_list>

namespace {
void paintColumns(HBITMAP bitmap, std::initializer_list<unsigned long> colours)
{
    DeviceContext context;
    context.select(bitmap);
    int x = 0;
    for (const unsigned long colour : colours) {
        context.fillRectangle(colour, Rect(x, 0, x + 1, 2));
        ++x;
    }
}
} // namespace

TEST_CASE("blitTransparent: leaves out the key colour for every depth of bitmap")
{
    struct Row {
        int x, y, width, height, sourceX, sourceY;
        unsigned long key;
        const char* expected;
    };
    const Row row = GENERATE(Row{1, 1, 4, 2, 0, 0, white, "GGGGGG\nG#RGBG\nG#RGBG\n"},
                             Row{0, 0, 3, 1, 0, 1, black, "GR.GGG\nGGGGGG\nGGGGGG\n"},
                             Row{2, 0, 4, 1, 0, 0, green, "GG#R.B\nGGGGGG\nGGGGGG\n"}, // Nothing has this one.
                             // Partly and wholly outside of the bitmap, of which nothing comes from there.
                             Row{0, 0, 6, 3, -1, -2, white, "GGGGGG\nGGGGGG\nG#RGBG\n"},
                             Row{0, 1, 6, 3, 1, 1, white, "GGGGGG\nRGBGGG\nGGGGGG\n"},
                             Row{0, 0, 6, 3, 4, 0, white, "GGGGGG\nGGGGGG\nGGGGGG\n"});
    const auto depth = GENERATE(as<unsigned short>(), 8, 16, 24, 32);
    Bitmap bitmap(newDIBSection(4, 2, depth), true);
    paintColumns(bitmap, {black, red, white, blue});
    Canvas canvas(6, 3, GENERATE(as<unsigned short>(), 24, 32), green);
    canvas.context.setTextColour(red);
    canvas.context.blitTransparent(bitmap, row.x, row.y, row.width, row.height, row.sourceX, row.sourceY, row.key);
    CHECK(canvas.pixels() == row.expected);
    CHECK(canvas.context.getTextColour() == red);
    CHECK(canvas.context.getBackgroundColour() == white);
}

TEST_CASE("blitTransparent: bitmaps of one bit, targets of one bit, and colours that are kept inexactly")
{
    Canvas canvas(4, 1, 32, green);
    const auto draw = [&](HBITMAP bitmap, int width, unsigned long key) {
        canvas.context.blitTransparent(bitmap, 0, 0, width, 1, 0, 0, key);
        return canvas.pixels();
    };
    SECTION("one bit with its own colours")
    {
        const Bitmap bitmap(newDIBSection(4, 1, 1), true);
        paintColumns(bitmap, {white, black, black, white});
        CHECK(draw(bitmap, 4, white) == "G##G\n");
    }
    SECTION("one bit without colours: in those of the target")
    {
        const BYTE bits[] = {0xA0, 0};
        canvas.context.setTextColour(red);
        canvas.context.setBackgroundColour(blue);
        CHECK(draw(Bitmap(4, 1, 1, 1, bits), 4, red) == "BGBG\n");
    }
    SECTION("a fourth byte that differs does not matter")
    {
        const Bitmap bitmap(newDIBSection(2, 1, 32), true);
        const DWORD pixels[] = {0xFF00FF00, 0x7F0000FF};
        SetBitmapBits(bitmap, sizeof pixels, pixels);
        canvas.context.fillRectangle(white, Rect(0, 0, 4, 1));
        CHECK(draw(bitmap, 2, green) == ".B..\n");
    }
    SECTION("16 bits keep a colour that has no exact form in them")
    {
        const Bitmap bitmap(newDIBSection(2, 1, 16), true);
        paintColumns(bitmap, {RGB(200, 100, 50), blue});
        CHECK(draw(bitmap, 2, RGB(200, 100, 50)) == "GBGG\n");
    }
    SECTION("a monochrome target")
    {
        const Bitmap bitmap(newDIBSection(4, 1, 24), true);
        paintColumns(bitmap, {black, red, white, blue});
        Canvas target(4, 1, 1);
        target.context.blitTransparent(bitmap, 0, 0, 4, 1, 0, 0, black);
        CHECK(target.pixels() == ".#.#\n");
    }
}

TEST_CASE("blitTransparent: failures leave everything as it was")
{
    Canvas canvas(2, 1);
    const auto blit = [&](HBITMAP bitmap, int width) {
        return [=, &canvas] { canvas.context.blitTransparent(bitmap, 0, 0, width, 1, 0, 0, red); };
    };
    const Bitmap bitmap(newDIBSection(2, 1, 24), true), used(newDIBSection(2, 1, 24), true);
    DeviceContext other;
    other.select(used);
    for (const auto& call : {blit(nullptr, 1), blit(bitmap, -1), blit(used, 1)}) {
        expectWindowsError(call, "Can't blit bits");
        CHECK(canvas.pixels() == "..\n");
    }
    CHECK_NOTHROW(blit(bitmap, 0)());
}

TEST_CASE("Graphics: drawing leaks no objects, also when it fails half way for want of them")
{
    Canvas canvas(4, 4);
    const Bitmap bitmap(newDIBSection(4, 2, GENERATE(as<unsigned short>(), 16, 24)), true);
    const HGDIOBJ pen = GetCurrentObject(canvas.context, OBJ_PEN);
    const std::pair<std::size_t, std::function<void()>> members[] = {
        {8, [&] { canvas.context.blitTransparent(bitmap, 0, 0, 4, 2, 0, 0, white); }},
        {2, [&] { canvas.context.drawRectangle3D(Rect(0, 0, 4, 4), true); }},
        {2, [&] { AutoClip outer(canvas.context, Rect(0, 0, 2, 2)), inner(canvas.context, Rect(0, 0, 1, 1)); }},
        {1, [] { CHECK_THROWS_AS(AutoClip(nullptr, Rect()), WindowsError); }},
        {1, [] { DPI::ofSystem(); }},
        {1, [&] { bitmap.getPixels(); }},
        {2, [] { Icon(LoadIconW(nullptr, IDI_APPLICATION), false).getSize(); }},
        {1, [&] { bitmap.getSize(); }},
        {1, [&] { DeviceContext(nullptr, false); }},
        {1, [&] { DeviceContext copy(canvas.context); }}};
    for (const auto& [needed, draw] : members) {
        draw(); // What the system makes once and keeps is no leak.
        const unsigned before = drawingObjects();
        for (int i = 0; i < 500; ++i)
            draw();
        for (std::size_t free = 0; free < needed; ++free) {
            const NoFreeGDIObjects few(free);
            try {
                draw();
            } catch (const WindowsError&) {
            }
            CHECK(GetCurrentObject(canvas.context, OBJ_PEN) == pen);
        }
        CHECK(drawingObjects() == before);
    }
}
