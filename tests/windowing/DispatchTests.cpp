#include "Windows.h"

#include <tarn/MessageLoop.h>
#include <tarn/Process.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

using namespace tarn;

namespace {
constexpr UINT ask = WM_USER + 1;
constexpr UINT askOuter = WM_USER + 2;

/// Does what a test wants when the message `ask` (or another) comes.
class Actor : public Window {
public:
    /// Opens its window, unless the style is 0.
    explicit Actor(unsigned long style = WS_OVERLAPPEDWINDOW)
    {
        if (style)
            support::open(*this, style);
    }
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == on && act)
            return act();
        return Window::onMessage(msg, wParam, lParam);
    }
    using Window::defaultWindowProc;
    using Window::markLastMessageUnhandled;
    using Window::processMessage;

    UINT on = ask;
    std::function<LRESULT()> act;
};

LRESULT failing() { throw std::logic_error("handler failed"); }

template <class Call> void expectHandlersError(Call call)
{
    support::expectError<std::logic_error>(call, "handler failed");
}
} // namespace

TEST_CASE("Window: a message that nobody handles gets the default's result", "[window][dispatch]")
{
    support::OpenWindow window;
    NMHDR header{};
    CHECK(window.sendMessageA(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header)) == 0);
    for (const UINT msg : {WM_GETTEXTLENGTH, WM_QUERYDRAGICON, WM_NCHITTEST})
        CHECK(window.sendMessageA(msg) == DefWindowProcW(window, msg, 0, 0));
}

TEST_CASE("Window: the default of an outer message is that of the outer message", "[window][dispatch]")
{
    Actor window;
    int depth = 0;
    window.on = WM_GETTEXTLENGTH;
    window.act = [&]() -> LRESULT {
        // The shared procedure itself, because the platform limits how deep sends may nest.
        if (++depth < 1000)
            CHECK(Window::windowProc(window, WM_GETTEXTLENGTH, 0, 0) == 4);
        CHECK(window.sendMessageA(WM_GETICON) == 0);
        static_cast<Window&>(window).defaultWindowProc();
        return -1;
    };
    CHECK(window.sendMessageA(WM_GETTEXTLENGTH) == 4);
    CHECK(depth == 1000);
    window.on = ask;
    depth = 0;
    window.act = [&]() -> LRESULT { return ++depth < 30 ? window.sendMessageA(ask) + 1 : 0; };
    CHECK(window.sendMessageA(ask) == 29);
    window.on = WM_GETTEXTLENGTH;
    static_cast<Window&>(window).defaultWindowProc(); // Outside of a message: nothing.

    const auto results = [&](LRESULT value, bool handled) {
        const Window::message_result result = window.processMessage(WM_GETTEXTLENGTH, 0, 0);
        return result.value == value && result.handled == handled;
    };
    window.act = []() -> LRESULT { return 9; };
    CHECK(results(9, true));
    window.act = [&]() -> LRESULT { return window.markLastMessageUnhandled(), 9; };
    CHECK(results(0, false));
}

TEST_CASE("Window: the last error of a handler does not make a call fail", "[window][dispatch]")
{
    Actor window;
    window.on = WM_ENABLE;
    window.act = []() -> LRESULT { return SetLastError(ERROR_FILE_NOT_FOUND), 0; };
    CHECK(window.enable(false) == false);
    CHECK(window.enable(true) == true);
}

