#include "Canvas.h"
#include "Expect.h"

#include <tarn/Icon.h>
#include <tarn/Rect.h>

#include <string>

using namespace tarn;
using namespace support;

TEST_CASE("DeviceContext: filled rectangles end before their right and bottom edge", "[graphics][drawing]")
{
    Canvas canvas(5, 3);
    DeviceContext& context = canvas.context;
    context.setBackgroundColour(green);
    context.fillRectangle(red, Rect(0, 0, 2, 2));
    CHECK(context.getBackgroundColour() == green);
    context.fillRectangle(Brush(blue), Rect(2, 1, 4, 3));
    CHECK(canvas.pixels() == "RR...\nRRBB.\n..BB.\n");
    context.fillRectangle(COLOR_HIGHLIGHT, Rect(4, 0, 5, 1));
    CHECK(context.getPixel(4, 0) == GetSysColor(COLOR_HIGHLIGHT));
    CHECK(context.getPixel(POINT{5, 0}) == CLR_INVALID);
}

TEST_CASE("DeviceContext: lines leave out their end point and tell the former position", "[graphics][drawing]")
{
    Canvas canvas(4, 3);
    Pen pen(red, PS_SOLID, 1);
    Pen former = canvas.context.select(pen);
    CHECK_FALSE(former.isOwner());
    CHECK(canvas.context.moveTo(1, 0) == Point(0, 0));
    canvas.context.lineTo(3, 0);
    canvas.context.lineTo(Point(3, 2));
    CHECK(canvas.context.moveTo(Point(0, 0)) == Point(3, 2));
    CHECK(canvas.pixels() == ".RRR\n...R\n....\n");
    CHECK(canvas.context.select(former).getHandle() == pen.getHandle());
}

TEST_CASE("DeviceContext: the 3D rectangle's dark edges take the corners", "[graphics][drawing]")
{
    Canvas canvas(6, 4);
    const HGDIOBJ pen = GetCurrentObject(canvas.context, OBJ_PEN);
    canvas.context.drawRectangle3D(Rect(1, 0, 5, 4), red, blue);
    CHECK(canvas.pixels() == ".RRRB.\n.R..B.\n.R..B.\n.BBBB.\n");
    CHECK(GetCurrentObject(canvas.context, OBJ_PEN) == pen);

    Canvas thin(6, 4);
    thin.context.drawRectangle3D(Rect(0, 0, 1, 3), red, blue);
    thin.context.drawRectangle3D(Rect(2, 0, 6, 1), red, blue);
    thin.context.drawRectangle3D(Rect(3, 3, 3, 4), red, blue);
    CHECK(thin.pixels() == "B.BBBB\nB.....\nB.....\n......\n");

    canvas.context.drawRectangle3D(Rect(0, 0, 4, 4), true);
    CHECK(canvas.context.getPixel(0, 0) == GetSysColor(COLOR_BTNHIGHLIGHT));
    CHECK(canvas.context.getPixel(3, 3) == GetSysColor(COLOR_BTNSHADOW));
    canvas.context.drawRectangle3D(Rect(0, 0, 4, 4), false);
    CHECK(canvas.context.getPixel(0, 0) == GetSysColor(COLOR_BTNSHADOW));
    CHECK(canvas.context.getPixel(3, 3) == GetSysColor(COLOR_BTNHIGHLIGHT));
}

TEST_CASE("DeviceContext: selecting hands back the object used before, borrowed", "[graphics][drawing]")
{
    Canvas canvas(2, 2);
    Brush brush(red);
    const HBRUSH former = canvas.context.select(brush);
    CHECK(former == GetStockObject(WHITE_BRUSH));
    const Brush back = canvas.context.select(former);
    CHECK(back.getHandle() == brush.getHandle());
    CHECK_FALSE(back.isOwner());

    Bitmap bitmap(2, 2, 1, 1, nullptr);
    const Bitmap paper = canvas.context.select(bitmap);
    CHECK_FALSE(paper.isOwner());
    CHECK(canvas.context.select(paper).getHandle() == bitmap.getHandle());

    const Font font = canvas.context.select(static_cast<HFONT>(GetStockObject(ANSI_FIXED_FONT)));
    CHECK(font.getHandle() == GetStockObject(SYSTEM_FONT));
    const auto defaultPalette = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
    const Palette palette = canvas.context.select(defaultPalette, true);
    CHECK(palette.getHandle() == defaultPalette);
    CHECK_FALSE(palette.isOwner());
    CHECK_FALSE(canvas.context.usesPalette());
}

TEST_CASE("DeviceContext: blits copy a part and mix it", "[graphics][drawing]")
{
    Canvas source(3, 2), target(4, 2);
    source.context.fillRectangle(red, Rect(1, 0, 2, 2));
    target.context.blit(source.context, 2, 0, 2, 2, 1, 0, SRCCOPY);
    CHECK(target.pixels() == "..R.\n..R.\n");
    target.context.blit(source.context, 0, 1, 3, 1, 0, 0, NOTSRCCOPY);
    CHECK(target.pixels() == "..R.\n#?#.\n");
}

