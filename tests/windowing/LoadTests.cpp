#include "Counts.h"
#include "Windows.h"

#include <memory>
#include <random>
#include <set>
#include <vector>

using namespace tarn;

namespace {
/// Whether the default procedure takes a parameter for a pointer, ends the window or starts a modal loop.
bool isUnfit(UINT msg)
{
    // Edit controls, combo and list boxes: the system converts their texts whatever the window is. And DDE.
    const bool isOfControl = (0xB0 <= msg && msg <= 0xDF) || (0x140 <= msg && msg <= 0x1BF);
    if (isOfControl || (0x3E0 <= msg && msg <= 0x3EF))
        return true;
    static const std::set<UINT> unfit = {
        WM_CREATE, WM_NCCREATE, WM_SETTEXT, WM_GETTEXT, WM_GETMINMAXINFO, WM_DRAWITEM, WM_MEASUREITEM, WM_DELETEITEM,
        WM_COMPAREITEM, WM_WINDOWPOSCHANGING, WM_WINDOWPOSCHANGED, WM_COPYDATA, WM_NOTIFY, WM_HELP, WM_STYLECHANGING,
        WM_STYLECHANGED, WM_NCCALCSIZE, WM_SIZING, WM_MOVING, WM_MDICREATE, WM_DROPFILES, WM_NEXTMENU, WM_GETDLGCODE,
        WM_ASKCBFORMATNAME, WM_INPUT, WM_DEVICECHANGE, WM_WININICHANGE, WM_DEVMODECHANGE, WM_GETTITLEBARINFOEX,
        WM_GESTURE, WM_MENUGETOBJECT, WM_DPICHANGED,
        // These end the window or start a modal loop.
        WM_DESTROY, WM_NCDESTROY, WM_CLOSE, WM_SYSCOMMAND, WM_QUERYENDSESSION, WM_ENDSESSION, WM_NCLBUTTONDOWN,
        WM_NCRBUTTONDOWN, WM_NCRBUTTONUP, WM_NCLBUTTONDBLCLK, WM_CONTEXTMENU, 0x313 /* the system menu */, WM_RBUTTONUP,
        WM_SYSKEYDOWN, WM_SYSKEYUP, WM_SYSCHAR, WM_QUIT, WM_ENTERMENULOOP};
    return unfit.contains(msg);
}

/// Counts the handlers that its messages reach and leaves everything to the defaults.
class Target : public Window {
public:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        ++messages;
        return Window::onMessage(msg, wParam, lParam);
    }
    void onMouseMove(unsigned short, const Point& at) override { inRange &= -32768 <= at.x && at.y <= 32767; }
    void onMove(const Point& at) override { inRange &= 0 <= at.x && at.y <= 65535; }

    int messages = 0;
    bool inRange = true;
};

void sendStorm(Target& window, int count)
{
    static std::mt19937 random(20030416);
    int sent = 0;
    while (sent < count) {
        // Mostly messages with names, now and then any number.
        const UINT msg = random() % 4 ? random() % 0x400 : random() % 0x10000;
        const WPARAM wParam = random();
        // What is taken for the handle of a control is no window, or null.
        const LPARAM lParam = static_cast<LPARAM>(random());
        if (isUnfit(msg))
            continue;
        ++sent;
        if (msg == WM_MOUSEMOVE || msg == WM_MOVE || msg == WM_TIMER || msg == WM_COMMAND || msg >= WM_USER)
            SendMessageW(window, msg, wParam, lParam);
        else
            window.sendMessageA(msg, wParam, lParam);
    }
}
} // namespace

TEST_CASE("Window: ten thousand windows come and go without leaving anything", "[window][load]")
{
    support::OpenWindow first; // What the system makes once is made now.
    const unsigned user = support::userObjects(), drawing = support::drawingObjects();
    for (int round = 0; round < 10; ++round) {
        std::vector<std::unique_ptr<Window>> windows;
        for (int i = 0; i < 1000; ++i)
            windows.push_back(std::make_unique<support::OpenWindow>(WS_CHILD, first));
        CHECK(Window::getWindowFromHandle(*windows[500], false) == windows[500].get());
    }
    CHECK(support::userObjects() == user);
    CHECK(support::drawingObjects() == drawing);
    CHECK(GetWindow(first, GW_CHILD) == nullptr);
}

TEST_CASE("Window: a storm of random messages does no harm", "[window][load]")
{
    Target window;
    support::open(window);
    sendStorm(window, 100000); // What the system makes once is made now.
    const unsigned user = support::userObjects(), drawing = support::drawingObjects();
    window.messages = 0;
    constexpr int count = 1000000;
    sendStorm(window, count);
    CHECK(window.messages >= count);
    CHECK(window.inRange);
    REQUIRE(window.isOpen());
    CHECK(window.getTextW() == L"test");
    CHECK(support::userObjects() <= user);
    CHECK(support::drawingObjects() <= drawing);
}
