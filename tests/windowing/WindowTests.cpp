#include "Windows.h"

#include <Failures.h>

#include <tarn/DragDrop.h>
#include <tarn/FolderDialog.h>
#include <tarn/PropertySheet.h>
#include <tarn/QuestionDialog.h>
#include <tarn/ServiceProgram.h>
#include <tarn/Thread.h>
#include <tarn/TrayIcon.h>

#include <numeric>

namespace {
class Plain : public Window {
public:
    using Window::getWindowLong;
    using Window::setWindowLong;
    using Window::Window;
};

// What a program has of its own its classes can use, whatever private members their bases have.
template <int> constexpr int own(int n) { return n; }
constexpr auto find = own<0>, enter = own<0>, leave = own<0>, route = own<0>, bind = own<0>, forget = own<0>,
               addTask = own<0>, add = own<0>, change = own<0>, select = own<0>, report = own<0>, send = own<0>,
               handle = own<0>, setCaption = own<0>;
using Watch = int;
using Registration = int;

struct Own : TrayIcon, PropertyPage, FolderDialog, ServiceProgram, Thread, DropTarget {
    static constexpr int sum(Watch n, Registration m)
    {
        return find(n) + enter(n) + leave(n) + route(n) + bind(n) + forget(n) + addTask(n) + add(n) + change(n) +
               select(m) + handle(m) + report(m);
    }
};
struct OwnToo : PropertySheet, QuestionDialog {
    static constexpr int sum(int n) { return send(n) + change(n) + route(n) + setCaption(n); }
};
static_assert(Own::sum(1, 2) + OwnToo::sum(1) == 19);
} // namespace

TEST_CASE("Window: each failing call is reported by its own words")
{
    const Plain dead(HWND(0x7001));
    SCROLLINFO info{sizeof info, SIF_ALL, 0, 0, 0, 0, 0};
    MSG msg;
    expectFailures({
        {"Can't move window", [&] { dead.move(Rect(), false); }},
        {"Can't destroy window", [&] { Window(HWND(0x7001)).destroy(); }},
        {"Can't get client rectangle", [&] { dead.getClientSize(); }},
        {"Can't get window rectangle", [&] { dead.getWindowPosition(); }},
        {"Error in retrieving window text length", [&] { dead.getTextLengthW(); }},
        {"Can't set window text", [&] { dead.setText("x"); }},
        {"Can't get window class name", [&] { dead.getClassNameA(); }},
        {"Can't set dialog item text", [&] { dead.setText(1, L"x"); }, codelessOnWine},
        {"Can't retrieve control id", [&] { dead.getID(); }},
        {"Can't get dialog item int", [&] { dead.getInt(1); }, codelessOnWine},
        {"Can't set window long GWL_STYLE", [&] { dead.getStyle(); }},
        {"Can't set window long GWL_STYLE", [&] { dead.setExtendedStyle(0); }},
        {"Error in SetWindowPos", [&] { dead.setSize(1, 1, 0); }},
        {"Can't retrieve parent window", [&] { dead.getParent(); }},
        {"Can't set focus", [&] { dead.setFocus(); }},
        {"Can't retrieve dialog item 7", [&] { dead.getDialogItem(7, true); }, codelessOnWine},
        {"Can't scroll window", [&] { dead.scroll(Point(1, 1), nullptr, nullptr); }},
        {"Can't scroll window", [&] { dead.scroll(Size(1, 1), nullptr, nullptr); }},
        {"Can't create timer with id 70000 and interval 5", [&] { dead.startTimer(70000, 5); }},
        {"Can't stop timer with id 70000", [&] { dead.stopTimer(70000); }},
        {"Can't invalidate window", [&] { dead.invalidate(true); }},
        {"Can't invalidate window rectangle", [&] { dead.invalidate(Rect(), true); }},
        {"Error tracking popup menu", [&] { dead.trackPopupMenu(nullptr, Point(), TPM_RETURNCMD); }},
        {"Error drawing the menu bar", [&] { dead.drawMenuBar(); }},
        {"Can't map point from client to screen", [&] { dead.toScreen(Point()); }},
        {"Can't map point from screen to client", [&] { dead.fromScreen(Point()); }},
        {"Error in GetMessage", [&] { dead.getMessage(msg); }},
        {"Can't insert menu item", [&] { insertMenu(nullptr, 0, 0, 0, ""); }, codelessOnWine},
        {"Can't set menu bitmaps", [&] { setMenuItemBitmaps(nullptr, 0, 0, nullptr, nullptr); }},
        {"Can't change scrollbar arrow state", [&] { dead.enableScrollBar(SB_HORZ, ESB_DISABLE_BOTH); }, silentOnWine},
        {"Can't get scroll info", [&] { dead.getScrollInfo(SB_HORZ, info); }, silentOnWine},
        {"Can't show/hide scrollbar", [&] { dead.showScrollBar(Window::horizontal, true); }, silentOnWine},
        {"Can't set scroll position", [&] { dead.setScrollPosition(Window::horizontal, 1, false); }, silentOnWine},
        {"Can't get scroll position", [&] { dead.getScrollPosition(Window::horizontal); }, silentOnWine},
        {"Can't set scroll range", [&] { dead.setScrollRange(Window::horizontal, 0, 1, false); }, silentOnWine},
        {"Can't set dialog item int", [&] { dead.setInt(1, 1); }, silentOnWine},
        {"Can't set dialog item unsigned int", [&] { dead.setInt(1, 1u); }, silentOnWine},
        {"Can't check dialog button", [&] { dead.setCheck(1, true); }, silentOnWine},
        {"Can't enable window", [&] { dead.enable(true); }},
        {"Can't enable window", [&] { dead.enable(1, true); }, silentOnWine},
        {"Can't track the mouse", [&] { dead.trackMouseLeave(); }, silentOnWine},
        {"Can't update the window", [&] { dead.update(); }, silentOnWine},
        {"Can't show message box", [&] { dead.messageBox("text", "caption", MB_OK); }, silentOnWine},
        {"Can't retrieve dialog item text", [&] { dead.getTextA(1); }, silentOnWine},
    });
    CHECK((!dead.show(SW_SHOW) && !dead.isIconic() && !dead.postMessageA(WM_NULL)));
}

