#include "Windows.h"

namespace {
WNDPROC procedureOf(HWND hwnd) { return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hwnd, GWLP_WNDPROC)); }

Window* objectOf(HWND hwnd) { return Window::getWindowFromHandle(hwnd, false); }

/// Counts one message, and opens what is protected. May hold a handle from the start, unbound.
class Probe : public Window {
public:
    explicit Probe(UINT counted = WM_USER, HWND held = nullptr) : Window(held), counted_(counted) {}

    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        count += msg == counted_;
        return Window::onMessage(msg, wParam, lParam);
    }
    using Window::attach;

    int count = 0;

private:
    UINT counted_;
};

/// Ends its own window or itself in a handler, and tells of its end.
class Suicide : public Window {
public:
    enum How { destroysWindow, deletesItself, deletesItselfAfterDefault, deletesItselfOnEnd, deletesItselfOnSize };
    explicit Suicide(bool& ended, How how = destroysWindow) : ended_(ended), how_(how) {}
    ~Suicide() override { ended_ = true; }

    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg != (how_ == deletesItselfOnSize ? WM_SIZE : WM_USER))
            return Window::onMessage(msg, wParam, lParam);
        if (how_ == destroysWindow)
            destroy();
        if (how_ == deletesItselfAfterDefault)
            defaultWindowProc();
        if (how_ != destroysWindow)
            delete this;
        return 42;
    }
    void onNCDestroy() override
    {
        defaultWindowProc();
        if (how_ == deletesItselfOnEnd)
            delete this;
    }

private:
    bool& ended_;
    How how_;
};

/// What a stranger puts on top of the shared procedure.
LRESULT CALLBACK onTop(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcW(&Window::windowProc, hwnd, msg, wParam, lParam);
}

/// A parent with the button 5.
struct Parent {
    OpenWindow window;
    HWND button = makeButton(window, 5);
};
} // namespace

TEST_CASE("Window: create binds from the first message, and the end of the window unbinds")
{
    Probe window(WM_NCCREATE);
    open(window);
    const HWND handle = window;
    CHECK(window.count == 1);
    CHECK(objectOf(handle) == &window);
    CHECK((window.isOpen() && !window.isSubclass()));
    CHECK(window.getWindowRectangle() == Rect(10, 20, 210, 120));

    SECTION("by destroy") { window.destroy(); }
    SECTION("by the system") { DestroyWindow(handle); }
    SECTION("by the next create")
    {
        open(window);
        CHECK((window.isOpen() && window.getWindowHandle() != handle));
        window.destroy();
    }
    CHECK((!window.isOpen() && !objectOf(handle) && !IsWindow(handle)));
    window.destroy();
    open(window);
    CHECK(window.isOpen());
}

TEST_CASE("Window: an owning object takes its window with it, an attached one does not")
{
    Parent parent;
    {
        Probe attached;
        attached.Window::attach(parent.window, 5);
        CHECK(objectOf(parent.button) == &attached);
        CHECK(procedureOf(parent.button) != &Window::windowProc);
        attached.unsubclass();
        CHECK((!attached.isOpen() && !objectOf(parent.button)));
        attached.Window::attach(parent.window, 5);
    }
    CHECK((IsWindow(parent.button) && !objectOf(parent.button)));
    {
        Probe owner;
        owner.attach(parent.button, false);
        owner.attach(parent.button, true);
    }
    CHECK(!IsWindow(parent.button));
    expectWindowsError([&] { Probe().Window::attach(parent.window, 5); }, "Can't get dialog item 5 for attaching");

    const HWND second = makeButton(parent.window, 6);
    Probe attached;
    attached.attach(second, false);
    DestroyWindow(second); // Nothing tells the object of it.
    CHECK((!objectOf(second) && !attached.isOpen()));
}

