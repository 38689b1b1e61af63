#include "../windowing/Windows.h"

#include <tarn/AutoRedraw.h>

namespace {
struct Listener : Window {
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == WM_SETREDRAW)
            heard += wParam ? "on " : "off ";
        return Window::onMessage(msg, wParam, lParam);
    }
    std::string heard;
};
} // namespace

TEST_CASE("AutoRedraw: a window is redrawn once, after the last of its guards")
{
    Listener window;
    open(window, WS_POPUP | WS_VISIBLE);
    window.update();
    {
        const AutoRedraw outer(window);
        CHECK(window.heard == "off ");
        const AutoRedraw inner(window);
        InvalidateRect(window, nullptr, FALSE);
        CHECK_FALSE(GetUpdateRect(window, nullptr, FALSE));
    }
    CHECK((window.heard == "off on " && GetUpdateRect(window, nullptr, FALSE)));
    window.hide();
    window.heard.clear();
    {
        const AutoRedraw hidden(window);
        const AutoRedraw none(nullptr);
    }
    CHECK((window.heard.empty() && !IsWindowVisible(window)));
    window.show(SW_SHOW);
    const AutoRedraw dying(window);
    CHECK(window.heard == "off ");
    window.destroy();
}
