#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"

// Sending, posting and the message loop.

namespace tarn {
namespace {
// The loop's wait cannot throw before a message ends it, so a handler that threw meanwhile (for a message
// sent from another thread) puts one into the queue that the filter lets pass.
class WaitWaker {
public:
    WaitWaker(HWND hwnd, UINT min) : hwnd_(hwnd), msg_(min) {}

    void operator()() const noexcept { PostMessageW(hwnd_, msg_, 0, cookie()); }

    bool isOwn(const MSG& msg) const { return msg.message == msg_ && msg.lParam == cookie(); }

    // What else came is put back, because the caller gets an exception instead of it.
    void putBack(const MSG& msg) const
    {
        MSG own;
        PeekMessageW(&own, hwnd_, msg_, msg_, PM_REMOVE);
        if (msg.message == WM_QUIT)
            PostQuitMessage(static_cast<int>(msg.wParam));
        else if (msg.message != WM_PAINT && msg.message != WM_TIMER) // These come again by themselves.
            PostMessageW(msg.hwnd, msg.message, msg.wParam, msg.lParam);
    }

private:
    static LPARAM cookie()
    {
        static const char unique = 0;
        return reinterpret_cast<LPARAM>(&unique);
    }

    HWND hwnd_;
    UINT msg_;
};
} // namespace

bool Window::getMessage(MSG& msg, HWND hwnd, UINT min, UINT max)
{
    const WaitWaker waker(hwnd, min);
    LoopScope scope(waker);
    const BOOL result = GetMessageW(&msg, hwnd, min, max);
    if (scope.hasKept() && result != -1 && !waker.isOwn(msg))
        waker.putBack(msg);
    scope.rethrow();
    ensureNot(-1, result, "Error in GetMessage");
    return result != 0;
}

bool Window::getMessage(MSG& msg, UINT min, UINT max) const { return getMessage(msg, hwnd_, min, max); }
bool Window::getThreadMessage(MSG& msg, UINT min, UINT max) { return getMessage(msg, nullptr, min, max); }

LRESULT Window::dispatchMessage(const MSG& msg)
{
    return runningLoop([&] { return DispatchMessageW(&msg); }, endSystemLoops);
}

LRESULT Window::sendMessageA(UINT msg, WPARAM wParam, LPARAM lParam) const
{
    return runningLoop([&] { return SendMessageA(hwnd_, msg, wParam, lParam); }, endSystemLoops);
}
LRESULT Window::sendMessageT(UINT msg, WPARAM wParam, LPARAM lParam) const { return sendMessageA(msg, wParam, lParam); }
LRESULT Window::sendMessageW(UINT msg, WPARAM wParam, LPARAM lParam) const { return sendMessageA(msg, wParam, lParam); }

bool Window::postMessageA(UINT msg, WPARAM wParam, LPARAM lParam) const
{
    return PostMessageA(hwnd_, msg, wParam, lParam) != FALSE;
}
bool Window::postMessageT(UINT msg, WPARAM wParam, LPARAM lParam) const { return postMessageA(msg, wParam, lParam); }
bool Window::postMessageW(UINT msg, WPARAM wParam, LPARAM lParam) const
{
    return PostMessageW(hwnd_, msg, wParam, lParam) != FALSE;
}
} // namespace tarn
