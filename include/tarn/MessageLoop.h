#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>
#include <tarn/Windows.h>

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

/// What the system's `IsDialogMessage` does: Tab, the arrow keys, Enter, Escape and the letters of labels
/// work in the dialog, or in any other window with controls, and its messages are dispatched. False for a
/// message of another window, or when `dialog` is null. What a handler throws comes out of it, while it
/// would end the program if no library call were waiting for the system's own function. A loop with
/// modeless dialogs or accelerators is:
///
///     while (tarn::Window::getThreadMessage(msg)) {
///         if (tarn::handleAccelerator(window, accelerators, msg) || tarn::handleDialogMessage(dialog, msg))
///             continue; // Handled: neither translated nor dispatched any more.
///         TranslateMessage(&msg);
///         tarn::Window::dispatchMessage(msg);
///     }
TARN_API bool handleDialogMessage(HWND dialog, MSG& msg);

/// What the system's `TranslateAccelerator` does: a key of the table becomes a `WM_COMMAND` or
/// `WM_SYSCOMMAND` of the window. False for any other message. What a handler throws comes out of it.
TARN_API bool handleAccelerator(HWND window, HACCEL accelerators, MSG& msg);
} // namespace tarn
