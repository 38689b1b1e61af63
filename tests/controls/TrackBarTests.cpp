#include "Controls.h"

#include <tarn/Button.h>
#include <tarn/ComboBox.h>
#include <tarn/EditControl.h>
#include <tarn/ListBox.h>
#include <tarn/ListView.h>
#include <tarn/ProgressBar.h>
#include <tarn/ScrollBar.h>
#include <tarn/TrackBar.h>
#include <tarn/TreeView.h>

TEMPLATE_TEST_CASE("Controls: each can be made in code, in the font of its parent", "", Button, ComboBox, EditControl,
                   ListBox, ListView, ProgressBar, ScrollBar, TrackBar, TreeView)
{
    Host host;
    TestType control, other;
    control.create(host, 7, Rect(10, 20, 110, 60), WS_VISIBLE);
    other.create(control, 8, Rect(0, 0, 10, 10), 0);
    CHECK((control.getID() == 7 && GetParent(control) == host.getWindowHandle()));
    CHECK((control.getStyle() & (WS_CHILD | WS_VISIBLE)) == (WS_CHILD | WS_VISIBLE));
    const auto fontOf = [](const Window& window) { return reinterpret_cast<HGDIOBJ>(window.sendMessageA(WM_GETFONT)); };
    if (fontOf(control)) // Not every control has one.
        CHECK((GetObjectType(fontOf(control)) == OBJ_FONT && fontOf(other) == fontOf(control)));
}

TEST_CASE("TrackBar: positions and the selection are signed and stay in the range")
{
    const Hosted<TrackBar> host(TRACKBAR_CLASSW, TBS_ENABLESELRANGE);
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

TEST_CASE("TrackBar: the ends of the range count as ticks, but are not among them")
{
    Hosted<TrackBar> host(TRACKBAR_CLASSW);
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
