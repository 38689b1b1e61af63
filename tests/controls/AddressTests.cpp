#include "Controls.h"

#include <tarn/Menu.h>

// Where a number stands for an address it keeps all its bits; those of the items of controls are tested with these.

TEST_CASE("Window: the ids of timers keep all bits of an address")
{
    const OpenWindow window;
    window.startTimer(number, 1);
    MSG next;
    REQUIRE(window.getMessage(next, WM_TIMER, WM_TIMER));
    CHECK(next.wParam == number);
    window.stopTimer(number);
}

TEST_CASE("Menu: the data of items are addresses")
{
    const Menu menu(true);
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_DATA | MIIM_ID;
    item.dwItemData = number;
    REQUIRE(InsertMenuItemW(menu, 0, TRUE, &item));
    Menu::ItemInfo info;
    menu.getItemInfo(info, 0, true);
    CHECK(info.data == number);
}