TEST_CASE("Window: attaching to the handle that the object holds changes only the ownership")
{
    Parent parent;
    {
        Probe holder(WM_USER, parent.button);
        holder.attach(parent.button, true);
        CHECK(!objectOf(parent.button));
        holder.attach(parent.button, false);
        holder.Window::attach(parent.window, 5); // The item, however, is bound.
        CHECK(objectOf(parent.button) == &holder);
        holder.subclass(parent.button);
        holder.attach(parent.button, true);
        CHECK((holder.isSubclass() && objectOf(parent.button) == &holder));
    }
    CHECK(!IsWindow(parent.button));
}

TEST_CASE("Window: the owner of a window that another object takes over still destroys it")
{
    Probe taker;
    const bool isSubclassed = GENERATE(false, true);
    HWND handle = nullptr;
    {
        OpenWindow owner;
        handle = owner;
        isSubclassed ? taker.subclass(handle) : taker.attach(handle, false);
        owner.sendMessageA(WM_USER);
        CHECK((taker.count == 1 && objectOf(handle) == &taker));
    }
    CHECK((!IsWindow(handle) && !taker.isOpen()));
}

TEST_CASE("Window: subclassing takes the messages and gives them back")
{
    Parent parent;
    const WNDPROC before = procedureOf(parent.button);
    Probe button(BM_SETCHECK);
    button.subclass(parent.window, 5);
    button.subclass(parent.button); // A second time changes nothing.
    CHECK((button.isSubclass() && procedureOf(parent.button) == &Window::windowProc));
    button.setStyle(BS_TYPEMASK, BS_AUTOCHECKBOX);
    button.sendMessageA(BM_SETCHECK, BST_CHECKED);
    CHECK(button.count == 1);
    CHECK(button.sendMessageA(BM_GETCHECK) == BST_CHECKED); // The button's own procedure did its part.

    SECTION("by unsubclass")
    {
        button.unsubclass();
        CHECK(procedureOf(parent.button) == before);
        button.unsubclass();
    }
    SECTION("to another object, which goes on where it was")
    {
        Probe other(BM_SETCHECK);
        other.subclass(parent.button);
        CHECK((!button.isOpen() && !button.isSubclass()));
        other.sendMessageA(BM_SETCHECK, BST_UNCHECKED);
        CHECK((other.count == 1 && button.count == 1));
        CHECK(other.sendMessageA(BM_GETCHECK) == BST_UNCHECKED);
        other.unsubclass();
        CHECK(procedureOf(parent.button) == before);
    }
    SECTION("to another object, below what somebody put on top")
    {
        SetWindowLongPtrW(parent.button, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&onTop));
        Probe other(BM_SETCHECK);
        other.subclass(parent.button);
        CHECK(procedureOf(parent.button) == &onTop);
        other.sendMessageA(BM_SETCHECK, BST_UNCHECKED);
        CHECK(other.count == 1);
        DestroyWindow(parent.button);
    }
    SECTION("when another object attaches, which is all that this one is then")
    {
        Probe other(BM_GETCHECK);
        other.attach(parent.button, false);
        CHECK((!other.isSubclass() && objectOf(parent.button) == &other));
        CHECK(procedureOf(parent.button) == before);
        CHECK(other.sendMessageA(BM_GETCHECK) == BST_CHECKED);
        CHECK(other.count == 0);
    }
    SECTION("by the end of the window") { DestroyWindow(parent.button); }
    CHECK((!button.isOpen() && !button.isSubclass()));
    expectWindowsError([&] { button.subclass(parent.window, 6); }, "Can't retrieve dialogue item for subclassing");
    expectWindowsError([&] { button.subclass(HWND(0x7001)); }, "Can't set window long GWL_STYLE");
    CHECK((!button.isOpen() && !objectOf(HWND(0x7001))));
}

TEST_CASE("Window: a subclassing object may lose the procedure, or die first, without harm")
{
    Parent parent;
    const WNDPROC before = procedureOf(parent.button);
    SECTION("the procedure, to another object that puts it back, whoever owns the window")
    {
        Probe owner, other;
        owner.subclass(parent.button);
        owner.attach(parent.button, true);
        other.subclass(parent.button);
        CHECK((!owner.isSubclass() && owner.isOpen() && other.isSubclass()));
        other.unsubclass();
        CHECK(procedureOf(parent.button) == before);
    }
    SECTION("its life, leaving a window that nothing crashes")
    {
        Probe().subclass(parent.button);
        CHECK(!objectOf(parent.button));
        CHECK(SendMessageW(parent.button, WM_USER, 0, 0) == 0);
        DestroyWindow(parent.button);
    }
    CHECK(!IsWindow(parent.button));
}

