#include "Windows.h"

#include <random>

namespace {
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

/// Sends random parameters with messages that take none for a pointer, do not end the window and start no modal loop.
void sendStorm(const Window& window, int count)
{
    constexpr UINT messages[] = {WM_MOVE,        WM_SIZE,       WM_ENABLE,      WM_SETFOCUS,      WM_KILLFOCUS,
                                 WM_MBUTTONUP,   WM_SHOWWINDOW, WM_TIMER,       WM_HSCROLL,       WM_VSCROLL,
                                 WM_KEYUP,       WM_CHAR,       WM_MOUSEMOVE,   WM_LBUTTONDOWN,   WM_LBUTTONUP,
                                 WM_MBUTTONDOWN, WM_MOUSEWHEEL, WM_MOUSEHWHEEL, WM_ENTERSIZEMOVE, WM_USER};
    std::mt19937 random(20030416);
    for (int i = 0; i < count; ++i) {
        const UINT msg = messages[random() % std::size(messages)];
        window.sendMessageA(msg, random(), msg == WM_TIMER ? 0 : static_cast<LPARAM>(random()));
    }
}
} // namespace

TEST_CASE("Window: ten thousand windows come and go without leaving anything")
{
    OpenWindow first; // What the system makes once is made now.
    const unsigned user = userObjects(), drawing = drawingObjects();
    for (int round = 0; round < 10; ++round) {
        std::vector<std::unique_ptr<Window>> windows;
        for (int i = 0; i < 1000; ++i)
            windows.push_back(std::make_unique<OpenWindow>(WS_CHILD, first));
        CHECK(Window::getWindowFromHandle(*windows[500], false) == windows[500].get());
    }
    CHECK(userObjects() == user);
    CHECK(drawingObjects() == drawing);
    CHECK(GetWindow(first, GW_CHILD) == nullptr);
}

TEST_CASE("Window: a storm of random messages does no harm")
{
    Target window;
    open(window);
    sendStorm(window, 10000); // What the system makes once is made now.
    const unsigned user = userObjects(), drawing = drawingObjects();
    window.messages = 0;
    constexpr int count = 100000;
    sendStorm(window, count);
    CHECK(window.messages >= count);
    CHECK(window.inRange);
    REQUIRE(window.isOpen());
    CHECK(window.getTextW() == L"test");
    CHECK(userObjects() <= user);
    CHECK(drawingObjects() <= drawing);
}
