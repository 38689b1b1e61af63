#include "Controls.h"

#include <tarn/ComboBox.h>
#include <tarn/ListBox.h>
#include <tarn/ListView.h>
#include <tarn/Menu.h>
#include <tarn/TreeView.h>

// Where a number stands for an address or a handle it keeps all its bits: in 64-bit programs more than 32.

namespace {
constexpr ULONG_PTR number = ~ULONG_PTR{0} / 0xFF * 0x5A;
void* const address = reinterpret_cast<void*>(number);

struct Listener : OpenWindow {
    ~Listener() { destroy(); }
    void onTimer(UINT_PTR id) override { heard = id; }
    void onDeleteItem(UINT, const DELETEITEMSTRUCT& item) override { heard = item.itemData; }
    ULONG_PTR heard = 0;
};
} // namespace

TEST_CASE("Window: the ids of timers keep all bits of an address")
{
    Listener window;
    window.startTimer(number, 1);
    MSG next;
    REQUIRE(window.getMessage(next, WM_TIMER, WM_TIMER));
    Window::dispatchMessage(next);
    CHECK(window.heard == number);
    window.stopTimer(number);
}

TEMPLATE_TEST_CASE("Boxes: the data of items are addresses", "", ComboBox, ListBox)
{
    constexpr bool isList = std::is_same_v<TestType, ListBox>;
    Listener parent;
    Host::makeChild(parent, isList ? L"LISTBOX" : L"COMBOBOX", 7,
                    isList ? LBS_OWNERDRAWFIXED : CBS_OWNERDRAWFIXED | CBS_DROPDOWNLIST);
    TestType box;
    box.attach(parent, 7);
    CHECK(box.addItem(address) == 0);
    CHECK(box.getItemData(0) == address);
    box.setItemData(0, reinterpret_cast<void*>(~number));
    CHECK(box.getItemData(0) == reinterpret_cast<void*>(~number));
    box.deleteString(0);
    CHECK(parent.heard == ~number);
}

TEST_CASE("Views and menus: the data of items are addresses")
{
    Host host;
    ListView list;
    TreeView tree;
    host.add(list, WC_LISTVIEWW, LVS_REPORT, 1);
    host.add(tree, WC_TREEVIEWW, 0, 2);
    CHECK(list.getItemData(static_cast<unsigned>(list.insertItem(L"item", address))) == address);
    CHECK(tree.getItemData(tree.insertItem(L"item", address, TVI_ROOT, TVI_LAST)) == address);

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
