#include "Controls.h"

#include <tarn/ProgressBar.h>
#include <tarn/ScrollBar.h>
#include <tarn/TrackBar.h>

using namespace tarn;

TEST_CASE("ProgressBar: range and position are signed and wider than a word", "[controls]")
{
    const support::Hosted<ProgressBar> host(PROGRESS_CLASSW);
    const ProgressBar& bar = host.control;
    bar.setRange(-100000, 200000);
    CHECK((bar.getRange().iLow == -100000 && bar.getRange().iHigh == 200000));
    CHECK((bar.getMin() == -100000 && bar.getMax() == 200000));
    bar.setPos(150000);
    CHECK((bar.setPos(-5) == 150000 && bar.getPos() == -5));
}

TEST_CASE("TrackBar: positions and the selection are signed and stay in the range", "[controls]")
{
    const support::Hosted<TrackBar> host(TRACKBAR_CLASSW, TBS_ENABLESELRANGE);
    const TrackBar& bar = host.control;
    bar.setRange(-20, 30, false);
    bar.setPosition(-70, true);
    CHECK(bar.getPosition() == -20);
    bar.setSelection(-3, 12, true);
    CHECK((bar.getSelectionStart() == -3 && bar.getSelectionEnd() == 12));

    bar.setRangeMin(-100000, false);
    bar.setRangeMax(100000, false);
    bar.setPosition(-99999, false);
    CHECK(bar.getPosition() == -99999);
    bar.setSelectionStart(-50000, false);
    bar.setSelectionEnd(60000, false);
    CHECK((bar.getSelectionStart() == -50000 && bar.getSelectionEnd() == 60000));
    bar.clearSelection(false);
    CHECK(bar.getSelectionStart() == bar.getSelectionEnd());
}

TEST_CASE("TrackBar: the ends of the range count as ticks, but are not among them", "[controls]")
{
    support::Hosted<TrackBar> host(TRACKBAR_CLASSW);
    TrackBar& bar = host.control;
    bar.setRange(0, 10, false);
    CHECK((bar.addTick(3) && bar.addTick(7) && !bar.addTick(11)));
    CHECK((bar.hasTicks() && bar.getTickCount() == 4 && bar.getTicks() == std::vector<int>{3, 7}));
    CHECK((bar.getTick(1) == 7 && bar.getTick(2) == -1 && bar.getTickPosition(0) < bar.getTickPosition(1)));
    bar.clearTicks(false);
    CHECK((bar.getTickCount() == 2 && bar.getTicks().empty()));

    host.add(bar, TRACKBAR_CLASSW, TBS_NOTICKS, 101);
    CHECK((!bar.hasTicks() && bar.getTickCount() == 0 && bar.getTicks().empty()));
}

TEST_CASE("ScrollBar: its members are those of a window with a bar, for the bar itself", "[controls]")
{
    const support::Hosted<ScrollBar> host(L"SCROLLBAR", SBS_HORZ);
    const ScrollBar& bar = host.control;
    const SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE | SIF_POS, 5, 50, 10, 20, 0};
    CHECK((bar.setScrollInfo(info, false) == 20 && bar.getScrollInfo(SIF_ALL).nPage == 10));
    bar.showScrollBar(true);
    CHECK((bar.getStyle() & WS_VISIBLE) != 0);
    bar.enableScrollBar(ESB_DISABLE_BOTH);
    CHECK(bar.enable(true)); // It was disabled.
    support::expectWindowsError([] { ScrollBar().showScrollBar(true); }, "Can't show/hide scrollbar");
}