TEST_CASE("Window: subclassing or attaching to an item gives up the ownership, also where nothing else changes")
{
    Parent parent;
    const bool subclasses = GENERATE(true, false);
    {
        Probe holder;
        holder.subclass(parent.button);
        holder.attach(parent.button, true);
        subclasses ? holder.subclass(parent.button) : holder.Window::attach(parent.window, 5);
        CHECK(holder.isSubclass());
    }
    CHECK(IsWindow(parent.button));
}

namespace {
/// Makes its next window when one goes, or throws.
class Successor : public Window {
public:
    Successor(UINT on, int times) : on_(on), times_(times) {}
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        const LRESULT result = Window::onMessage(msg, wParam, lParam);
        if (msg == on_ && times_-- > 0)
            open(*this);
        return result;
    }

private:
    UINT on_;
    int times_;
};

BOOL CALLBACK countWindow(HWND hwnd, LPARAM counter)
{
    *reinterpret_cast<unsigned*>(counter) += GetClassLongPtrW(hwnd, GCW_ATOM) == testClass().getAtom();
    return TRUE;
}

unsigned windowsOfThread()
{
    unsigned count = 0;
    EnumThreadWindows(GetCurrentThreadId(), countWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

struct ThrowingOnEnd : Window {
    void onDestroy() override { throw std::logic_error("handler failed"); }
};
} // namespace

TEST_CASE("Window: the next window that a handler makes at the end of one is the object's")
{
    const unsigned before = windowsOfThread();
    {
        Successor window(GENERATE(as<UINT>(), WM_DESTROY, WM_NCDESTROY), 1);
        open(window);
        SECTION("after destroy") { window.destroy(); }
        SECTION("and goes for the one that create makes") { open(window); }
        CHECK((window.isOpen() && objectOf(window) == &window));
        CHECK(windowsOfThread() == before + 1);
    }
    CHECK(windowsOfThread() == before);
    {
        Successor endless(WM_NCDESTROY, 100);
        open(endless);
        expectWindowsError([&] { open(endless); }, ERROR_BUSY, "Can't create window");
        CHECK(windowsOfThread() == before + 1);
    }
    CHECK(windowsOfThread() == before);
}

TEST_CASE("Window: a window of the system's class is not left over when a handler throws")
{
    struct Notified : Window {
        LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
        {
            if (msg == WM_PARENTNOTIFY)
                throw std::logic_error("handler failed");
            return Window::onMessage(msg, wParam, lParam);
        }
    };
    Notified parent;
    open(parent);
    Window control;
    SECTION("while it is made")
    {
        expectError<std::logic_error>(
            [&] { control.create(L"BUTTON", L"", WS_CHILD, Rect(), parent, nullptr, nullptr); }, "handler failed");
        CHECK(!GetWindow(parent, GW_CHILD));
    }
    SECTION("while it is destroyed")
    {
        control.create(L"STATIC", L"", 0, Rect(), nullptr, nullptr, nullptr);
        ThrowingOnEnd child;
        open(child, WS_CHILD, control);
        expectError<std::logic_error>([&] { control.destroy(); }, "handler failed");
    }
    SECTION("while its object dies, which drops the exception")
    {
        ThrowingOnEnd dying;
        open(dying);
    }
    CHECK(!control.isOpen());
}

TEST_CASE("Window: only the narrow create subclasses a window of a foreign class")
{
    Parent parent;
    Probe narrow(BM_GETCHECK), wide(BM_GETCHECK);
    narrow.create("BUTTON", "narrow", WS_CHILD, Rect(0, 0, 10, 10), parent.window, nullptr, nullptr);
    wide.create(L"BUTTON", L"wide", WS_CHILD, Rect(0, 0, 10, 10), parent.window, nullptr, nullptr);
    narrow.sendMessageA(BM_GETCHECK);
    wide.sendMessageA(BM_GETCHECK);
    CHECK((narrow.isSubclass() && narrow.count == 1));
    CHECK((!wide.isSubclass() && wide.count == 0));
    CHECK((objectOf(narrow) == &narrow && objectOf(wide) == &wide));
    const HWND handles[] = {narrow, wide};
    narrow.unsubclass();
    CHECK((IsWindow(handles[0]) && IsWindow(handles[1])));
    // A default size leaves the place to the system.
    wide.create(testClass(), L"", WS_OVERLAPPEDWINDOW, Rect(CW_USEDEFAULT, CW_USEDEFAULT, 0, 0), nullptr, nullptr,
                nullptr);
    CHECK((wide.getWindowSize().cx > 100 && !IsWindow(handles[1])));
}

TEST_CASE("Window::Pointer: a look-up of a foreign window makes an object that dies with the pointer")
{
    Parent parent;
    CHECK(!Window::getWindowFromHandle(nullptr, true));
    CHECK(!Window::getWindowFromHandle(parent.button, false));
    Window::Pointer<Window> found = Window::getWindowFromHandle(parent.button, true);
    CHECK((found.isOwner() && found->getWindowHandle() == parent.button && !objectOf(parent.button)));
    CHECK(!Window::getWindowFromHandle(parent.window, true).isOwner());

    bool ended = false;
    auto* const object = new Suicide(ended);
    Window::Pointer<Window> source(object, true);
    {
        const Window::Pointer<Window> copy(source);
        CHECK((copy == object && copy.isOwner() && !source && !source.isOwner()));
        found = copy; // Deletes the temporary held so far.
        CHECK((!copy && found == object));
    }
    CHECK(!ended);
    found = source;
    CHECK((ended && !found));
}

TEST_CASE("Window: a handler that destroys its window leaves the object usable")
{
    bool ended = false;
    Suicide window(ended);
    open(window);
    CHECK(window.sendMessageA(WM_USER) == 42);
    CHECK(!window.isOpen());
    open(window);
    CHECK(window.isOpen());
}

TEST_CASE("Window: a handler may delete its object, and with it the window")
{
    bool ended = false;
    const auto how = GENERATE(Suicide::deletesItself, Suicide::deletesItselfAfterDefault);
    auto* const window = new Suicide(ended, how);
    open(*window);
    const HWND handle = *window;
    // The default's result outlives the object.
    CHECK(SendMessageW(handle, WM_USER, 0, 0) == (how == Suicide::deletesItself ? 42 : 0));
    CHECK((ended && !IsWindow(handle)));
}

TEMPLATE_TEST_CASE("Window: an object may delete itself before it is made", "", char, wchar_t)
{
    const unsigned before = windowsOfThread();
    bool ended = false;
    auto* const window = new Suicide(ended, Suicide::deletesItselfOnSize);
    const TestType none[] = {0};
    expectWindowsError(
        [&] { window->create(testClass(), none, WS_POPUP | WS_VISIBLE, Rect(0, 0, 9, 9), nullptr, nullptr, nullptr); },
        "Can't create window");
    CHECK((ended && windowsOfThread() == before));
}

TEST_CASE("Window: an object may delete itself at the window's end, whoever ends it")
{
    bool ended = false;
    auto* const window = new Suicide(ended, Suicide::deletesItselfOnEnd);
    open(*window);
    const HWND handle = *window;
    SECTION("the system") { DestroyWindow(handle); }
    SECTION("destroy") { window->destroy(); }
    SECTION("the default procedure, within the handler of another message") { window->sendMessageA(WM_CLOSE); }
    SECTION("create")
    {
        expectWindowsError([&] { open(*window); }, ERROR_INVALID_WINDOW_HANDLE, "Can't create window");
    }
    CHECK((ended && !IsWindow(handle) && !objectOf(handle)));
}