TEMPLATE_TEST_CASE("Window: texts of both widths come back whole", "", char, wchar_t)
{
    const auto text = [](const Window& window, auto... id) {
        if constexpr (std::is_same_v<TestType, char>)
            return window.getTextA(id...);
        else
            return window.getTextW(id...);
    };
    OpenWindow window;
    const Window button(makeButton(window, 5));
    const BasicString<TestType> longText(5000, TestType('x'));
    window.setText(longText);
    window.setText(5, longText);
    CHECK((text(window) == longText && text(window, 5) == longText));
    CHECK((window.hasText(5) && button.getTextLengthW() == 5000 && button.getTextLengthA() == 5000));
    CHECK((window.isUnicode() && button.sendMessageT(WM_GETTEXTLENGTH) == 5000));
    const TestType empty[] = {0};
    window.setText(empty);
    CHECK((text(window).empty() && !window.hasText()));
    CHECK((button.getClassNameW() == L"Button" && button.getClassNameA() == "Button"));
}

namespace {
/// A window whose narrow text is shorter than its wide one.
class Misleading : public Window {
public:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        return msg == WM_GETTEXTLENGTH && ++asked == 1 ? 3 : Window::onMessage(msg, wParam, lParam);
    }
    int asked = 0;
};
} // namespace

TEST_CASE("Window: a wide text is whole although the narrow length is too short")
{
    Misleading window;
    open(window);
    window.setText(L"longer than three");
    window.asked = 0;
    CHECK(window.getTextW() == L"longer than three");
    for (const auto sendMessage : {&Window::sendMessageA, &Window::sendMessageT, &Window::sendMessageW}) {
        window.setText("");
        (window.*sendMessage)(WM_SETTEXT, 0, reinterpret_cast<LPARAM>("narrow"));
        CHECK(window.getTextA() == "narrow");
    }
}

