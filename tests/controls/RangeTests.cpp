#include "Controls.h"

#include <tarn/ProgressBar.h>
#include <tarn/ScrollBar.h>
#include <tarn/TrackBar.h>

using namespace tarn;

TEST_CASE("ProgressBar: range and position", "[controls]")
{
    support::Host host;
    ProgressBar bar;
    host.add(bar, PROGRESS_CLASSW);
    bar.setRange(-100000, 200000);
    const PBRANGE range = bar.getRange();
    CHECK((range.iLow == -100000 && range.iHigh == 200000));
    CHECK((bar.getMin() == -100000 && bar.getMax() == 200000));
    bar.setPos(150000);
    CHECK(bar.setPos(-5) == 150000);
    CHECK(bar.getPos() == -5);
    bar.setPos(300000);
    CHECK(bar.getPos() == 200000);
}

TEST_CASE("TrackBar: positions and the selection are signed and stay in the range", "[controls]")
{
    support::Host host;
    TrackBar bar;
    host.add(bar, TRACKBAR_CLASSW, TBS_ENABLESELRANGE);
    bar.setRange(-20, 30, false);
    bar.setPosition(-7, true);
    CHECK(bar.getPosition() == -7);
    bar.setPosition(99, false);
    CHECK(bar.getPosition() == 30);
    bar.setRangeMin(-100000, false);
    bar.setRangeMax(100000, false);
    bar.setPosition(-99999, false);
    CHECK(bar.getPosition() == -99999);

    bar.setSelection(-3, 12, true);
    CHECK((bar.getSelectionStart() == -3 && bar.getSelectionEnd() == 12));
    bar.setSelectionStart(-50000, false);
    bar.setSelectionEnd(60000, false);
    CHECK((bar.getSelectionStart() == -50000 && bar.getSelectionEnd() == 60000));
    bar.clearSelection(false);
    CHECK(bar.getSelectionStart() == bar.getSelectionEnd());
}

TEST_CASE("TrackBar: ticks", "[controls]")
{
    support::Host host;
    TrackBar bar;
    host.add(bar, TRACKBAR_CLASSW);
    bar.setRange(0, 10, false);
    CHECK(bar.hasTicks());
    CHECK(bar.addTick(3));
    CHECK(bar.addTick(7));
    CHECK_FALSE(bar.addTick(11));
    CHECK(bar.getTickCount() == 4);
    CHECK(bar.getTicks() == std::vector<int>{3, 7});
    CHECK(bar.getTick(1) == 7);
    CHECK(bar.getTickPosition(0) < bar.getTickPosition(1));
    CHECK(bar.getTick(2) == -1);
    bar.clearTicks(false);
    CHECK(bar.getTickCount() == 2);
    CHECK(bar.getTicks().empty());

    host.add(bar, TRACKBAR_CLASSW, TBS_NOTICKS, 101);
    CHECK_FALSE(bar.hasTicks());
    CHECK(bar.getTickCount() == 0);
    CHECK(bar.getTicks().empty());
}

TEST_CASE("ScrollBar: its members are those of a window with a bar, for the bar itself", "[controls]")
{
    support::Host host;
    ScrollBar bar;
    host.add(bar, L"SCROLLBAR", SBS_HORZ);
    SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE | SIF_POS, 5, 50, 10, 20, 0};
    CHECK(bar.setScrollInfo(info, false) == 20);
    CHECK(bar.getScrollInfo(SIF_ALL).nPage == 10);
    info.fMask = SIF_RANGE;
    info.nMax = 0;
    bar.getScrollInfo(info);
    CHECK(info.nMax == 50);
    bar.showScrollBar(true);
    CHECK((bar.getStyle() & WS_VISIBLE) != 0);
    bar.enableScrollBar(ESB_DISABLE_BOTH);
    CHECK(bar.enable(true)); // It was disabled.

    support::expectFailure([] { ScrollBar().showScrollBar(true); }, "Can't show/hide scrollbar");
}
