#include <tarn/Button.h>

#include <tarn/Bitmap.h>

#include "ControlMessages.h"

namespace tarn {
void Button::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_BUTTONW, parent, id, rect, style);
}

void Button::setCheck(check state) const { sendMessageA(BM_SETCHECK, static_cast<WPARAM>(state)); }
Window::check Button::getCheck() const { return static_cast<check>(sendMessageA(BM_GETCHECK)); }

Bitmap Button::setImage(const Bitmap& image) const
{
    const LRESULT former = sendMessageA(BM_SETIMAGE, IMAGE_BITMAP, toLParam(image.getHandle()));
    return Bitmap(static_cast<HBITMAP>(toPointer(former)), false);
}
} // namespace tarn