TEST_CASE("Window: place, size and styles are read and changed")
{
    OpenWindow window(WS_POPUP);
    CHECK(window.setExtendedStyle(0, WS_EX_TOOLWINDOW | WS_EX_ACCEPTFILES) == 0);
    window.acceptDraggedFiles(false);
    CHECK(window.setExtendedStyle(WS_EX_TOOLWINDOW, WS_EX_NOPARENTNOTIFY) == WS_EX_TOOLWINDOW);
    CHECK(window.getExtendedStyle() == WS_EX_NOPARENTNOTIFY);
    window.setPosition(30, 40, 0);
    CHECK(window.getWindowRectangle() == Rect(30, 40, 230, 140));
    window.setSize(50, 60, 0);
    CHECK(window.getWindowRectangle() == Rect(30, 40, 80, 100));
    window.setPosition(Rect(1, 2, 301, 202), 0);
    CHECK((window.getWindowPosition() == Point(1, 2) && window.getClientSize() == Size(300, 200)));
    window.setPosition(HWND_TOPMOST, 0);
    CHECK(window.getWindowRectangle() == Rect(1, 2, 301, 202));
    CHECK((window.getExtendedStyle() & WS_EX_TOPMOST));
    window.setPosition(HWND_NOTOPMOST, Point(5, 6), Size(100, 100), 0);
    CHECK(window.getWindowRectangle() == Rect(5, 6, 105, 106));
    window.setPosition(Point(6, 7), 0);
    CHECK((window.getWindowRectangle() == Rect(6, 7, 106, 107) && window.getClientPosition() == Point()));
    window.move(Rect(7, 8, 107, 108), false);
    CHECK((window.getWindowRectangle() == Rect(7, 8, 107, 108) && window.toScreen(Point(1, 1)) == Point(8, 9)));
    CHECK(window.fromScreen(Point(7, 8)) == Point());
    CHECK(window.setStyle(WS_POPUP, WS_CHILD | WS_VSCROLL) == (WS_POPUP | WS_CLIPSIBLINGS));
    CHECK(window.getStyle() == (WS_CHILD | WS_VSCROLL | WS_CLIPSIBLINGS));
    Window made;
    made.create(testClass(), L"", WS_POPUP, Rect(), nullptr, nullptr, nullptr, WS_EX_TOOLWINDOW);
    CHECK((made.getExtendedStyle() & WS_EX_TOOLWINDOW) != 0);
}

TEST_CASE("Window: what changes the place alone leaves the order, and the contents are scrolled and painted")
{
    const OpenWindow window(WS_POPUP | WS_VISIBLE);
    const Window front(makeButton(window, 5, WS_VISIBLE)), back(makeButton(window, 6, WS_VISIBLE));
    REQUIRE(GetWindow(window, GW_CHILD) == front);
    back.setPosition(9, 9, SWP_NOACTIVATE);
    back.setPosition(Point(3, 4), 0);
    back.setPosition(Rect(3, 4, 33, 24), 0);
    back.setSize(Size(40, 50), 0);
    back.setSize(40, 60, 0);
    CHECK((GetWindow(window, GW_CHILD) == front && back.getClientPosition() == Point()));
    window.scroll(1, 20, nullptr, nullptr);
    window.scroll(Point(2, 30), nullptr, nullptr);
    window.scroll(Size(3, 40), nullptr, nullptr);
    CHECK(window.fromScreen(back.getWindowPosition()) == Point(9, 94));
    CHECK(back.getWindowSize() == Size(40, 60));
    window.update();
    window.invalidate(Rect(1, 2, 3, 4), false);
    Rect dirty;
    CHECK((GetUpdateRect(window, &dirty, FALSE) && dirty == Rect(1, 2, 3, 4)));
    window.invalidate(false);
    CHECK((GetUpdateRect(window, &dirty, FALSE) && dirty == window.getClientRectangle()));
}

