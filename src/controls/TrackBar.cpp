#include <tarn/TrackBar.h>

#include "ControlMessages.h"

namespace tarn {
namespace {
// Two signed words, as the range and the selection are given.
LPARAM pairOf(short low, short high) { return MAKELPARAM(static_cast<WORD>(low), static_cast<WORD>(high)); }
} // namespace

void TrackBar::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, TRACKBAR_CLASSW, parent, id, rect, style);
}

int TrackBar::getPosition() const { return static_cast<int>(sendMessageA(TBM_GETPOS)); }
void TrackBar::setPosition(int position, bool redraw) const { sendMessageA(TBM_SETPOS, redraw, position); }
void TrackBar::setRange(short min, short max, bool redraw) const
{
    sendMessageA(TBM_SETRANGE, redraw, pairOf(min, max));
}
void TrackBar::setRangeMin(int min, bool redraw) const { sendMessageA(TBM_SETRANGEMIN, redraw, min); }
void TrackBar::setRangeMax(int max, bool redraw) const { sendMessageA(TBM_SETRANGEMAX, redraw, max); }

void TrackBar::setSelection(short start, short end, bool redraw) const
{
    sendMessageA(TBM_SETSEL, redraw, pairOf(start, end));
}
void TrackBar::setSelectionStart(int start, bool redraw) const { sendMessageA(TBM_SETSELSTART, redraw, start); }
void TrackBar::setSelectionEnd(int end, bool redraw) const { sendMessageA(TBM_SETSELEND, redraw, end); }
int TrackBar::getSelectionStart() const { return static_cast<int>(sendMessageA(TBM_GETSELSTART)); }
int TrackBar::getSelectionEnd() const { return static_cast<int>(sendMessageA(TBM_GETSELEND)); }
void TrackBar::clearSelection(bool redraw) const { sendMessageA(TBM_CLEARSEL, redraw); }

void TrackBar::clearTicks(bool redraw) const { sendMessageA(TBM_CLEARTICS, redraw); }
bool TrackBar::addTick(int position) const { return sendMessageA(TBM_SETTIC, 0, position) != FALSE; }
int TrackBar::getTickCount() const { return static_cast<int>(sendMessageA(TBM_GETNUMTICS)); }
int TrackBar::getTick(unsigned index) const { return static_cast<int>(sendMessageA(TBM_GETTIC, index)); }
int TrackBar::getTickPosition(unsigned index) const { return static_cast<int>(sendMessageA(TBM_GETTICPOS, index)); }

std::vector<int> TrackBar::getTicks() const
{
    constexpr int ends = 2; // Counted, but not in the array.
    const auto* const ticks = static_cast<const DWORD*>(toPointer(sendMessageA(TBM_GETPTICS)));
    const int count = getTickCount() - ends;
    return ticks && count > 0 ? std::vector<int>(ticks, ticks + count) : std::vector<int>();
}

bool TrackBar::hasTicks() const { return (getStyle() & TBS_NOTICKS) == 0; }
} // namespace tarn
