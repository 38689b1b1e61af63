#include <tarn/ScrollBar.h>

#include "ControlMessages.h"

namespace tarn {
void ScrollBar::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_SCROLLBARW, parent, id, rect, style);
}

void ScrollBar::showScrollBar(bool visible) const { Window::showScrollBar(control, visible); }
void ScrollBar::enableScrollBar(unsigned arrows) const { Window::enableScrollBar(SB_CTL, arrows); }
void ScrollBar::getScrollInfo(SCROLLINFO& info) const { Window::getScrollInfo(SB_CTL, info); }
SCROLLINFO ScrollBar::getScrollInfo(unsigned mask) const { return Window::getScrollInfo(SB_CTL, mask); }
int ScrollBar::setScrollInfo(const SCROLLINFO& info, bool redraw) const
{
    return Window::setScrollInfo(SB_CTL, info, redraw);
}
} // namespace tarn
