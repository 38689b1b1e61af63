#include "Windows.h"

#include <Expect.h>

#include <stdexcept>

using namespace tarn;

namespace {
constexpr UINT fail = WM_USER + 1;

/// Throws for one message, once or twice removed.
class Thrower : public Window {
public:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == throwFor)
            throw std::logic_error("handler failed");
        if (msg == WM_USER + 2)
            return sendMessageA(fail);
        return Window::onMessage(msg, wParam, lParam);
    }

    UINT throwFor = fail;
};
} // namespace

TEST_CASE("Window: an exception of a handler reaches the call that sent the message", "[window][exceptions]")
{
    Thrower window;
    support::open(window);
    support::expectError<std::logic_error>([&] { window.sendMessageA(fail); }, "handler failed");
    support::expectError<std::logic_error>([&] { window.sendMessageA(WM_USER + 2); }, "handler failed");
    window.postMessageW(fail);
    MSG msg;
    REQUIRE(window.getMessage(msg, fail, fail));
    support::expectError<std::logic_error>([&] { Window::dispatchMessage(msg); }, "handler failed");
    CHECK(window.sendMessageA(WM_GETTEXTLENGTH) == 4);
}

TEST_CASE("Window: create throws what a handler of the creation messages throws", "[window][exceptions]")
{
    const UINT msg = GENERATE(as<UINT>(), WM_NCCREATE, WM_CREATE, WM_SIZE);
    CAPTURE(msg);
    Thrower window;
    window.throwFor = msg;
    support::expectError<std::logic_error>([&] { support::open(window, WS_OVERLAPPEDWINDOW | WS_VISIBLE); },
                                           "handler failed");
    CHECK(!window.isOpen());
    window.throwFor = 0;
    support::open(window);
    CHECK(window.isOpen());
}