TEST_CASE("Window: an exception of a handler reaches the call that sent the message", "[window][exceptions]")
{
    Actor window;
    window.act = failing;
    expectHandlersError([&] { window.sendMessageA(ask); });
    window.postMessageW(ask);
    MSG msg;
    REQUIRE(window.getMessage(msg, ask, ask));
    expectHandlersError([&] { Window::dispatchMessage(msg); });

    Actor outer;
    outer.on = askOuter;
    SECTION("through a handler that does not catch it")
    {
        outer.act = [&] { return window.sendMessageA(ask); };
        expectHandlersError([&] { outer.sendMessageA(askOuter); });
    }
    SECTION("and no further than a handler that does")
    {
        outer.act = [&]() -> LRESULT { return expectHandlersError([&] { window.sendMessageA(ask); }), 5; };
        CHECK(outer.sendMessageA(askOuter) == 5);
    }
    SECTION("through a send of the system's own, at the call around it")
    {
        bool wentOn = false;
        outer.act = [&]() -> LRESULT {
            wentOn = SendMessageW(window, ask, 0, 0) == 0;
            outer.sendMessageA(WM_NULL); // A call that has nothing to do with it throws nothing.
            return 5;
        };
        expectHandlersError([&] { outer.sendMessageA(askOuter); });
        CHECK(wentOn);
    }
#ifdef __i386__
    SECTION("also when it is a fault")
    {
        window.act = []() -> LRESULT { return *static_cast<volatile int*>(nullptr); };
        const auto error = support::thrownBy<SEHError>([&] { window.sendMessageA(ask); });
        CHECK(error.getCode() == EXCEPTION_ACCESS_VIOLATION);
    }
#endif
    window.act = nullptr;
    CHECK(window.sendMessageA(WM_GETTEXTLENGTH) == 4);
}

TEST_CASE("Window: each call that runs handlers throws what they throw", "[window][exceptions]")
{
    Actor window;
    window.act = failing;
    const auto fails = [&](UINT msg, const std::function<void()>& call) {
        window.on = msg;
        CAPTURE(getWMIdentifier(msg));
        expectHandlersError(call);
    };
    fails(WM_SHOWWINDOW, [&] { window.show(SW_SHOW); });
    fails(WM_PAINT, [&] { window.invalidate(false), window.update(); });
    fails(WM_SETFOCUS, [&] { SetFocus(nullptr), window.setFocus(); });
    fails(WM_ENABLE, [&] { window.enable(false); });
    fails(WM_SIZE, [&] { window.setSize(300, 200, 0); });
    fails(WM_MOVE, [&] { window.move(0, 0, 300, 200, false); });
    fails(WM_SETTEXT, [&] { window.setText("x"); });
    fails(WM_GETTEXT, [&] { window.getTextW(); });
    fails(WM_STYLECHANGING, [&] { window.setStyle(0, WS_HSCROLL); });
    fails(WM_GETICON, [&] { window.getIcon(Window::big_icon); });
    fails(WM_DESTROY, [&] { window.destroy(); });
    CHECK(!window.isOpen());
    support::open(window);
    fails(WM_NCDESTROY, [&] { window.sendMessageA(WM_CLOSE); });
    CHECK(!window.isOpen());
}

TEST_CASE("Window: create throws what a handler of the creation messages throws", "[window][exceptions]")
{
    Actor window(0);
    window.on = GENERATE(as<UINT>(), WM_NCCREATE, WM_CREATE, WM_SIZE);
    CAPTURE(getWMIdentifier(window.on));
    window.act = failing;
    expectHandlersError([&] { support::open(window, WS_OVERLAPPEDWINDOW | WS_VISIBLE); });
    CHECK(!window.isOpen());
    window.act = nullptr;
    support::open(window);
    CHECK(window.isOpen());
}

