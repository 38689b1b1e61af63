#include <tarn/UpDown.h>

#include "../foundation/Check.h"
#include "ControlMessages.h"

namespace tarn {
void UpDown::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, UPDOWN_CLASSW, parent, id, rect, style);
}

HWND UpDown::setBuddy(HWND buddy) const
{
    return static_cast<HWND>(toPointer(sendMessageA(UDM_SETBUDDY, reinterpret_cast<WPARAM>(buddy))));
}
HWND UpDown::getBuddy() const { return static_cast<HWND>(toPointer(sendMessageA(UDM_GETBUDDY))); }
void UpDown::setRange(int min, int max) const { sendMessageA(UDM_SETRANGE32, static_cast<WPARAM>(min), max); }
std::pair<int, int> UpDown::getRange() const
{
    int min = 0, max = 0;
    sendMessageA(UDM_GETRANGE32, reinterpret_cast<WPARAM>(&min), toLParam(&max));
    return {min, max};
}
int UpDown::setPosition(int position) const { return static_cast<int>(sendMessageA(UDM_SETPOS32, 0, position)); }
int UpDown::getPosition() const
{
    BOOL failed = FALSE;
    const auto position = static_cast<int>(sendMessageA(UDM_GETPOS32, 0, toLParam(&failed)));
    if (failed && (getStyle() & UDS_SETBUDDYINT) && getBuddy()) // It fails without a buddy, too.
        throwWindowsError(ERROR_INVALID_DATA, "Can't get position of up-down control");
    return position;
}
} // namespace tarn
