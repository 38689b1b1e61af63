#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"
#include "SystemDialogs.h"
#include "WindowApi.h"

#include <shellapi.h>

#include <string>

// Parent, focus, mouse, timers, icons, message boxes and menus.

namespace tarn {
Window::Pointer<Window> Window::getParent() const
{
    return getWindowFromHandle(ensureCleared([&] { return GetParent(hwnd_); }, "Can't retrieve parent window"), true);
}

Window::Pointer<Window> Window::setFocus() const
{
    return getWindowFromHandle(
        ensureCleared([&] { return runningHandlers([&] { return SetFocus(hwnd_); }); }, "Can't set focus"), true);
}

Window::Pointer<Window> Window::captureMouse() const
{
    return getWindowFromHandle(runningHandlers([&] { return SetCapture(hwnd_); }), true);
}
void Window::releaseMouse()
{
    ensure(runningHandlers([] { return ReleaseCapture(); }), "Can't release mouse capture");
}
Window::Pointer<Window> Window::getMouseOwner() { return getWindowFromHandle(GetCapture(), true); }

void Window::acceptDraggedFiles(bool accept) const
{
    runningHandlers([&] { DragAcceptFiles(hwnd_, accept); });
}

void Window::startTimer(UINT_PTR id, unsigned int intervalMs) const
{
    ensure(SetTimer(hwnd_, id, intervalMs, nullptr), [&] {
        return "Can't create timer with id " + std::to_string(id) + " and interval " + std::to_string(intervalMs);
    });
    timers_.erase(id);
}
void Window::startTimer(UINT_PTR id, unsigned int intervalMs, std::function<void()> f)
{
    auto function = std::make_shared<std::function<void()>>(std::move(f));
    startTimer(id, intervalMs);
    timers_[id] = std::move(function);
}
bool Window::WindowInternals::runTimerFunction(Window& window, UINT_PTR id)
{
    const auto found = window.timers_.find(id);
    if (found == window.timers_.end())
        return false;
    const auto function = found->second;
    (*function)();
    return true;
}
void Window::stopTimer(UINT_PTR id) const
{
    ensure(KillTimer(hwnd_, id), [&] { return "Can't stop timer with id " + std::to_string(id); });
    timers_.erase(id);
}

void Window::trackMouseLeave() const
{
    TRACKMOUSEEVENT event{sizeof event, TME_LEAVE, hwnd_, 0};
    ensure(TrackMouseEvent(&event), "Can't track the mouse");
}

void Window::setFont(HFONT font, bool redraw) const
{
    sendMessageA(WM_SETFONT, reinterpret_cast<WPARAM>(font), redraw);
}
HFONT Window::getFont() const { return reinterpret_cast<HFONT>(sendMessageA(WM_GETFONT)); }

HICON Window::setIcon(HICON icon, bool big) const
{
    return reinterpret_cast<HICON>(
        sendMessageA(WM_SETICON, big ? ICON_BIG : ICON_SMALL, reinterpret_cast<LPARAM>(icon)));
}
HICON Window::getIcon(icon_size size) const
{
    return reinterpret_cast<HICON>(sendMessageA(WM_GETICON, size == big_icon ? ICON_BIG : ICON_SMALL));
}

namespace {
template <class Ch> int showMessageBox(HWND owner, const Ch* text, const Ch* caption, unsigned type)
{
    const SystemDialogs dialogs;
    return ensure(
        runningLoop([&] { return messageBox(owner, text, caption, type); }, [&]() noexcept { dialogs.cancel(); }),
        "Can't show message box");
}
} // namespace

int Window::messageBox(HWND owner, const char* text, const char* caption, unsigned type)
{
    return showMessageBox(owner, text, caption, type);
}
int Window::messageBox(HWND owner, const wchar_t* text, const wchar_t* caption, unsigned type)
{
    return showMessageBox(owner, text, caption, type);
}
int Window::messageBox(const char* text, const char* caption, unsigned type) const
{
    return messageBox(hwnd_, text, caption, type);
}
int Window::messageBox(const wchar_t* text, const wchar_t* caption, unsigned type) const
{
    return messageBox(hwnd_, text, caption, type);
}

void Window::drawMenuBar() const
{
    ensure(runningHandlers([&] { return DrawMenuBar(hwnd_); }), "Error drawing the menu bar");
}

int Window::trackPopupMenu(HMENU menu, int x, int y, unsigned flags) const
{
    const auto track = [&] {
        return runningSystemLoops([&] { return TrackPopupMenu(menu, flags, x, y, 0, hwnd_, nullptr); });
    };
    constexpr const char* failed = "Error tracking popup menu";
    // With this flag 0 also says that nothing was chosen.
    return flags & TPM_RETURNCMD ? ensureCleared(track, failed) : ensure(track(), failed);
}
int Window::trackPopupMenu(HMENU menu, const POINT& position, unsigned flags) const
{
    return trackPopupMenu(menu, position.x, position.y, flags);
}

void insertMenu(HMENU menu, unsigned position, unsigned flags, UINT_PTR id, const char* text)
{
    ensure(InsertMenuA(menu, position, flags, id, text), "Can't insert menu item");
}

void setMenuItemBitmaps(HMENU menu, unsigned position, unsigned flags, HBITMAP unchecked, HBITMAP checked)
{
    ensure(SetMenuItemBitmaps(menu, position, flags, unchecked, checked), "Can't set menu bitmaps");
}
} // namespace tarn
