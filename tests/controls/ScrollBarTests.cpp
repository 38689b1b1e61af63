#include "Controls.h"

#include <tarn/ScrollBar.h>

TEST_CASE("ScrollBar: its members are those of a window with a bar, for the bar itself")
{
    const Hosted<ScrollBar> host(L"SCROLLBAR", SBS_HORZ);
    const ScrollBar& bar = host.control;
    const SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE | SIF_POS, 5, 50, 10, 20, 0};
    CHECK((bar.setScrollInfo(info, false) == 20 && bar.getScrollInfo(SIF_ALL).nPage == 10));
    SCROLLINFO all{sizeof all, SIF_ALL, 0, 0, 0, 0, 0};
    bar.getScrollInfo(all);
    CHECK((all.nMin == 5 && all.nMax == 50 && all.nPos == 20));
    CHECK(bar.hasScrollBar(Window::control));
    bar.showScrollBar(true);
    CHECK((bar.getStyle() & WS_VISIBLE) != 0);
    bar.enableScrollBar(ESB_DISABLE_BOTH);
    CHECK(bar.enable(true)); // It was disabled.
    expectWindowsError([] { ScrollBar().showScrollBar(true); }, "Can't show/hide scrollbar");
}
