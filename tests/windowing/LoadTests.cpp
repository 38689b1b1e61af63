#include "Storm.h"
#include "Windows.h"

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
    sendStorm(window, 100000); // What the system makes once is made now.
    const unsigned user = userObjects(), drawing = drawingObjects();
    window.messages = 0;
    constexpr int count = 1000000;
    sendStorm(window, count);
    CHECK(window.messages >= count);
    CHECK(window.inRange);
    REQUIRE(window.isOpen());
    CHECK(window.getTextW() == L"test");
    CHECK(userObjects() <= user);
    CHECK(drawingObjects() <= drawing);
}
