#include <tarn/EditControl.h>

#include "ControlMessages.h"

namespace tarn {
void EditControl::setReadonly(bool readonly) const
{
    ensureSent(*this, FALSE, "Can't set ES_READONLY style", EM_SETREADONLY, readonly);
}
bool EditControl::getReadonly() const { return (getStyle() & ES_READONLY) != 0; }

void EditControl::setSelection(int start, int end) const { sendMessageA(EM_SETSEL, static_cast<WPARAM>(start), end); }
void EditControl::selectAll() const { setSelection(0, -1); }
void EditControl::clearSelection() const { setSelection(-1, 0); }
} // namespace tarn
