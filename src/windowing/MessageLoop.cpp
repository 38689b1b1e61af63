#include <tarn/MessageLoop.h>

#include "HandlerScope.h"

namespace tarn {
bool handleDialogMessage(HWND dialog, MSG& msg)
{
    return dialog && runningSystemLoops([&] { return IsDialogMessageW(dialog, &msg); });
}

bool handleAccelerator(HWND window, HACCEL accelerators, MSG& msg)
{
    return runningSystemLoops([&] { return TranslateAcceleratorW(window, accelerators, &msg); }) != 0;
}

namespace {
bool isIn(HWND window, HWND hwnd) { return window == hwnd || IsChild(window, hwnd); }

bool isDialog(HWND hwnd)
{
    constexpr ATOM dialogClass = 32770;
    return GetClassLongW(hwnd, GCW_ATOM) == dialogClass;
}

// The outermost one, which knows of the dialogs within it.
HWND dialogOf(HWND hwnd)
{
    HWND dialog = nullptr;
    for (; hwnd; hwnd = GetWindowLongPtrW(hwnd, GWL_STYLE) & WS_CHILD ? GetParent(hwnd) : nullptr) {
        if (isDialog(hwnd))
            dialog = hwnd;
    }
    return dialog;
}

bool isMessageWaiting()
{
    MSG msg;
    return runningHandlers([&] { return PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE); }) != FALSE;
}
} // namespace

int MessageLoop::run()
{
    for (MSG msg{};;) {
        while (!isMessageWaiting() && onIdle()) {
        }
        if (!Window::getThreadMessage(msg))
            return static_cast<int>(msg.wParam);
        if (onMessage(msg))
            continue;
        TranslateMessage(&msg);
        Window::dispatchMessage(msg);
    }
}

bool MessageLoop::onMessage(MSG& msg)
{
    if (msg.message < WM_KEYFIRST || msg.message > WM_KEYLAST)
        return false;
    for (const auto& [window, table] : accelerators_) {
        if (isIn(window, msg.hwnd) && handleAccelerator(window, table, msg))
            return true;
    }
    for (const HWND window : dialogs_) {
        if (isIn(window, msg.hwnd))
            return handleDialogMessage(window, msg);
    }
    return handleDialogMessage(dialogOf(msg.hwnd), msg);
}

bool MessageLoop::onIdle() { return false; }
} // namespace tarn
