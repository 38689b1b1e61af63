#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A scroll bar that is a window of its own, unlike the bars at the edges of a window. It tells its parent of
/// every move through onHScroll() or onVScroll(), which has to set the new position.
class TARN_API ScrollBar : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// Throws "Can't show/hide scrollbar".
    void showScrollBar(bool visible) const;
    /// Throws "Can't change scrollbar arrow state".
    void enableScrollBar(unsigned arrows) const;
    /// Size and mask of `info` have to be filled in. Throws "Can't get scroll info".
    void getScrollInfo(SCROLLINFO& info) const;
    /// `mask` is made of `SIF_...`. Throws the same.
    SCROLLINFO getScrollInfo(unsigned mask) const;
    /// The position that it has now.
    int setScrollInfo(const SCROLLINFO& info, bool redraw) const;
};
} // namespace tarn
