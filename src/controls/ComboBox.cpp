#include <tarn/ComboBox.h>

#include "StringBox.h"

namespace tarn {
void ComboBox::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_COMBOBOXW, parent, id, rect, style);
}

int ComboBox::addString(const char* text) const
{
    return ensureAdded(*this, sendText(*this, CB_ADDSTRING, 0, text),
                       "Unspecified error in adding a string to a combo box");
}
int ComboBox::addString(const wchar_t* text) const
{
    return ensureAdded(*this, sendText(*this, CB_ADDSTRING, 0, text),
                       "Unspecified error in adding a string to a combo box");
}
int ComboBox::addString(unsigned short resource, HINSTANCE module) const { return addLines(*this, resource, module); }

int ComboBox::insertString(unsigned index, const char* text) const
{
    return ensureAdded(*this, sendText(*this, CB_INSERTSTRING, toIndex(index), text),
                       "Unspecified error in adding a string to a combo box");
}
int ComboBox::insertString(unsigned index, const wchar_t* text) const
{
    return ensureAdded(*this, sendText(*this, CB_INSERTSTRING, toIndex(index), text),
                       "Unspecified error in adding a string to a combo box");
}
BasicString<char> ComboBox::getStringA(unsigned index) const
{
    return textOfItem<char>(*this, index, CB_GETLBTEXTLEN, CB_GETLBTEXT, "Can't get combo box item text");
}
BasicString<wchar_t> ComboBox::getStringW(unsigned index) const
{
    return textOfItem<wchar_t>(*this, index, CB_GETLBTEXTLEN, CB_GETLBTEXT, "Can't get combo box item text");
}

int ComboBox::addItem(const void* data) const
{
    return ensureAdded(*this, sendMessageA(CB_ADDSTRING, 0, toLParam(data)),
                       "Unspecified error in adding an owner draw item to a combo box");
}

int ComboBox::deleteString(unsigned index) const
{
    return static_cast<int>(ensureSent(*this, CB_ERR, "Error when deleting a combo box item", CB_DELETESTRING, index));
}
void ComboBox::resetContent() const { sendMessageA(CB_RESETCONTENT); }
int ComboBox::getCount() const { return static_cast<int>(sendMessageA(CB_GETCOUNT)); }

void ComboBox::setItemData(unsigned index, const void* data) const
{
    ensureSent(*this, CB_ERR, "Can't set combo box item data", CB_SETITEMDATA, index, toLParam(data));
}
void* ComboBox::getItemData(unsigned index) const { return toPointer(sendMessageA(CB_GETITEMDATA, index)); }

int ComboBox::findString(const char* text, unsigned start) const
{
    return static_cast<int>(sendText(*this, CB_FINDSTRING, toIndex(start), text));
}
int ComboBox::findString(const wchar_t* text, unsigned start) const
{
    return static_cast<int>(sendText(*this, CB_FINDSTRING, toIndex(start), text));
}

int ComboBox::getCurrentSelection() const { return static_cast<int>(sendMessageA(CB_GETCURSEL)); }
int ComboBox::setCurrentSelection(unsigned index) const
{
    return static_cast<int>(sendMessageA(CB_SETCURSEL, toIndex(index)));
}

bool ComboBox::hasStrings() const { return (getStyle() & CBS_HASSTRINGS) != 0; }
bool ComboBox::isOwnerDrawFixed() const { return (getStyle() & CBS_OWNERDRAWFIXED) != 0; }
bool ComboBox::isOwnerDrawVariable() const { return (getStyle() & CBS_OWNERDRAWVARIABLE) != 0; }
bool ComboBox::isOwnerDraw() const { return isOwnerDrawFixed() || isOwnerDrawVariable(); }
} // namespace tarn
