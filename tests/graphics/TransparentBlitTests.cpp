#include "Canvas.h"
#include "Expect.h"

#include <tarn/Rect.h>

using namespace tarn;
using namespace support;

namespace {
// White paper with a column of each colour: black, red, white, blue.
void paintColumns(HBITMAP bitmap)
{
    DeviceContext context;
    context.select(bitmap);
    const unsigned long columns[] = {black, red, white, blue};
    for (int i = 0; i < 4; ++i)
        context.fillRectangle(columns[i], Rect(i, 0, i + 1, 2));
}
} // namespace

TEST_CASE("blitTransparent: leaves out the key colour for every depth of bitmap", "[graphics][drawing]")
{
    const auto depth = GENERATE(as<unsigned short>(), 8, 16, 24, 32);
    Bitmap bitmap(newDIBSection(4, 2, depth), true);
    paintColumns(bitmap);
    Canvas canvas(6, 3, GENERATE(as<unsigned short>(), 24, 32));
    canvas.context.fillRectangle(green, Rect(0, 0, 6, 3));
    canvas.context.setTextColour(red);
    SECTION("the whole bitmap")
    {
        canvas.context.blitTransparent(bitmap, 1, 1, 4, 2, 0, 0, white);
        CHECK(canvas.pixels() == "GGGGGG\nG#RGBG\nG#RGBG\n");
    }
    SECTION("a part, with black as the key")
    {
        canvas.context.blitTransparent(bitmap, 0, 0, 3, 1, 0, 1, black);
        CHECK(canvas.pixels() == "GR.GGG\nGGGGGG\nGGGGGG\n");
    }
    SECTION("nothing has the key colour")
    {
        canvas.context.blitTransparent(bitmap, 2, 0, 4, 1, 0, 0, green);
        CHECK(canvas.pixels() == "GG#R.B\nGGGGGG\nGGGGGG\n");
    }
    CHECK(canvas.context.getTextColour() == red);
    CHECK(canvas.context.getBackgroundColour() == white);
}

TEST_CASE("blitTransparent: a bitmap of one bit", "[graphics][drawing]")
{
    Canvas canvas(4, 1);
    canvas.context.fillRectangle(green, Rect(0, 0, 4, 1));
    SECTION("with its own colours")
    {
        Canvas paper(4, 1, 1);
        PatBlt(paper.context, 1, 0, 2, 1, BLACKNESS);
        Bitmap former(newDIBSection(4, 1, 1), true);
        const Bitmap bitmap = paper.context.select(former);
        canvas.context.blitTransparent(bitmap, 0, 0, 4, 1, 0, 0, white);
        CHECK(canvas.pixels() == "G##G\n");
    }
    SECTION("without colours: in those of the target")
    {
        const BYTE bits[] = {0xA0, 0};
        Bitmap bitmap(4, 1, 1, 1, bits);
        canvas.context.setTextColour(red);
        canvas.context.setBackgroundColour(blue);
        canvas.context.blitTransparent(bitmap, 0, 0, 4, 1, 0, 0, red);
        CHECK(canvas.pixels() == "BGBG\n");
    }
}

TEST_CASE("blitTransparent: a fourth byte that differs does not matter", "[graphics][drawing]")
{
    Bitmap bitmap(newDIBSection(2, 1, 32), true);
    const DWORD pixels[] = {0xFF00FF00, 0x7F0000FF};
    SetBitmapBits(bitmap, sizeof pixels, pixels);
    Canvas canvas(2, 1);
    canvas.context.blitTransparent(bitmap, 0, 0, 2, 1, 0, 0, green);
    CHECK(canvas.pixels() == ".B\n");
}

