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
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg != WM_APP)
            return Window::onMessage(msg, wParam, lParam);
        first = wParam;
        second = static_cast<ULONG_PTR>(lParam);
        return lParam;
    }
    void onTimer(UINT_PTR id) override { first = id; }
    void onDeleteItem(UINT, const DELETEITEMSTRUCT& item) override { first = item.itemData; }

    ULONG_PTR first = 0, second = 0;
};

void dispatchNext(HWND hwnd, UINT msg)
{
    MSG next;
    REQUIRE(GetMessageW(&next, hwnd, msg, msg) > 0);
    Window::dispatchMessage(next);
}
} // namespace

TEST_CASE("Window: parameters, results and ids of timers keep all bits of an address")
{
    Listener window;
    CHECK(window.sendMessageW(WM_APP, number, static_cast<LPARAM>(~number)) == static_cast<LRESULT>(~number));
    CHECK(window.first == number);
    CHECK(window.second == ~number);
    window.postMessageW(WM_APP, ~number, static_cast<LPARAM>(number));
    dispatchNext(window, WM_APP);
    CHECK(window.first == ~number);
    CHECK(window.second == number);
    window.startTimer(number, 1);
    dispatchNext(window, WM_TIMER);
    CHECK(window.first == number);
    window.stopTimer(number);
    window.sendMessageW(WM_TIMER, ~number);
    CHECK(window.first == ~number);
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
    CHECK(parent.first == ~number);
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
