#include "Windows.h"

#include <tarn/AcceleratorTable.h>
#include <tarn/MessageLoop.h>

namespace {
/// Writes down its commands, keys and focus.
struct Listener : OpenWindow {
    explicit Listener(std::string& list) : OpenWindow(WS_OVERLAPPEDWINDOW | WS_VISIBLE), log(list) {}
    void onCommand(Window*, unsigned short, unsigned short id) override
    {
        log += "command " + std::to_string(id) + ';';
    }
    void onKeyDown(UINT key, unsigned short, unsigned char, bool, bool) override
    {
        log += "key " + std::to_string(key) + ';';
    }
    void onTimer(UINT_PTR) override { PostQuitMessage(5); }
    void onChar(wchar_t character, unsigned short) override { log += "char " + std::to_string(character) + ';'; }
    std::string& log;
};

void press(HWND hwnd, WPARAM key) { PostMessageW(hwnd, WM_KEYDOWN, key, 1); }

/// Ends the loop as soon as nothing is left to do.
struct Once : MessageLoop {
    bool onIdle() override { return ++turns == 1 ? true : (PostQuitMessage(turns), false); }
    int turns = 0;
};

INT_PTR CALLBACK ignore(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

HWND makeDialog(HWND parent, DWORD style)
{
    struct alignas(4) {
        DLGTEMPLATE head;
        WORD none[3];
    } templ{{style, 0, 0, 0, 0, 60, 40}, {}};
    return CreateDialogIndirectParamW(nullptr, &templ.head, parent, ignore, 0);
}
} // namespace

TEST_CASE("MessageLoop: idle time comes when no message waits, again while it is wanted")
{
    std::string log;
    const Listener window(log);
    press(window, 'A');
    Once loop;
    CHECK(loop.run() == 2);
    press(window, 'B');
    window.postMessageW(WM_TIMER, 1); // After the letter.
    CHECK(runMessageLoop() == 5);
    CHECK(log == "key 65;char 97;key 66;char 98;");
}

TEST_CASE("MessageLoop: accelerators work in their window, and not in a dialog beside it")
{
    std::string log;
    const Listener window(log);
    const AcceleratorTable table({{FVIRTKEY, VK_F5, 7}});
    const HWND dialog = makeDialog(window, WS_POPUP | WS_VISIBLE), button = makeButton(window, 5, WS_VISIBLE);
    Once loop;
    loop.addAccelerators(window, table);
    press(window, VK_F5), press(button, VK_F5), press(dialog, VK_F5), press(window, VK_F6);
    loop.run();
    CHECK(log == "command 7;command 7;key 117;");
    DestroyWindow(dialog);
}

TEST_CASE("MessageLoop: the keys of dialogs work in modeless dialogs, and in windows that ask for them")
{
    std::string log;
    const Listener window(log);
    const bool isDialog = GENERATE(true, false);
    const HWND parent =
        isDialog ? makeDialog(makeDialog(window, WS_POPUP | WS_VISIBLE), WS_CHILD | WS_VISIBLE) : window;
    const HWND first = makeButton(parent, 5, WS_VISIBLE | WS_TABSTOP);
    const HWND second = makeButton(parent, 6, WS_VISIBLE | WS_TABSTOP);
    if (isDialog)
        SetWindowLongPtrW(parent, GWL_EXSTYLE, WS_EX_CONTROLPARENT);
    SetFocus(first);
    press(first, VK_TAB);
    Once loop;
    if (!isDialog)
        loop.addDialog(window);
    loop.run();
    CHECK(GetFocus() == second);
}

TEST_CASE("MessageLoop: what a handler throws comes out, and the loop goes on when called again")
{
    const OpenWindow window;
    window.post([] { throw std::runtime_error("no"); });
    Once loop;
    CHECK_THROWS_WITH(loop.run(), "no");
    CHECK(loop.run() == 2);
}

TEST_CASE("AcceleratorTable: a table that was made has one owner")
{
    AcceleratorTable table({{FVIRTKEY | FCONTROL, 'S', 7}, {FVIRTKEY, VK_F5, 8}});
    const HACCEL handle = table;
    CHECK(CopyAcceleratorTableW(handle, nullptr, 0) == 2);
    AcceleratorTable moved(std::move(table));
    CHECK((moved.getHandle() == handle && table.isNull()));
    AcceleratorTable& same = moved;
    moved = std::move(same);
    CHECK(CopyAcceleratorTableW(moved, nullptr, 0) == 2);
    moved = AcceleratorTable({{FVIRTKEY, VK_F6, 7}});
    CHECK((CopyAcceleratorTableW(handle, nullptr, 0) == 0 && CopyAcceleratorTableW(moved, nullptr, 0) == 1));
    expectWindowsError([] { AcceleratorTable(1, nullptr); }, "Can't load accelerators");
    expectWindowsError([] { AcceleratorTable(std::vector<ACCEL>()); }, "Can't create accelerators");
}