TEST_CASE("Window: scroll bars keep their range, page and position")
{
    OpenWindow window(WS_OVERLAPPEDWINDOW | WS_VSCROLL);
    CHECK((window.hasScrollBar(Window::vertical) && !window.hasScrollBar(Window::horizontal)));
    const SCROLLINFO info{sizeof info, SIF_ALL, 0, 99, 10, 25, 0};
    CHECK(window.setScrollInfo(SB_VERT, info, false) == 25);
    CHECK(window.getScrollPageSize(Window::vertical) == 10);
    CHECK(window.setScrollPosition(Window::vertical, 0, false) == 25);
    CHECK(window.setScrollPosition(Window::vertical, 500, false) == 0);
    CHECK(window.getScrollPosition(Window::vertical) == 90);
    window.setScrollRange(Window::vertical, -5, 5, false);
    CHECK(window.getScrollInfo(SB_VERT, SIF_RANGE).nMin == -5);
    window.showScrollBar(Window::vertical, false);
    CHECK((!window.hasScrollBar(Window::vertical) && !window.hasScrollBar(Window::control)));
}

TEST_CASE("Window: dialog items show numbers and checks")
{
    OpenWindow window;
    makeButton(window, 5, BS_AUTO3STATE);
    for (const int number : {-7, 0}) {
        window.setInt(5, number);
        CHECK(window.getInt(5) == number);
    }
    window.setInt(5, 4000000000u);
    CHECK(window.getUInt(5) == 4000000000u);
    window.setCheck(5, true);
    CHECK(window.isChecked(5));
    window.setCheck(5, Window::indeterminate);
    CHECK((window.getCheck(5) == Window::indeterminate && !window.isChecked(5)));
    CHECK_FALSE(window.enable(5, false));
    const Window::Pointer<Window> item = window.getDialogItem(5, true);
    CHECK((item->enable(true) && item->getID() == 5 && item->getParent() == &window));
}

TEST_CASE("Window: focus, capture, timers and icons")
{
    const OpenWindow window(WS_OVERLAPPEDWINDOW | WS_VISIBLE), child(WS_CHILD | WS_VISIBLE, window);
    const HWND button = makeButton(child, 5, WS_VISIBLE), inside = makeButton(button, 6);
    SetFocus(button); // It has no object.
    CHECK(window.setFocus()->getWindowHandle() == button);
    CHECK(child.setFocus() == &window);
    CHECK(!child.captureMouse());
    CHECK(window.captureMouse() == &child);
    CHECK(Window::getMouseOwner() == &window);
    SetCapture(button);
    CHECK(Window::getMouseOwner()->getWindowHandle() == button);
    CHECK(window.captureMouse()->getWindowHandle() == button);
    CHECK(Window(inside).getParent()->getWindowHandle() == button);
    Window::releaseMouse();
    CHECK(!Window::getMouseOwner());
    window.startTimer(3, 10);
    MSG msg;
    REQUIRE(window.getMessage(msg, WM_TIMER, WM_TIMER));
    CHECK(msg.wParam == 3);
    window.stopTimer(3);
    const HICON icon = LoadIconW(nullptr, IDI_WARNING);
    CHECK(window.setIcon(icon, true) == nullptr);
    CHECK((window.getIcon(Window::big_icon) == icon && !window.getIcon(Window::small_icon)));
    CHECK(window.hide());
    CHECK(!window.show(SW_SHOW));
}

