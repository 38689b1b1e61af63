#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"

// Visibility, place, size, styles and painting.

namespace tarn {
bool Window::show(unsigned int command) const
{
    return runningHandlers([&] { return ShowWindow(hwnd_, static_cast<int>(command)); }) != FALSE;
}
bool Window::hide() const { return show(SW_HIDE); }
bool Window::isIconic() const { return IsIconic(hwnd_) != FALSE; }
bool Window::isUnicode() const { return IsWindowUnicode(hwnd_) != FALSE; }

namespace {
bool enableWindow(HWND hwnd, bool enabled)
{
    return ensureCleared([&] { return runningHandlers([&] { return EnableWindow(hwnd, enabled); }); },
                         "Can't enable window") != FALSE;
}
} // namespace

bool Window::enable(bool enabled) const { return enableWindow(hwnd_, enabled); }
bool Window::enable(unsigned short id, bool enabled) const { return enableWindow(GetDlgItem(hwnd_, id), enabled); }

void Window::move(int x, int y, int width, int height, bool repaint) const
{
    ensure(runningHandlers([&] { return MoveWindow(hwnd_, x, y, width, height, repaint); }), "Can't move window");
}
void Window::move(const RECT& rect, bool repaint) const
{
    move(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, repaint);
}

Rect Window::getClientRectangle() const
{
    Rect rect;
    ensure(GetClientRect(hwnd_, &rect), "Can't get client rectangle");
    return rect;
}
Size Window::getClientSize() const { return getClientRectangle().getSize(); }
Point Window::getClientPosition() const { return getClientRectangle().getPosition(); }

Rect Window::getWindowRectangle() const
{
    Rect rect;
    ensure(GetWindowRect(hwnd_, &rect), "Can't get window rectangle");
    return rect;
}
Size Window::getWindowSize() const { return getWindowRectangle().getSize(); }
Point Window::getWindowPosition() const { return getWindowRectangle().getPosition(); }

void Window::setPosition(HWND after, int x, int y, int width, int height, unsigned flags) const
{
    ensure(runningHandlers([&] { return SetWindowPos(hwnd_, after, x, y, width, height, flags); }),
           "Error in SetWindowPos");
}
void Window::setPosition(HWND after, const POINT& position, const SIZE& size, unsigned flags) const
{
    setPosition(after, position.x, position.y, size.cx, size.cy, flags);
}
void Window::setPosition(HWND after, const RECT& rect, unsigned flags) const
{
    setPosition(after, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, flags);
}
void Window::setPosition(HWND after, unsigned flags) const
{
    setPosition(after, 0, 0, 0, 0, flags | SWP_NOMOVE | SWP_NOSIZE);
}
void Window::setPosition(const POINT& position, unsigned flags) const { setPosition(position.x, position.y, flags); }
void Window::setPosition(const RECT& rect, unsigned flags) const { setPosition(nullptr, rect, flags | SWP_NOZORDER); }
void Window::setPosition(int x, int y, unsigned flags) const
{
    setPosition(nullptr, x, y, 0, 0, flags | SWP_NOSIZE | SWP_NOZORDER);
}
void Window::setSize(const SIZE& size, unsigned flags) const { setSize(size.cx, size.cy, flags); }
void Window::setSize(int width, int height, unsigned flags) const
{
    setPosition(nullptr, 0, 0, width, height, flags | SWP_NOMOVE | SWP_NOZORDER);
}

Point Window::toScreen(const POINT& point) const
{
    Point mapped(point);
    ensure(ClientToScreen(hwnd_, &mapped), "Can't map point from client to screen");
    return mapped;
}
Point Window::fromScreen(const POINT& point) const
{
    Point mapped(point);
    ensure(ScreenToClient(hwnd_, &mapped), "Can't map point from screen to client");
    return mapped;
}

namespace {
// The text is the same for all indices and for both directions: programs match it.
constexpr const char* windowLongFailed = "Can't set window long GWL_STYLE";
} // namespace

LONG_PTR Window::getWindowLong(int index) const
{
    return ensureCleared([&] { return GetWindowLongPtrW(hwnd_, index); }, windowLongFailed);
}
LONG_PTR Window::setWindowLong(int index, LONG_PTR value) const
{
    return ensureCleared([&] { return runningHandlers([&] { return SetWindowLongPtrW(hwnd_, index, value); }); },
                         windowLongFailed);
}

unsigned long Window::getStyle() const { return static_cast<unsigned long>(getWindowLong(GWL_STYLE)); }
unsigned long Window::setStyle(unsigned long style) const
{
    return static_cast<unsigned long>(setWindowLong(GWL_STYLE, static_cast<LONG_PTR>(style)));
}
unsigned long Window::setStyle(unsigned long remove, unsigned long add) const
{
    return setStyle((getStyle() & ~remove) | add);
}
unsigned long Window::getExtendedStyle() const { return static_cast<unsigned long>(getWindowLong(GWL_EXSTYLE)); }
unsigned long Window::setExtendedStyle(unsigned long style) const
{
    return static_cast<unsigned long>(setWindowLong(GWL_EXSTYLE, static_cast<LONG_PTR>(style)));
}
unsigned long Window::setExtendedStyle(unsigned long remove, unsigned long add) const
{
    return setExtendedStyle((getExtendedStyle() & ~remove) | add);
}

void Window::invalidate(bool erase) const
{
    ensure(runningHandlers([&] { return InvalidateRect(hwnd_, nullptr, erase); }), "Can't invalidate window");
}
void Window::invalidate(const RECT& rect, bool erase) const
{
    ensure(runningHandlers([&] { return InvalidateRect(hwnd_, &rect, erase); }), "Can't invalidate window rectangle");
}
void Window::update() const
{
    ensure(runningHandlers([&] { return UpdateWindow(hwnd_); }), "Can't update the window");
}

void Window::scroll(int dx, int dy, const RECT* scrolled, const RECT* clip) const
{
    ensure(runningHandlers([&] { return ScrollWindow(hwnd_, dx, dy, scrolled, clip); }), "Can't scroll window");
}
void Window::scroll(const POINT& distance, const RECT* scrolled, const RECT* clip) const
{
    scroll(distance.x, distance.y, scrolled, clip);
}
void Window::scroll(const SIZE& distance, const RECT* scrolled, const RECT* clip) const
{
    scroll(distance.cx, distance.cy, scrolled, clip);
}
} // namespace tarn
