#include "Test.h"

#include <tarn/ImageList.h>
#include <tarn/Menu.h>
#include <tarn/Window.h>

TEST_CASE("Menu: items are inserted in both widths, told of, changed and removed")
{
    Menu menu(true);
    menu.insert("narrow", 0, MF_BYPOSITION, 7);
    menu.insert(L"w\x4E00", 0, MF_BYPOSITION, 8);
    menu.insertSeparator();
    menu.insertSeparator(true, 1);
    CHECK((menu.getItemCount() == 4 && menu.getItemID(2) == 7));

    Menu::ItemInfo info;
    menu.getItemInfo(info, 0, true);
    CHECK((info.text == L"w\x4E00" && info.id == 8 && !info.subMenu));
    menu.getItemInfo(info, 3, true);
    CHECK(((info.type & MFT_SEPARATOR) && info.text.empty()));

    CHECK(menu.setItemState(Menu::grayed, 7, false) == Menu::enabled);
    CHECK(menu.setItemState(Menu::enabled, 2, true) == Menu::grayed);
    CHECK(menu.setItemCheck(Menu::checked, 7, false) == Menu::unchecked);
    CHECK(static_cast<int>(menu.setItemCheck(Menu::checked, 99, false)) == -1);

    menu.remove(7, false);
    expectWindowsError([&] { menu.remove(7, false); }, "Can't remove menu item");
    expectWindowsError([&] { menu.getItemInfo(info, 99, true); }, "Can't retrieve menu item info");
    expectWindowsError([&] { menu.getItemID(99); },
                       BasicString<char>::fromFormat("Can't retrieve item 99 of menu %p", menu.getHandle()));
    Menu sub(true);
    menu.insert("sub", 0, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(sub.detach()));
    SetLastError(ERROR_FILE_NOT_FOUND);
    expectWindowsError([&] { menu.getItemID(0); }, ERROR_SUCCESS,
                       BasicString<char>::fromFormat("Can't retrieve item 0 of menu %p", menu.getHandle()));
    const Menu none(HMENU(0x7001), false);
    expectWindowsError([&] { none.insert("x", 0, MF_BYPOSITION, 1); }, "Can't insert menu item");
    expectWindowsError([&] { none.insertSeparator(); }, "Can't insert menu separator");
    expectWindowsError([&] { none.getItemCount(); },
                       BasicString<char>::fromFormat("Can't retrieve item count for menu %p", none.getHandle()));
}

TEST_CASE("Menu, ImageList: a failing end lets an exception that is on its way go on")
{
    const auto fail = [] {
        const Menu menu(HMENU(0x7001), true);
        ImageList list;
        list.attach(HIMAGELIST(0x7001));
        throw std::runtime_error("first");
    };
    expectError<std::runtime_error>(fail, "first");
}

TEST_CASE("Menu: the menu that has an item is found at any depth")
{
    const HINSTANCE module = GetModuleHandleW(nullptr);
    Menu menu(20, module);
    const Menu sub = menu.getSubMenu(1);
    CHECK((!sub.isOwner() && menu.getSubMenu(0).isNull()));
    CHECK(menu.findParentOfItem(201).getHandle() == sub.getHandle());
    CHECK(menu.findParentOfItem(301).getHandle() == sub.getSubMenu(1).getHandle());
    CHECK((!menu.findParentOfItem(301).isOwner() && menu.findParentOfItem(999).isNull()));
    {
        Menu found = menu.findParentOfItem(101);
        CHECK((found.getHandle() == menu.getHandle() && found.isOwner()));
        found = Menu(); // Or both would destroy it: as detach() it destroys nothing.
    }
    expectWindowsError([&] { menu.load(99, module); },
                       BasicString<char>::fromFormat("Can't load menu 99 from module %p", module));
    CHECK(menu.isNull());
}

TEST_CASE("Menu: the owner destroys its menu, and tells when that fails")
{
    HMENU handle = nullptr;
    {
        Menu first(false);
        handle = first;
        const Menu second(first);
        CHECK((first.isNull() && second.isOwner()));
        first.close();
    }
    CHECK(!IsMenu(handle));
    Menu menu(true);
    handle = menu;
    menu = Menu(true);
    CHECK((!IsMenu(handle) && IsMenu(menu)));
    Menu& same = menu;
    menu = std::move(same);
    CHECK((IsMenu(menu) && menu.isOwner()));
    handle = menu;
    menu.create(false);
    CHECK((!IsMenu(handle) && IsMenu(menu)));
    handle = menu;
    menu.load(20, GetModuleHandleW(nullptr));
    CHECK((!IsMenu(handle) && menu.getItemCount() == 2));
    DestroyMenu(menu);
    expectWindowsError([&] { menu.close(); }, "Can't destroy menu");
    CHECK(menu.isNull());

    const HMENU bar = CreateMenu();
    Window window;
    window.create(L"STATIC", L"", WS_OVERLAPPED, RECT{0, 0, 50, 50}, nullptr, bar, nullptr);
    CHECK((window.getMenu().getHandle() == bar && !window.getMenu().isOwner()));
}
