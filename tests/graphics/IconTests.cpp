#include "Test.h"

#include "Canvas.h"

#include <tarn/Cursor.h>
#include <tarn/Icon.h>
#include <tarn/Rect.h>

namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);

bool isAlive(HICON handle)
{
    ICONINFO info;
    if (!GetIconInfo(handle, &info))
        return false;
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmColor);
    return true;
}
template <class Image> const std::string nameOf = std::is_same_v<Image, Icon> ? "icon" : "cursor";
} // namespace

TEMPLATE_TEST_CASE("Icon, Cursor: load by number, narrow and wide name", "", Icon, Cursor)
{
    const auto fails = [](auto load) { expectWindowsError(load, "Can't load " + nameOf<TestType>); };
    const auto loads = [&](auto there, auto missing) {
        TestType image(there, program);
        CHECK((image.isOwner() && isAlive(image)));
        fails([&] { image.load(missing, program); });
        CHECK(image.isNull()); // What was held is released first.
    };
    loads(5, 6);
    loads("PICTURE", "MISSING");
    loads(L"PICTURE", L"MISSING");
    CHECK(isAlive(TestType(32512, nullptr))); // IDI_APPLICATION and IDC_ARROW.
}

TEST_CASE("Icon: any size is loaded and drawn")
{
    Icon icon;
    icon.load(5, program, 24);
    CHECK(icon.getSize() == Size(24, 24));
    icon.load("PICTURE", program, 48);
    CHECK(icon.getSize() == Size(48, 48));
    icon.load(L"PICTURE", program, 16);
    Canvas canvas(40, 40);
    canvas.context.drawIcon(Rect(10, 10, 40, 40), icon);
    CHECK(canvas.pixels().find_first_not_of(".\n") >= 10 * 41);
    CHECK(canvas.pixels().find_last_not_of(".\n") > 30 * 41); // Larger than it is itself.
    expectWindowsError([&] { icon.load(6, program, 16); }, "Can't load icon");
    expectWindowsError([&] { icon.loadFile("missing.ico", 16); }, "Can't load icon");
    expectWindowsError([&] { icon.loadFile(L"missing.ico", 16); }, "Can't load icon");
    expectWindowsError([&] { icon.getSize(); }, "Can't get size of icon");
}

TEMPLATE_TEST_CASE("Icon, Cursor: only the owner destroys", "", Icon, Cursor)
{
    const BYTE mask[2] = {0xFF, 0xFF};
    const HICON handle = CreateIcon(nullptr, 8, 1, 1, 1, mask, mask);
    {
        TestType owner(handle, true);
        TestType taker(owner);
        CHECK(owner.isNull());
        TestType borrower;
        borrower = TestType(taker.getHandle(), false);
        borrower.close();
        CHECK((borrower.isNull() && isAlive(handle)));
    }
    CHECK_FALSE(isAlive(handle));
    const HICON first = CreateIcon(nullptr, 8, 1, 1, 1, mask, mask);
    TestType moved(first, true);
    moved = TestType(CreateIcon(nullptr, 8, 1, 1, 1, mask, mask), true);
    CHECK((!isAlive(first) && isAlive(moved)));
    TestType twice(handle, true);
    twice = std::move(moved); // What cannot be destroyed is no reason to throw.
    twice = TestType(handle, true);
    expectWindowsError([&] { twice.close(); }, "Can't destroy " + nameOf<TestType>);
    CHECK(!twice);
}
