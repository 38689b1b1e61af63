#include <tarn/ListBox.h>

#include "StringBox.h"

namespace tarn {
void ListBox::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_LISTBOXW, parent, id, rect, style);
}

int ListBox::addString(const char* text) const
{
    return ensureAdded(*this, sendText(*this, LB_ADDSTRING, 0, text), "Can't add string to listbox");
}
int ListBox::addString(const wchar_t* text) const
{
    return ensureAdded(*this, sendText(*this, LB_ADDSTRING, 0, text), "Can't add string to listbox");
}
int ListBox::addString(unsigned short resource, HINSTANCE module) const { return addLines(*this, resource, module); }

int ListBox::insertString(unsigned index, const char* text) const
{
    return ensureAdded(*this, sendText(*this, LB_INSERTSTRING, toIndex(index), text), "Can't add string to listbox");
}
int ListBox::insertString(unsigned index, const wchar_t* text) const
{
    return ensureAdded(*this, sendText(*this, LB_INSERTSTRING, toIndex(index), text), "Can't add string to listbox");
}
BasicString<char> ListBox::getStringA(unsigned index) const
{
    return textOfItem<char>(*this, index, LB_GETTEXTLEN, LB_GETTEXT, "Can't get listbox item text");
}
BasicString<wchar_t> ListBox::getStringW(unsigned index) const
{
    return textOfItem<wchar_t>(*this, index, LB_GETTEXTLEN, LB_GETTEXT, "Can't get listbox item text");
}

int ListBox::addItem(const void* data) const
{
    return ensureAdded(*this, sendMessageA(LB_ADDSTRING, 0, toLParam(data)), "Can't add item to listbox");
}

int ListBox::deleteString(unsigned index) const
{
    return static_cast<int>(ensureSent(*this, LB_ERR, "Can't delete listbox item", LB_DELETESTRING, index));
}
void ListBox::resetContent() const { sendMessageA(LB_RESETCONTENT); }
int ListBox::getCount() const { return static_cast<int>(sendMessageA(LB_GETCOUNT)); }

void ListBox::setItemData(unsigned index, const void* data) const
{
    ensureSent(*this, LB_ERR, "Can't set listbox item data", LB_SETITEMDATA, index, toLParam(data));
}
void* ListBox::getItemData(unsigned index) const { return toPointer(sendMessageA(LB_GETITEMDATA, index)); }

int ListBox::findString(const char* text, unsigned start) const
{
    return static_cast<int>(sendText(*this, LB_FINDSTRING, toIndex(start), text));
}
int ListBox::findString(const wchar_t* text, unsigned start) const
{
    return static_cast<int>(sendText(*this, LB_FINDSTRING, toIndex(start), text));
}

int ListBox::getCurrentSelection() const { return static_cast<int>(sendMessageA(LB_GETCURSEL)); }
int ListBox::setCurrentSelection(unsigned index) const
{
    return static_cast<int>(sendMessageA(LB_SETCURSEL, toIndex(index)));
}

bool ListBox::isSelected(unsigned index) const { return sendMessageA(LB_GETSEL, toIndex(index)) > 0; }
void ListBox::setSelected(unsigned index, bool selected) const
{
    ensureSent(*this, LB_ERR, "Can't select listbox item", LB_SETSEL, selected, static_cast<int>(index));
}
std::vector<int> ListBox::getSelectedItems() const
{
    const LRESULT count = sendMessageA(LB_GETSELCOUNT);
    if (count == LB_ERR) { // Of a box with one selection.
        const int selected = getCurrentSelection();
        return selected < 0 ? std::vector<int>() : std::vector<int>{selected};
    }
    std::vector<int> items(static_cast<std::size_t>(count));
    sendMessageA(LB_GETSELITEMS, items.size(), toLParam(items.data()));
    return items;
}

bool ListBox::hasStrings() const { return (getStyle() & LBS_HASSTRINGS) != 0; }
bool ListBox::isOwnerDrawFixed() const { return (getStyle() & LBS_OWNERDRAWFIXED) != 0; }
bool ListBox::isOwnerDrawVariable() const { return (getStyle() & LBS_OWNERDRAWVARIABLE) != 0; }
bool ListBox::isOwnerDraw() const { return isOwnerDrawFixed() || isOwnerDrawVariable(); }
} // namespace tarn