namespace {
// The table index of a virtual member, which is what calls go by.
template <class Member> int slotOf(Member member)
{
    std::ptrdiff_t offset;
    std::memcpy(&offset, &member, sizeof offset);
    return static_cast<int>((offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

template <class... Members> std::vector<int> slotsOf(Members... members) { return {slotOf(members)...}; }
} // namespace

TEST_CASE("Window: the virtual operations lie in their order")
{
    using Notification = void (Window::*)(const NMTREEVIEWW&);
    using NarrowNotification = void (Window::*)(const NMTREEVIEWA&);
    using ListNotification = void (Window::*)(const NMLISTVIEW&);
    using Default = void (Window::*)();
    using W = Window;
    const std::vector<int> slots =
        slotsOf(&W::onMessage, static_cast<Default>(&Plain::defaultWindowProc), &W::onCommand, &W::onReflectedCommand,
                &W::onHScroll, &W::onVScroll, &W::onDestroy, &W::onNotify, &W::onDoubleClick,
                static_cast<Notification>(&W::onNotification), static_cast<NarrowNotification>(&W::onNotification),
                static_cast<ListNotification>(&W::onNotification), &W::onNCDestroy, &W::onDrawItem, &W::onMeasureItem,
                &W::onDeleteItem, &W::onCompareItem, &W::onMouseMove, &W::onMouseWheel, &W::onLeftButtonDown,
                &W::onLeftButtonUp, &W::onLeftButtonDoubleClick, &W::onMiddleButtonDown, &W::onMiddleButtonUp,
                &W::onMiddleButtonDoubleClick, &W::onRightButtonDown, &W::onRightButtonUp, &W::onRightButtonDoubleClick,
                &W::onKeyDown, &W::onKeyUp, &W::onTimer, &W::onPaint, &W::onQueryDragIcon, &W::onSize, &W::onSizing,
                &W::onMoving, &W::onMove, &W::onEnterSizeMove, &W::onExitSizeMove, &W::onDroppedFiles);
    std::vector<int> expected(40);
    std::iota(expected.begin(), expected.end(), 0);
    CHECK(slots == expected);
    // Behind the destructor, which has two.
    CHECK(slotsOf(&W::onClose, &W::onChar, &W::onFocusGained, &W::onFocusLost, &W::onContextMenu, &W::onSetCursor,
                  &W::onEraseBackground, &W::onMouseHWheel, &W::onMouseLeave, &W::onActivate, &W::onShow, &W::onEnable,
                  &W::onSettingsChanged, &W::onDPIChanged, &W::onNotifyToAnswer, &W::onColourSchemeChanged) ==
          std::vector<int>{42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57});
}

TEST_CASE("Window: a timer calls its function until it stops itself, is started without, or the window ends")
{
    struct Counting : Window {
        void onTimer(UINT_PTR) override { ++others; }
        int others = 0;
    } window;
    open(window);
    int calls = 0;
    window.startTimer(1, 10, [&] {
        if (++calls == 2)
            window.stopTimer(1);
    });
    for (int i = 0; i < 3; ++i)
        window.sendMessageA(WM_TIMER, 1);
    CHECK((calls == 2 && window.others == 1));
    for (const bool isMadeAnew : {false, true}) {
        window.startTimer(1, 10, [&] { ++calls; });
        if (isMadeAnew)
            open(window);
        else
            window.startTimer(1, 10);
        window.sendMessageA(WM_TIMER, 1);
    }
    CHECK((calls == 2 && window.others == 3));
}

TEST_CASE("Window: controls are rescaled, combo boxes with their lists, and a window takes the place suggested")
{
    const OpenWindow window;
    const Window plain(makeButton(window, 5)), other(makeButton(window, 6));
    const auto font = [](int number) { return static_cast<HFONT>(GetStockObject(number)); };
    plain.setFont(font(ANSI_FIXED_FONT));
    other.setFont(font(ANSI_VAR_FONT));
    const HWND combo = CreateWindowExW(0, L"COMBOBOX", L"", WS_CHILD | CBS_DROPDOWNLIST, 10, 20, 80, 120, window,
                                       nullptr, nullptr, nullptr);
    const auto list = [&] {
        RECT rect{};
        SendMessageW(combo, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&rect));
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
        return Rect(rect);
    };
    const Rect before = list();
    window.rescaleControls(DPI(96), DPI(144), font(ANSI_FIXED_FONT), font(SYSTEM_FONT));
    CHECK((plain.getFont() == font(SYSTEM_FONT) && other.getFont() == font(ANSI_VAR_FONT)));
    CHECK(plain.getWindowSize() == Size(60, 30));
    window.rescaleControls(DPI(144), DPI(192), nullptr, nullptr);
    CHECK((list().getPosition() == Point(20, 40) && list().getWidth() == 160));
    CHECK(list().getHeight() * 2 > before.getHeight() * 3); // Not twice: the font is the same, and so is the field.
    const Rect place(5, 6, 305, 206);
    window.sendMessageA(WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&place));
    CHECK(window.getWindowRectangle() == place);
    CHECK(window.getDPI().getDots() == DPI::ofSystem().getDots());
}
