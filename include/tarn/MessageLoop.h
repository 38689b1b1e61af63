#pragma once

#include <tarn/Window.h>

namespace tarn {
/// Handles the calling thread's messages until `PostQuitMessage`, and returns the exit code given there.
/// What a handler throws comes out of it; it may be called again to go on.
inline int runMessageLoop()
{
    MSG msg{};
    while (Window::getThreadMessage(msg)) {
        TranslateMessage(&msg);
        Window::dispatchMessage(msg);
    }
    return static_cast<int>(msg.wParam);
}
} // namespace tarn