TEST_CASE("blitTransparent: the key is the colour as the bitmap keeps it", "[graphics][drawing]")
{
    constexpr unsigned long key = RGB(200, 100, 50); // Has no exact form in 16 bits.
    Bitmap bitmap(newDIBSection(2, 1, 16), true);
    {
        DeviceContext context;
        context.select(bitmap);
        context.fillRectangle(key, Rect(0, 0, 1, 1));
        context.fillRectangle(blue, Rect(1, 0, 2, 1));
    }
    Canvas canvas(2, 1);
    canvas.context.blitTransparent(bitmap, 0, 0, 2, 1, 0, 0, key);
    CHECK(canvas.pixels() == ".B\n");
}

TEST_CASE("blitTransparent: onto a monochrome target", "[graphics][drawing]")
{
    Bitmap bitmap(newDIBSection(4, 2, 24), true);
    paintColumns(bitmap);
    Canvas canvas(4, 1, 1);
    canvas.context.blitTransparent(bitmap, 0, 0, 4, 1, 0, 0, black);
    CHECK(canvas.pixels() == ".#.#\n");
}

TEST_CASE("blitTransparent: failures leave everything as it was", "[graphics][drawing][failure]")
{
    Canvas canvas(2, 1);
    const auto fails = [&](HBITMAP bitmap, int width) {
        const auto error =
            thrownBy<WindowsError>([&] { canvas.context.blitTransparent(bitmap, 0, 0, width, 1, 0, 0, red); });
        CHECK(std::string(error.getDescription()) == "Can't blit bits");
        CHECK(canvas.pixels() == "..\n");
    };
    Bitmap bitmap(newDIBSection(2, 1, 24), true);
    fails(nullptr, 1);
    fails(bitmap, -1);
    {
        DeviceContext other;
        other.select(bitmap);
        fails(bitmap, 1);
    }
    CHECK_NOTHROW(canvas.context.blitTransparent(bitmap, 0, 0, 0, 1, 0, 0, red));
}

TEST_CASE("Graphics: drawing leaks no objects", "[graphics][load]")
{
    Canvas canvas(4, 4);
    Bitmap bitmap(newDIBSection(4, 2, 8), true);
    const DeviceContext dead{HDC(0x12345678)};
    const auto draw = [&](int times) {
        for (; times; --times) {
            canvas.context.blitTransparent(bitmap, 0, 0, 4, 2, 0, 0, white);
            canvas.context.drawRectangle3D(Rect(0, 0, 4, 4), true);
            CHECK_THROWS(dead.drawRectangle3D(Rect(0, 0, 4, 4), true));
            CHECK_THROWS(canvas.context.blitTransparent(bitmap, 0, 0, -4, 2, 0, 0, white));
            const DeviceContext copy(canvas.context);
            const DeviceContext screen(nullptr, false);
            bitmap.getSize();
        }
    };
    draw(1); // What the system makes once and keeps is no leak.
    const std::size_t before = freeGDIObjects();
    draw(500);
    CHECK(freeGDIObjects() == before);
}

TEST_CASE("Graphics: drawing that fails half way for want of objects leaks none", "[graphics][load][failure]")
{
    Canvas canvas(4, 4);
    Bitmap bitmap(newDIBSection(4, 2, GENERATE(as<unsigned short>(), 16, 24)), true);
    const std::pair<std::size_t, void (*)(Canvas&, const Bitmap&)> members[] = {
        {8, [](Canvas& to, const Bitmap& from) { to.context.blitTransparent(from, 0, 0, 4, 2, 0, 0, white); }},
        {2, [](Canvas& to, const Bitmap&) { to.context.drawRectangle3D(Rect(0, 0, 4, 4), true); }}};
    for (const auto& [needed, draw] : members) {
        draw(canvas, bitmap);
        const std::size_t before = freeGDIObjects();
        const HGDIOBJ pen = GetCurrentObject(canvas.context, OBJ_PEN);
        for (std::size_t free = 0; free < needed; ++free) {
            const NoFreeGDIObjects few(free);
            try {
                draw(canvas, bitmap);
            } catch (const WindowsError&) {
            }
            CHECK(GetCurrentObject(canvas.context, OBJ_PEN) == pen);
        }
        CHECK(freeGDIObjects() == before);
    }
}
