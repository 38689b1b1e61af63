#include <tarn/ScrollBar.h>

namespace tarn {
void ScrollBar::showScrollBar(bool visible) const { Window::showScrollBar(control, visible); }
void ScrollBar::enableScrollBar(unsigned arrows) const { Window::enableScrollBar(SB_CTL, arrows); }
void ScrollBar::getScrollInfo(SCROLLINFO& info) const { Window::getScrollInfo(SB_CTL, info); }
SCROLLINFO ScrollBar::getScrollInfo(unsigned mask) const { return Window::getScrollInfo(SB_CTL, mask); }
int ScrollBar::setScrollInfo(const SCROLLINFO& info, bool redraw) const
{
    return Window::setScrollInfo(SB_CTL, info, redraw);
}
} // namespace tarn