TEST_CASE("Window: a modal loop ends when a handler throws in it", "[window][exceptions]")
{
    Actor window(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    window.act = failing;
    SECTION("a message box")
    {
        window.postMessageW(ask);
        expectHandlersError([&] { window.messageBox(L"text", L"caption", MB_YESNO); });
    }
    SECTION("a message box that is not there yet")
    {
        window.on = WM_ENABLE;
        expectHandlersError([&] { window.messageBox("text", "caption", MB_OK); });
    }
    SECTION("a popup menu")
    {
        const HMENU menu = CreatePopupMenu();
        insertMenu(menu, 0, MF_BYPOSITION, 1, "item");
        window.on = GENERATE(as<UINT>(), WM_ENTERMENULOOP, WM_INITMENUPOPUP, WM_ENTERIDLE);
        CAPTURE(getWMIdentifier(window.on));
        expectHandlersError([&] { window.trackPopupMenu(menu, 0, 0, TPM_RETURNCMD); });
        DestroyMenu(menu);
    }
    SECTION("moving the window")
    {
        window.on = WM_ENTERSIZEMOVE;
        expectHandlersError([&] { window.sendMessageA(WM_SYSCOMMAND, SC_MOVE, 0); });
    }
    CHECK(IsWindowEnabled(window));
}

TEST_CASE("Window: waiting for a message ends when another thread's message fails", "[window][exceptions]")
{
    Actor window;
    window.act = failing;
    std::thread sender([&] { SendMessageW(window, ask, 0, 0); });
    MSG msg;
    const UINT filter = GENERATE(0u, UINT{WM_KEYFIRST});
    expectHandlersError([&] { Window::getThreadMessage(msg, filter, filter ? WM_KEYLAST : 0); });
    sender.join();
    PostQuitMessage(3);
    CHECK(runMessageLoop() == 3);
}

TEST_CASE("MessageLoop: the keys of dialogs and accelerators work, and throw what handlers throw",
          "[window][exceptions]")
{
    Actor window(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    const HWND first = support::makeButton(window, 5, WS_VISIBLE | WS_TABSTOP);
    const HWND second = support::makeButton(window, 6, WS_VISIBLE | WS_TABSTOP);
    SetFocus(first);
    MSG tab{first, WM_KEYDOWN, VK_TAB, 0, 0, {}};
    CHECK(handleDialogMessage(window, tab));
    CHECK(GetFocus() == second);
    CHECK_FALSE(handleDialogMessage(nullptr, tab));
    CHECK_FALSE(handleDialogMessage(second, tab));

    ACCEL key{FVIRTKEY, VK_F5, 7};
    const HACCEL table = CreateAcceleratorTableW(&key, 1);
    MSG f5{window, WM_KEYDOWN, VK_F5, 0, 0, {}};
    int commands = 0;
    window.on = WM_COMMAND;
    window.act = [&]() -> LRESULT { return ++commands, 0; };
    CHECK(handleAccelerator(window, table, f5));
    CHECK(commands == 1);
    CHECK_FALSE(handleAccelerator(window, table, tab));
    CHECK_FALSE(handleAccelerator(window, nullptr, f5));

    window.act = failing;
    expectHandlersError([&] { handleAccelerator(window, table, f5); });
    MSG enter{second, WM_KEYDOWN, VK_RETURN, 0, 0, {}};
    expectHandlersError([&] { handleDialogMessage(window, enter); });
    window.on = ask;
    MSG asked{window, ask, 0, 0, 0, {}};
    expectHandlersError([&] { handleDialogMessage(window, asked); });
    DestroyAcceleratorTable(table);
}

TEST_CASE("Window: an exception that no library call waits for ends the program", "[window][exceptions]")
{
    Process program("windowing_uncaught.exe", 0);
    REQUIRE(program.wait(20'000) == WindowsHandle::signaled);
    CHECK(program.getExitCode() == 70);
}

TEST_CASE("Window: a filter of its own and the end of the loop", "[window][dispatch]")
{
    Actor a, b;
    a.postMessageA(ask, 1);
    b.postMessageW(ask, 2);
    MSG msg;
    REQUIRE(b.getMessage(msg));
    CHECK((msg.hwnd == b && msg.wParam == 2));
    int got = 0;
    a.act = [&]() -> LRESULT { return PostQuitMessage(17), ++got; };
    CHECK(runMessageLoop() == 17);
    CHECK(got == 1);
    b.destroy();
    support::expectWindowsError([&] { Window(HWND(0x7001)).getMessage(msg); }, "Error in GetMessage");
}
