#include <tarn/ProgressBar.h>

#include "ControlMessages.h"

namespace tarn {
void ProgressBar::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, PROGRESS_CLASSW, parent, id, rect, style);
}

void ProgressBar::setRange(int min, int max) const { sendMessageA(PBM_SETRANGE32, static_cast<WPARAM>(min), max); }

PBRANGE ProgressBar::getRange() const
{
    PBRANGE range{};
    sendMessageA(PBM_GETRANGE, TRUE, toLParam(&range));
    return range;
}
int ProgressBar::getMin() const { return static_cast<int>(sendMessageA(PBM_GETRANGE, TRUE)); }
int ProgressBar::getMax() const { return static_cast<int>(sendMessageA(PBM_GETRANGE, FALSE)); }

int ProgressBar::setPos(int position) const
{
    return static_cast<int>(sendMessageA(PBM_SETPOS, static_cast<WPARAM>(position)));
}
void ProgressBar::setMarquee(bool moving, unsigned intervalMs) const
{
    sendMessageA(PBM_SETMARQUEE, moving, static_cast<LPARAM>(intervalMs));
}
int ProgressBar::getPos() const { return static_cast<int>(sendMessageA(PBM_GETPOS)); }
} // namespace tarn
