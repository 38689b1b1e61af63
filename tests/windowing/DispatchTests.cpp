#include "Windows.h"

#include <tarn/AcceleratorTable.h>
#include <tarn/MemoryStream.h>
#include <tarn/MessageLoop.h>
#include <tarn/PaintDeviceContext.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>

#include <thread>

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
            open(*this, style);
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

template <class Call> void expectHandlersError(Call call) { expectError<std::logic_error>(call, "handler failed"); }
} // namespace

TEST_CASE("Window: a message that nobody handles gets the default's result")
{
    OpenWindow window;
    NMHDR header{};
    CHECK(window.sendMessageA(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header)) == 0);
    CREATESTRUCTW creation{}; // That of a stranger, without an object.
    CHECK(window.sendMessageW(WM_CREATE, 0, reinterpret_cast<LPARAM>(&creation)) == 0);
    for (const UINT msg : {WM_GETTEXTLENGTH, WM_QUERYDRAGICON, WM_NCHITTEST})
        CHECK(window.sendMessageA(msg) == DefWindowProcW(window, msg, 0, 0));
}

TEST_CASE("Window: the default of an outer message is that of the outer message")
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

TEST_CASE("Window: the last error of a handler does not make a call fail")
{
    Actor window;
    const bool takesDefault = GENERATE(false, true);
    window.act = [&]() -> LRESULT {
        SetLastError(ERROR_FILE_NOT_FOUND);
        if (takesDefault)
            static_cast<Window&>(window).defaultWindowProc();
        return 0;
    };
    window.on = WM_ENABLE;
    CHECK(window.enable(false) == false);
    CHECK(window.enable(true) == true);
    window.setText("");
    window.on = WM_GETTEXT;
    CHECK(window.getTextW().empty());
    SetFocus(nullptr);
    window.on = WM_SETFOCUS;
    CHECK_NOTHROW(window.setFocus());
}

TEST_CASE("Window: an exception of a handler reaches the call that sent the message")
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
    SECTION("also when that is no call of the library, but the procedure itself")
    {
        expectHandlersError([&] { Window::windowProc(window, ask, 0, 0); });
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
            window.act = []() -> LRESULT { throw std::logic_error("the second, which nobody hears of"); };
            SendMessageW(window, ask, 0, 0);
            outer.sendMessageA(WM_NULL); // A call that has nothing to do with it throws nothing.
            return 5;
        };
        expectHandlersError([&] { outer.sendMessageA(askOuter); });
        CHECK(wentOn);
    }
    SECTION("also when it is a fault")
    {
        window.act = []() -> LRESULT { return *static_cast<volatile int*>(nullptr); };
        const auto error = thrownBy<SEHError>([&] { window.sendMessageA(ask); });
        CHECK(error.getCode() == EXCEPTION_ACCESS_VIOLATION);
    }
    window.act = nullptr;
    CHECK(window.sendMessageA(WM_GETTEXTLENGTH) == 4);
}

TEST_CASE("Window: each call that runs handlers throws what they throw")
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
    fails(WM_ERASEBKGND, [&] { Window().invalidate(true); }); // Of the whole desktop.
    fails(WM_ERASEBKGND, [&] { window.invalidate(true), PaintDeviceContext(window); });
    CHECK(!GetUpdateRect(window, nullptr, FALSE));
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
    open(window);
    fails(WM_NCDESTROY, [&] { window.sendMessageA(WM_CLOSE); });
    CHECK(!window.isOpen());
}

TEST_CASE("Window: create throws what a handler of the creation messages throws")
{
    Actor window(0);
    window.on = GENERATE(as<UINT>(), WM_NCCREATE, WM_CREATE, WM_SIZE);
    CAPTURE(getWMIdentifier(window.on));
    window.act = failing;
    expectHandlersError([&] { open(window, WS_OVERLAPPEDWINDOW | WS_VISIBLE); });
    CHECK(!window.isOpen());
    window.act = nullptr;
    open(window);
    CHECK(window.isOpen());
}

