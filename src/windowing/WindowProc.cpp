#include <tarn/Window.h>

#include "HandlerScope.h"
#include "WindowWatch.h"

// From the system to Window::onMessage and back: the shared window procedure, the message stack and the
// default procedure.

namespace tarn {
namespace {
// A rectangle or structure that the handler filled in counts only when the answer says so.
bool isAnsweredWithTrue(UINT msg)
{
    switch (msg) {
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_DELETEITEM:
    case WM_SIZING:
    case WM_MOVING:
        return true;
    default:
        return false;
    }
}
} // namespace

LRESULT CALLBACK Window::windowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    const LRESULT failed = msg == WM_CREATE ? -1 : 0;
    return guardedCallback(failed, {nullptr, hwnd, msg},
                           [&] { return WindowInternals::route(hwnd, msg, wParam, lParam); });
}

LRESULT Window::WindowInternals::route(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    Window* const window = msg == WM_NCCREATE || msg == WM_CREATE ? bindCreated(hwnd, lParam) : find(hwnd);
    if (!window)
        return DefWindowProcW(hwnd, msg, wParam, lParam);
    return window->processMessage(msg, wParam, lParam).value;
}

Window* Window::WindowInternals::bindCreated(HWND hwnd, LPARAM lParam)
{
    const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto* const window = creation ? static_cast<Window*>(creation->lpCreateParams) : nullptr;
    if (!window)
        return nullptr;
    if (window->hwnd_ != hwnd || !isBound(*window)) {
        bind(*window, hwnd);
        window->owns_ = window->listens_ = true;
    }
    return window;
}

Window::message_result Window::processMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (WindowInternals::runTask(hwnd_, msg, wParam))
        return {0, true};
    const WindowInternals::ActiveMessage message(*this, msg, wParam, lParam);
    LRESULT value = onMessage(msg, wParam, lParam);
    if (!message.record()->handled)
        return {message.record()->result, false};
    if (isAnsweredWithTrue(msg))
        value = TRUE;
    return {value, true};
}

void Window::defaultWindowProc()
{
    auto* const message = WindowInternals::Watch::ofMessage(watch_);
    if (!message)
        return;
    const WindowInternals::MessageRecord asked = *message->record();
    SetLastError(message->error());
    // The default procedure may destroy the window and thereby end this object.
    const LRESULT result = defaultWindowProc(asked.msg, asked.wParam, asked.lParam);
    message->setError(GetLastError());
    message->record()->result = result;
    message->record()->handled = false;
}

LRESULT Window::defaultWindowProc(UINT msg, WPARAM wParam, LPARAM lParam) const
{
    const WNDPROC previous = previousProc_;
    const HWND hwnd = hwnd_;
    return runningSystemLoops([=] {
        return previous ? CallWindowProcW(previous, hwnd, msg, wParam, lParam)
                        : DefWindowProcW(hwnd, msg, wParam, lParam);
    });
}

void Window::markLastMessageUnhandled()
{
    if (auto* const record = WindowInternals::Watch::currentRecord(watch_))
        record->handled = false;
}
} // namespace tarn
