#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"
#include "MessageQueue.h"

// Sending, posting and the message loop.

namespace tarn {
// Waits without taking, so that a handler of a sent message that throws meanwhile finds the queue, and leaves
// it, as it was.
bool Window::WindowInternals::getMessage(MSG& msg, HWND hwnd, UINT min, UINT max)
{
    constexpr const char* failed = "Error in GetMessage";
    const HWND threadMessages = reinterpret_cast<HWND>(-1);
    while (!takeMessage(msg, hwnd, min, max)) {
        if (hwnd && hwnd != threadMessages && !IsWindow(hwnd))
            throwWindowsError(ERROR_INVALID_WINDOW_HANDLE, failed);
        ensure(WaitMessage(), failed);
    }
    return msg.message != WM_QUIT;
}

bool Window::getMessage(MSG& msg, UINT min, UINT max) const
{
    return WindowInternals::getMessage(msg, hwnd_, min, max);
}
bool Window::getThreadMessage(MSG& msg, UINT min, UINT max)
{
    return WindowInternals::getMessage(msg, nullptr, min, max);
}

LRESULT Window::dispatchMessage(const MSG& msg)
{
    return runningSystemLoops([&] { return DispatchMessageW(&msg); });
}

LRESULT Window::sendMessageA(UINT msg, WPARAM wParam, LPARAM lParam) const
{
    return runningSystemLoops([&] { return SendMessageA(hwnd_, msg, wParam, lParam); });
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
