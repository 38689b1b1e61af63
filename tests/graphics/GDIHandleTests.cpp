#include "Test.h"

#include "Canvas.h"
#include "Failures.h"

#include <tarn/Brush.h>
#include <tarn/Font.h>
#include <tarn/Pen.h>
#include <tarn/Rect.h>

namespace {
template <class Description> Description describe(HGDIOBJ object)
{
    Description description = {};
    GetObjectW(object, sizeof description, &description);
    return description;
}
template <class Ch> Font smallFont(const Ch* face)
{
    return Font(-12, 0, 0, 0, FW_BOLD, true, false, true, DEFAULT_CHARSET, 0, 0, 0, 0, face);
}
} // namespace

TEST_CASE("GDIHandle: copy construction moves what is owned and shares what is borrowed")
{
    Pen owner(red, PS_SOLID, 1);
    const HPEN handle = owner;
    {
        Pen taker(owner);
        CHECK((owner.isNull() && !owner.isOwner()));
        static_assert(!std::is_constructible_v<Brush, const Brush&>); // Nor by way of a colour.
        Pen borrower(taker.getHandle(), false);
        Pen second(borrower);
        CHECK(borrower.getHandle() == handle);
        second.close();
        CHECK((second.isNull() && isAlive(handle)));
    }
    CHECK_FALSE(isAlive(handle));
}

TEST_CASE("GDIHandle: assignment copies handle and flag and releases nothing")
{
    Pen source(red, PS_SOLID, 1), target(blue, PS_SOLID, 1);
    const HPEN former = target;
    target = source;
    CHECK(source.getHandle() == target.getHandle());
    CHECK((source.isOwner() && target.isOwner()));
    CHECK(isAlive(former));
    DeleteObject(former);
    target = Pen(); // Leaves one owner.
    CHECK(isAlive(source));
}

TEST_CASE("GDIHandle: moving hands on what is owned and releases what was held")
{
    Pen pen;
    pen = Pen(red, PS_DASH, 1);
    const HPEN first = pen;
    pen = Pen(blue, PS_DASH, 1);
    CHECK((pen.isOwner() && isAlive(pen) && !isAlive(first)));
    std::vector<Pen> pens;
    for (const unsigned long colour : {red, green, blue})
        pens.emplace_back(colour, PS_DASH, 2);
    const HPEN middle = pens[1], last = pens[2];
    std::swap(pens[0], pens[2]);
    pens.erase(pens.begin() + 1);
    CHECK((pens.size() == 2 && pens[0].getHandle() == last && isAlive(last) && isAlive(pens[1]) && !isAlive(middle)));
    const Pen borrower(pens[0].getHandle(), false);
    Pen& same = pens[0];
    same = std::move(pens[0]);
    CHECK((same.isOwner() && isAlive(borrower)));
    const HPEN given = same.detach();
    CHECK((same.isNull() && isAlive(given)));
    DeleteObject(given);
}

TEST_CASE("GDIHandle: a failing release is reported once, by close and by the destructor")
{
    Pen pen(red, PS_SOLID, 1);
    DeleteObject(pen);
    const auto destroyTwice = [] {
        Brush brush(red);
        DeleteObject(brush);
        SetLastError(ERROR_FILE_NOT_FOUND);
    };
    expectFailures({{"Can't delete GDI handle", [&] { pen.close(); }}, {"Can't delete GDI handle", destroyTwice}});
    CHECK(!pen);
    CHECK_NOTHROW(pen.close());
    pen.create(red, PS_DASH, 1);
    DeleteObject(pen);
    pen = Pen(blue, PS_DASH, 1); // Which must not throw.
}

TEST_CASE("Pen, Brush, Font: are made as asked for, and again")
{
    Pen pen(red, PS_DASH, 1);
    CHECK((describe<LOGPEN>(pen).lopnColor == red && describe<LOGPEN>(pen).lopnStyle == PS_DASH));
    const HPEN former = pen;
    pen.create(blue, PS_SOLID, 7);
    CHECK((describe<LOGPEN>(pen).lopnColor == blue && describe<LOGPEN>(pen).lopnWidth.x == 7));
    CHECK((former == pen.getHandle() || !isAlive(former)));
    CHECK(describe<LOGBRUSH>(Brush(green)).lbColor == green);
    Font again = smallFont("Tahoma");
    const unsigned objects = drawingObjects();
    again.create(-9, 0, 0, 0, 0, false, false, false, DEFAULT_CHARSET, 0, 0, 0, 0, "Tahoma");
    again.create(-9, 0, 0, 0, 0, false, false, false, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    CHECK((again.isOwner() && drawingObjects() == objects));
    for (const LOGFONTW& font : {describe<LOGFONTW>(smallFont("Tahoma")), describe<LOGFONTW>(smallFont(L"Tahoma"))}) {
        CHECK((font.lfHeight == -12 && font.lfWeight == FW_BOLD));
        CHECK((font.lfItalic && !font.lfUnderline && font.lfStrikeOut));
        CHECK(std::wstring(font.lfFaceName) == L"Tahoma");
    }
}

TEST_CASE("Bitmap: made or loaded, it tells its size")
{
    CHECK(Bitmap(3, 5, 1, 1, nullptr).getSize() == Size(3, 5));
    CHECK(Bitmap(newDIBSection(4, -6, 32), true).getSize() == Size(4, 6)); // The top row first.
    const Bitmap loaded(7, GetModuleHandleW(nullptr));
    CHECK((loaded.isOwner() && loaded.getSize() == Size(8, 2)));
    expectWindowsError([] { Bitmap(8, GetModuleHandleW(nullptr)); }, ERROR_RESOURCE_NAME_NOT_FOUND,
                       "Can't load bitmap 8");
    std::uint32_t* pixels = nullptr;
    const Bitmap own = Bitmap::withPixels(3, 2, pixels);
    const std::vector<std::uint32_t> colours{0xFF, 2, 3, 4, 5, 6}; // From the top.
    std::ranges::copy(colours, pixels);
    CHECK(own.getPixels() == colours);
    DeviceContext context;
    context.select(own);
    CHECK(context.getPixel(0, 0) == blue);
    BITMAPINFOHEADER header;
    Bitmap(newDIBSection(4, 6, 8), true).getHeader(header);
    CHECK(header.biBitCount == 8);
    expectWindowsError([&] { Bitmap().getHeader(header); }, "Can't query bitmap info header");
}

TEST_CASE("Graphics: what cannot be made is reported without an old error code")
{
    Canvas canvas(4, 4);
    const Bitmap bitmap(newDIBSection(4, 2, 24), true);
    const NoFreeGDIObjects none;
    expectFailures({
        {"Can't create bitmap", [] { Bitmap(2, 2, 1, 1, nullptr); }},
        {"Can't create compatible bitmap", [] { Bitmap(HDC(), 2, 2); }},
        {"Can't create solid brush", [] { Brush{red}; }},
        {"Can't create pen", [] { Pen(red, PS_SOLID, 3); }},
        {"Can't create font", [] { smallFont("Tahoma"); }},
        {"Can't create font", [] { smallFont(L"Tahoma"); }},
        {"Can't query bitmap info header", [&] { bitmap.getSize(); }},
        {"Can't draw line", [&] { canvas.context.drawRectangle3D(Rect(0, 0, 4, 4), true); }},
        {"Can't create compatible DC", [] { DeviceContext(); }},
        {"Can't create compatible DC", [] { DeviceContext context(DeviceContext{HDC()}), copy(context); }},
    });
}
