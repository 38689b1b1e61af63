#include <tarn/EditControl.h>

#include "ControlMessages.h"

namespace tarn {
void EditControl::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_EDITW, parent, id, rect, style);
}

void EditControl::setReadonly(bool readonly) const
{
    ensureSent(*this, FALSE, "Can't set ES_READONLY style", EM_SETREADONLY, readonly);
}
bool EditControl::getReadonly() const { return (getStyle() & ES_READONLY) != 0; }

void EditControl::setSelection(int start, int end) const { sendMessageA(EM_SETSEL, static_cast<WPARAM>(start), end); }
void EditControl::selectAll() const { setSelection(0, -1); }
void EditControl::clearSelection() const { setSelection(-1, 0); }

std::pair<int, int> EditControl::getSelection() const
{
    DWORD start = 0, end = 0;
    sendMessageA(EM_GETSEL, reinterpret_cast<WPARAM>(&start), toLParam(&end));
    return {static_cast<int>(start), static_cast<int>(end)};
}
void EditControl::replaceSelection(const char* text, bool undoable) const
{
    sendText(*this, EM_REPLACESEL, undoable, text);
}
void EditControl::replaceSelection(const wchar_t* text, bool undoable) const
{
    sendText(*this, EM_REPLACESEL, undoable, text);
}

void EditControl::setLimit(unsigned characters) const { sendMessageA(EM_SETLIMITTEXT, characters); }
unsigned EditControl::getLimit() const { return static_cast<unsigned>(sendMessageA(EM_GETLIMITTEXT)); }
void EditControl::setNumbersOnly(bool numbersOnly) const { setStyle(ES_NUMBER, numbersOnly ? ES_NUMBER : 0ul); }
void EditControl::setHint(const wchar_t* text, bool whenFocused) const
{
    ensureSent(*this, FALSE, "Can't set hint", EM_SETCUEBANNER, whenFocused, toLParam(text));
}
} // namespace tarn
