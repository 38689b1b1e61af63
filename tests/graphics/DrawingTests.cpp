#include "Test.h"

#include "Canvas.h"

#include <tarn/Icon.h>
#include <tarn/Rect.h>

TEST_CASE("DeviceContext: filled rectangles end before their right and bottom edge")
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

TEST_CASE("DeviceContext: lines leave out their end point and mix as the mode says")
{
    Canvas canvas(4, 3);
    Pen pen(red, PS_SOLID, 1);
    const Pen former = canvas.context.select(pen);
    CHECK(canvas.context.moveTo(1, 0) == Point(0, 0));
    canvas.context.lineTo(3, 0);
    canvas.context.lineTo(Point(3, 2));
    CHECK(canvas.context.moveTo(Point(0, 0)) == Point(3, 2));
    CHECK(canvas.pixels() == ".RRR\n...R\n....\n");
    canvas.context.select(former);
    CHECK(canvas.context.setROP2(R2_NOT) == R2_COPYPEN);
    CHECK(canvas.context.getROP2() == R2_NOT);
    canvas.context.lineTo(2, 0);
    CHECK(canvas.pixels() == "#?RR\n...R\n....\n");
}

TEST_CASE("DeviceContext: the 3D rectangle's dark edges take the corners")
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

    const bool raised = GENERATE(true, false);
    canvas.context.drawRectangle3D(Rect(0, 0, 4, 4), raised);
    CHECK(canvas.context.getPixel(0, 0) == GetSysColor(raised ? COLOR_BTNHIGHLIGHT : COLOR_BTNSHADOW));
    CHECK(canvas.context.getPixel(3, 3) == GetSysColor(raised ? COLOR_BTNSHADOW : COLOR_BTNHIGHLIGHT));
}

TEST_CASE("DeviceContext: selecting hands back the object used before, borrowed")
{
    Canvas canvas(2, 2);
    const auto replaces = [&](const auto& object, int formerStock) {
        const auto former = canvas.context.select(object.getHandle());
        CHECK((former.getHandle() == GetStockObject(formerStock) && !former.isOwner()));
        CHECK(canvas.context.select(former.getHandle()).getHandle() == object.getHandle());
    };
    replaces(Pen(red, PS_SOLID, 1), BLACK_PEN);
    replaces(Brush(red), WHITE_BRUSH);
    replaces(Font(static_cast<HFONT>(GetStockObject(ANSI_FIXED_FONT)), false), SYSTEM_FONT);
    const Bitmap bitmap(2, 2, 1, 1, nullptr);
    const Bitmap paper = canvas.context.select(bitmap);
    CHECK_FALSE(paper.isOwner());
    CHECK(canvas.context.select(paper).getHandle() == bitmap.getHandle());
    const auto defaultPalette = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
    const Palette palette = canvas.context.select(defaultPalette, true);
    CHECK((palette.getHandle() == defaultPalette && !palette.isOwner()));
    CHECK_FALSE(canvas.context.usesPalette());
}

TEST_CASE("DeviceContext: blits copy a part and mix it, icons what their mask lets")
{
    Canvas source(3, 2), target(4, 2);
    source.context.fillRectangle(red, Rect(1, 0, 2, 2));
    target.context.blit(source.context, 2, 0, 2, 2, 1, 0, SRCCOPY);
    CHECK(target.pixels() == "..R.\n..R.\n");
    target.context.blit(source.context, 0, 1, 3, 1, 0, 0, NOTSRCCOPY);
    CHECK(target.pixels() == "..R.\n#?#.\n");

    const int width = GetSystemMetrics(SM_CXICON), height = GetSystemMetrics(SM_CYICON);
    Canvas canvas(width + 2, height + 2, 32, green);
    canvas.context.drawIcon(1, 1, Icon(5, GetModuleHandleW(nullptr)));
    CHECK((canvas.context.getPixel(0, 0) == green && canvas.context.getPixel(1, 1) == white));
    CHECK(canvas.context.getPixel(1, height) == black);
}

TEST_CASE("DeviceContext: paths are filled and stroked from the origin on")
{
    Canvas canvas(5, 4);
    DeviceContext& context = canvas.context;
    CHECK(context.setViewportOrigin(2, 1) == Point(0, 0));
    CHECK(context.setViewportOrigin(POINT{1, 1}) == Point(2, 1));
    const Brush brush(red);
    const HBRUSH former = context.select(brush);
    context.beginPath();
    context.moveTo(0, 0);
    context.lineTo(3, 0);
    context.lineTo(3, 2);
    context.lineTo(0, 2);
    context.closeFigure();
    context.endPath();
    const auto shows = [&](const char* pixels) { CHECK(canvas.pixels() == pixels); };
    SECTION("filled") { context.flattenPath(), context.fillPath(), shows(".....\n.RRR.\n.RRR.\n.....\n"); }
    SECTION("stroked and filled") { context.strokeAndFillPath(), shows(".....\n.####\n.#RR#\n.####\n"); }
    SECTION("stroked") { context.strokePath(), shows(".....\n.####\n.#..#\n.####\n"); }
    SECTION("widened") { CHECK_NOTHROW(context.widenPath()); }
    SECTION("given up")
    {
        context.abortPath(), expectWindowsError([&] { context.fillPath(); }, "Can't fill path");
    }
    context.select(former);
}

TEST_CASE("DeviceContext: text in both widths, every overload and its colours")
{
    Canvas canvas(60, 20), same(60, 20);
    canvas.context.drawText(1, 2, "tarn");
    CHECK(canvas.pixels().find('#') != std::string::npos);
    const Size extent = canvas.context.getTextExtent("tarn");
    CHECK(extent.cx > 10);
    const auto draws = [&](int x, auto... text) {
        same.context.fillRectangle(white, Rect(0, 0, 60, 20));
        same.context.drawText(x, 2, text...);
        CHECK(same.pixels() == canvas.pixels());
        CHECK(same.context.getTextExtent(text...) == extent);
    };
    draws(1, L"tarn");
    draws(1, "tarn and more", 4u);
    draws(1, L"tarn and more", 4u);
    draws(1, std::string("tarn"));
    draws(1, std::wstring(L"tarn"));
    CHECK(same.context.setTextAlign(TA_RIGHT) == TA_LEFT);
    CHECK(same.context.getTextAlign() == TA_RIGHT);
    draws(1 + extent.cx, "tarn");

    TEXTMETRICA narrow;
    TEXTMETRICW wide;
    canvas.context.getTextMetrics(narrow);
    canvas.context.getTextMetrics(wide);
    CHECK((narrow.tmHeight == extent.cy && wide.tmHeight == extent.cy));
    CHECK(canvas.context.getFontHeightFromPoints(9) == -MulDiv(9, canvas.context.getCapabilities(LOGPIXELSY), 72));

    CHECK(canvas.context.setTextColour(red) == black);
    CHECK(canvas.context.setBackgroundColour(blue) == white);
    CHECK(canvas.context.getTextColour() == red);
    canvas.context.drawText(1, 2, "tarn");
    CHECK(canvas.pixels().find('R') != std::string::npos);
    CHECK(canvas.pixels().find('B') != std::string::npos);
}