TEST_CASE("Window: a modal loop ends when a handler throws in it")
{
    Actor window(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    window.act = failing;
    window.postMessageW(ask);
    window.invalidate(false);
    SECTION("a message box, that is there or not yet, and although painting never ends")
    {
        window.on = GENERATE(as<UINT>(), ask, WM_ENABLE, WM_PAINT);
        expectHandlersError([&] { window.messageBox(L"text", L"caption", MB_YESNO); });
    }
    SECTION("a message box of a child, which is its top-level window's")
    {
        const OpenWindow child(WS_CHILD | WS_VISIBLE, window);
        expectHandlersError([&] { child.messageBox("text", "caption", MB_YESNO); });
    }
    SECTION("a popup menu, although painting never ends")
    {
        const HMENU menu = CreatePopupMenu();
        insertMenu(menu, 0, MF_BYPOSITION, 1, "item");
        window.on = GENERATE(as<UINT>(), WM_ENTERMENULOOP, WM_INITMENUPOPUP, WM_ENTERIDLE, WM_PAINT);
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
    Sleep(20);
    MSG msg; // The loop is not ended any more.
    CHECK(!PeekMessageW(&msg, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE));
}

namespace {
INT_PTR CALLBACK ignore(HWND, UINT, WPARAM, LPARAM) { return FALSE; }
} // namespace

TEST_CASE("Window: a failing message box leaves other dialogs alone")
{
    Actor window(WS_OVERLAPPEDWINDOW | WS_VISIBLE), asker;
    const DLGTEMPLATE bare[2]{{WS_POPUP | WS_VISIBLE, 0, 0, 0, 0, 50, 50}};
    const HWND dialog = CreateDialogIndirectW(nullptr, bare, nullptr, ignore);
    REQUIRE(IsWindowVisible(dialog));
    window.act = failing;
    window.postMessageW(ask);
    expectHandlersError([&] { Window::messageBox(nullptr, "text", "caption", MB_OK); });
    CHECK(IsWindowVisible(dialog));
    // A box that a handler opens, and whose failure it catches, takes no outer one with it.
    bool isOuterUp = false;
    asker.act = [&]() -> LRESULT {
        const HWND outer = GetActiveWindow();
        window.postMessageW(ask);
        expectHandlersError([&] { Window::messageBox(nullptr, "text", "inner", MB_OK); });
        isOuterUp = IsWindowVisible(outer);
        EndDialog(outer, IDOK);
        return 0;
    };
    asker.postMessageW(ask);
    CHECK(Window::messageBox(nullptr, "text", "outer", MB_OK) == IDOK);
    CHECK(isOuterUp);
    DestroyWindow(dialog);
}

TEST_CASE("Window: a failure that a handler catches does not end the user's menu")
{
    Actor window(WS_OVERLAPPEDWINDOW | WS_VISIBLE), other;
    other.act = failing;
    int messages = 0;
    window.act = [&]() -> LRESULT {
        if (++messages == 1)
            expectHandlersError([&] { other.sendMessageA(ask); });
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        CHECK((GetGUIThreadInfo(GetCurrentThreadId(), &info) && (info.flags & GUI_INMENUMODE) != 0));
        if (messages < 4)
            window.postMessageW(ask);
        else
            PostMessageW(GetCapture() ? GetCapture() : HWND(window), WM_KEYDOWN, VK_ESCAPE, 0);
        return 0;
    };
    const HMENU menu = CreatePopupMenu();
    insertMenu(menu, 0, MF_BYPOSITION, 1, "item");
    window.postMessageW(ask);
    CHECK((window.trackPopupMenu(menu, 0, 0, TPM_RETURNCMD) == 0 && messages == 4));
    DestroyMenu(menu);
}

TEST_CASE("Window: waiting for a message ends when another thread's message fails")
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

namespace {
/// Has another thread send the failing message, and returns when it waits to be handled.
class PendingFailure {
public:
    explicit PendingFailure(HWND window) : sender_([=] { SendMessageW(window, ask, 0, 0); })
    {
        while (!(HIWORD(GetQueueStatus(QS_SENDMESSAGE)) & QS_SENDMESSAGE))
            Sleep(1);
    }
    ~PendingFailure() { sender_.join(); }

private:
    std::thread sender_;
};

const Window* failingSoon = nullptr;
std::unique_ptr<PendingFailure> failureOnTaking;

// Lets the failing message come when the next one has been found and not yet taken.
LRESULT CALLBACK onMessageFound(int code, WPARAM wParam, LPARAM lParam)
{
    if (wParam == PM_NOREMOVE && failingSoon)
        failureOnTaking = std::make_unique<PendingFailure>(*std::exchange(failingSoon, nullptr));
    return CallNextHookEx(nullptr, code, wParam, lParam);
}
} // namespace

TEST_CASE("Window: a handler that throws during getMessage leaves the queue as it is")
{
    Actor window;
    window.act = failing;
    MSG msg;
    for (const WPARAM number : {1u, 2u, 3u})
        window.postMessageW(askOuter, number);
    const auto expectNext = [&](WPARAM number) {
        REQUIRE(Window::getThreadMessage(msg));
        CHECK((msg.hwnd == window && msg.message == askOuter && msg.wParam == number));
    };
    SECTION("when messages wait")
    {
        const PendingFailure failure(window);
        expectHandlersError([&] { Window::getThreadMessage(msg); });
    }
    SECTION("when other messages wait than those that are wanted")
    {
        const PendingFailure failure(window);
        expectHandlersError([&] { window.getMessage(msg, ask, ask); });
    }
    SECTION("when one is just being taken, and then the next call throws")
    {
        failingSoon = &window;
        const HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, onMessageFound, nullptr, GetCurrentThreadId());
        expectNext(1);
        UnhookWindowsHookEx(hook);
        failureOnTaking.reset();
        expectHandlersError([&] { Window::getThreadMessage(msg); });
        window.postMessageW(askOuter, 1); // For the common end.
        expectNext(2);
        expectNext(3);
        window.postMessageW(askOuter, 2);
        window.postMessageW(askOuter, 3);
    }
    for (const WPARAM number : {1u, 2u, 3u})
        expectNext(number);
    CHECK(!PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE));
    SECTION("when it is the last one")
    {
        PostQuitMessage(17);
        const PendingFailure failure(window);
        expectHandlersError([&] { Window::getThreadMessage(msg); });
        CHECK(runMessageLoop() == 17);
    }
    SECTION("when the last one is just being taken")
    {
        PostQuitMessage(17);
        failingSoon = &window;
        const HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, onMessageFound, nullptr, GetCurrentThreadId());
        expectHandlersError([&] { Window::getThreadMessage(msg); });
        UnhookWindowsHookEx(hook);
        failureOnTaking.reset();
        CHECK(runMessageLoop() == 17);
    }
}

