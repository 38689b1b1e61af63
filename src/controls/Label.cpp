#include <tarn/Label.h>

#include "ControlMessages.h"

namespace tarn {
void Label::create(HWND parent, unsigned short id, const RECT& rect, const char* text, unsigned long style)
{
    createControl(*this, WC_STATICW, parent, id, rect, style);
    setText(text);
}
void Label::create(HWND parent, unsigned short id, const RECT& rect, const wchar_t* text, unsigned long style)
{
    createControl(*this, WC_STATICW, parent, id, rect, style);
    setText(text);
}
} // namespace tarn
