#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"

namespace tarn {
namespace {
bool readScrollInfo(HWND hwnd, int bar, SCROLLINFO& info)
{
    return ensureCleared([&] { return runningHandlers([&] { return GetScrollInfo(hwnd, bar, &info); }); },
                         "Can't get scroll info") != FALSE;
}
} // namespace

void Window::enableScrollBar(unsigned bar, unsigned arrows) const
{
    ensureCleared([&] { return runningHandlers([&] { return EnableScrollBar(hwnd_, bar, arrows); }); },
                  "Can't change scrollbar arrow state");
}

void Window::getScrollInfo(int bar, SCROLLINFO& info) const { readScrollInfo(hwnd_, bar, info); }
SCROLLINFO Window::getScrollInfo(int bar, unsigned mask) const
{
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = mask;
    readScrollInfo(hwnd_, bar, info);
    return info;
}
int Window::setScrollInfo(int bar, const SCROLLINFO& info, bool redraw) const
{
    return runningHandlers([&] { return SetScrollInfo(hwnd_, bar, &info, redraw); });
}

void Window::showScrollBar(scroll_bar_type bar, bool visible) const
{
    ensure(runningHandlers([&] { return ShowScrollBar(hwnd_, bar, visible); }), "Can't show/hide scrollbar");
}

// 0 is a position like any other.
int Window::setScrollPosition(scroll_bar_type bar, int position, bool redraw) const
{
    return ensureCleared([&] { return runningHandlers([&] { return SetScrollPos(hwnd_, bar, position, redraw); }); },
                         "Can't set scroll position");
}
int Window::getScrollPosition(scroll_bar_type bar) const
{
    return ensureCleared([&] { return runningHandlers([&] { return GetScrollPos(hwnd_, bar); }); },
                         "Can't get scroll position");
}

void Window::setScrollRange(scroll_bar_type bar, int min, int max, bool redraw) const
{
    ensure(runningHandlers([&] { return SetScrollRange(hwnd_, bar, min, max, redraw); }), "Can't set scroll range");
}

unsigned Window::getScrollPageSize(scroll_bar_type bar) const { return getScrollInfo(bar, SIF_PAGE).nPage; }

bool Window::hasScrollBar(scroll_bar_type bar) const
{
    switch (bar) {
    case horizontal:
        return (getStyle() & WS_HSCROLL) != 0;
    case vertical:
        return (getStyle() & WS_VSCROLL) != 0;
    case control:
        break;
    }
    return getClassNameW().toLower() == L"scrollbar";
}
} // namespace tarn