TEST_CASE("DeviceContext: drawing modes, origin and paths", "[graphics][drawing]")
{
    Canvas canvas(5, 4);
    DeviceContext& context = canvas.context;
    CHECK(context.setROP2(R2_NOT) == R2_COPYPEN);
    CHECK(context.getROP2() == R2_NOT);
    context.lineTo(2, 0);
    CHECK(canvas.pixels().substr(0, 5) == "##...");
    context.setROP2(R2_COPYPEN);
    CHECK(context.setViewportOrigin(1, 1) == Point(0, 0));
    CHECK(context.setViewportOrigin(POINT{1, 1}) == Point(1, 1));
    Brush brush(red);
    const HBRUSH former = context.select(brush);
    const auto square = [&] {
        context.beginPath();
        context.moveTo(0, 0);
        context.lineTo(3, 0);
        context.lineTo(3, 2);
        context.lineTo(0, 2);
        context.closeFigure();
        context.endPath();
    };
    square();
    context.flattenPath();
    context.fillPath();
    CHECK(canvas.pixels() == "##...\n.RRR.\n.RRR.\n.....\n");
    square();
    context.strokeAndFillPath();
    CHECK(canvas.pixels() == "##...\n.####\n.#RR#\n.####\n");
    context.fillRectangle(white, Rect(-1, -1, 9, 9));
    square();
    context.strokePath();
    CHECK(canvas.pixels() == ".....\n.####\n.#..#\n.####\n");
    square();
    context.abortPath();
    CHECK_THROWS_AS(context.fillPath(), WindowsError);
    square();
    CHECK_NOTHROW(context.widenPath());
    context.select(former);
}

TEST_CASE("DeviceContext: draws an icon where its mask lets it", "[graphics][drawing]")
{
    Canvas canvas(GetSystemMetrics(SM_CXICON) + 2, GetSystemMetrics(SM_CYICON) + 2);
    canvas.context.fillRectangle(green, Rect(0, 0, 200, 200));
    canvas.context.drawIcon(1, 1, Icon(5, GetModuleHandleW(nullptr)));
    CHECK(canvas.context.getPixel(0, 0) == green);
    CHECK(canvas.context.getPixel(1, 1) == white);
    CHECK(canvas.context.getPixel(1, GetSystemMetrics(SM_CYICON)) == black);
}

TEST_CASE("DeviceContext: text in both widths and every overload", "[graphics][text]")
{
    Canvas canvas(60, 20), same(60, 20);
    canvas.context.drawText(1, 2, "tarn");
    CHECK(canvas.pixels().find('#') != std::string::npos);
    const std::string expected = canvas.pixels();
    const auto draws = [&](auto... text) {
        same.context.fillRectangle(white, Rect(0, 0, 60, 20));
        same.context.drawText(1, 2, text...);
        CHECK(same.pixels() == expected);
    };
    draws(L"tarn");
    draws("tarn and more", 4u);
    draws(L"tarn and more", 4u);
    draws(std::string("tarn"));
    draws(std::wstring(L"tarn"));
    draws(BasicString<wchar_t>("tarn"));

    const Size extent = canvas.context.getTextExtent("tarn");
    CHECK(extent.cx > 10);
    CHECK(canvas.context.getTextExtent(L"tarn and more", 4) == extent);
    CHECK(canvas.context.getTextExtent(std::wstring(L"tarn")) == extent);
    CHECK(canvas.context.getTextExtent("").cx == 0);
    TEXTMETRICA narrow;
    TEXTMETRICW wide;
    canvas.context.getTextMetrics(narrow);
    canvas.context.getTextMetrics(wide);
    CHECK(narrow.tmHeight == extent.cy);
    CHECK(wide.tmHeight == extent.cy);

    CHECK(same.context.setTextAlign(TA_RIGHT) == TA_LEFT);
    CHECK(same.context.getTextAlign() == TA_RIGHT);
    same.context.fillRectangle(white, Rect(0, 0, 60, 20));
    same.context.drawText(1 + extent.cx, 2, "tarn");
    CHECK(same.pixels() == expected);
}

TEST_CASE("DeviceContext: text colours, and heights from points", "[graphics][text]")
{
    Canvas canvas(20, 20);
    CHECK(canvas.context.setTextColour(red) == black);
    CHECK(canvas.context.setBackgroundColour(blue) == white);
    CHECK(canvas.context.getTextColour() == red);
    canvas.context.drawText(0, 0, "WW");
    CHECK(canvas.pixels().find('R') != std::string::npos);
    CHECK(canvas.pixels().find('B') != std::string::npos);
    CHECK(canvas.context.getFontHeightFromPoints(72) == -canvas.context.getCapabilities(LOGPIXELSY));
    CHECK(canvas.context.getFontHeightFromPoints(9) == -MulDiv(9, canvas.context.getCapabilities(LOGPIXELSY), 72));
}