TEST_CASE("MessageLoop: the keys of dialogs and accelerators throw what handlers throw")
{
    Actor window(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    const HWND button = makeButton(window, 6, WS_VISIBLE | WS_TABSTOP);
    const AcceleratorTable table({{FVIRTKEY, VK_F5, 7}});
    MSG f5{window, WM_KEYDOWN, VK_F5, 0, 0, {}}, enter{button, WM_KEYDOWN, VK_RETURN, 0, 0, {}};
    MSG asked{window, ask, 0, 0, 0, {}};
    CHECK_FALSE((handleDialogMessage(nullptr, f5) || handleDialogMessage(button, f5)));
    CHECK_FALSE((handleAccelerator(window, table, enter) || handleAccelerator(window, nullptr, f5)));
    window.act = failing;
    expectHandlersError([&] { handleDialogMessage(window, asked); });
    window.on = WM_COMMAND;
    expectHandlersError([&] { handleAccelerator(window, table, f5); });
    expectHandlersError([&] { handleDialogMessage(window, enter); });
}

TEST_CASE("Window: an exception that no library call waits for ends the program and says why")
{
    const auto [argument, thrown] = GENERATE(table<const char*, const char*>(
        {{"", "std::logic_error (\"handler failed\") left the handler of WM_USER+0 in "},
         {" fault", "tarn::SEHError (\"Access violation reading 0x0 at windowing_uncaught.exe+0x"}}));
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    Pipe output(0, &inheritable);
    output.keepReadEnd();
    Process program;
    program.create((std::string("windowing_uncaught.exe") + argument).c_str(), GetStdHandle(STD_INPUT_HANDLE),
                   output.getWriteEnd(), output.getWriteEnd(), 0);
    output.getWriteEnd().close();
    MemoryOutputStream text;
    text << output.getReadEnd();
    REQUIRE(program.wait(20'000) == WindowsHandle::signaled);
    CHECK(program.getExitCode() == 70);
    CHECK_THAT(std::string(static_cast<const char*>(text.getData()), static_cast<std::size_t>(text.getSize())),
               Catch::Contains(thrown) &&
                   Catch::Contains("Failing, which the system called with no call of the library around it"));
}

TEST_CASE("Window: a filter of its own and the end of the loop")
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
    const std::pair<bool (Window::*)(UINT, WPARAM, LPARAM) const, WPARAM> posts[] = {
        {&Window::postMessageA, 0x20AC}, {&Window::postMessageT, 0x20AC}, {&Window::postMessageW, 0x80}};
    for (const auto& [post, character] : posts) {
        CHECK((b.*post)(WM_CHAR, 0x80, 0));
        REQUIRE(b.getMessage(msg, WM_CHAR, WM_CHAR));
        CHECK(msg.wParam == character);
    }
}
