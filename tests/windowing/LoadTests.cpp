#include "Counts.h"
#include "Windows.h"

#include <memory>
#include <random>
#include <vector>

using namespace tarn;

namespace {
bool carriesPointer(UINT msg)
{
    // Edit controls, combo and list boxes: the system converts their texts whatever the window is. And DDE.
    const bool isOfControl = (0xB0 <= msg && msg <= 0xDF) || (0x140 <= msg && msg <= 0x1BF);
    if (isOfControl || (0x3E0 <= msg && msg <= 0x3EF))
        return true;
    switch (msg) {
    case WM_CREATE:
    case WM_NCCREATE:
    case WM_SETTEXT:
    case WM_GETTEXT:
    case WM_GETMINMAXINFO:
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_DELETEITEM:
    case WM_COMPAREITEM:
    case WM_WINDOWPOSCHANGING:
    case WM_WINDOWPOSCHANGED:
    case WM_COPYDATA:
    case WM_NOTIFY:
    case WM_HELP:
    case WM_STYLECHANGING:
    case WM_STYLECHANGED:
    case WM_NCCALCSIZE:
    case WM_SIZING:
    case WM_MOVING:
    case WM_MDICREATE:
    case WM_DROPFILES:
    case WM_NEXTMENU:
    case WM_GETDLGCODE:
    case WM_ASKCBFORMATNAME:
    case WM_INPUT:
    case WM_DEVICECHANGE:
    case WM_WININICHANGE:
    case WM_DEVMODECHANGE:
    case WM_GETTITLEBARINFOEX:
    case WM_GESTURE:
    case WM_MENUGETOBJECT:
        return true;
    // These end the window or start a modal loop.
    case WM_DESTROY:
    case WM_NCDESTROY:
    case WM_CLOSE:
    case WM_SYSCOMMAND:
    case WM_QUERYENDSESSION:
    case WM_ENDSESSION:
    case WM_NCLBUTTONDOWN:
    case WM_NCRBUTTONDOWN:
    case WM_NCRBUTTONUP:
    case WM_NCLBUTTONDBLCLK:
    case WM_CONTEXTMENU:
    case 0x313: // The system menu.
    case WM_RBUTTONUP:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
    case WM_SYSCHAR:
    case WM_QUIT:
    case WM_ENTERMENULOOP:
        return true;
    default:
        return false;
    }
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
        if (carriesPointer(msg))
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
    Window first;
    support::open(first); // What the system makes once is made now.
    const unsigned user = support::userObjects(), drawing = support::drawingObjects();
    for (int round = 0; round < 10; ++round) {
        std::vector<std::unique_ptr<Window>> windows;
        for (int i = 0; i < 1000; ++i) {
            windows.push_back(std::make_unique<Window>());
            support::open(*windows.back(), WS_CHILD, first);
        }
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
