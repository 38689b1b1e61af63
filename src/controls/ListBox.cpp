#include <tarn/ListBox.h>

#include "StringBoxImpl.h"

namespace tarn {
struct detail::ListBoxMessages {
    static constexpr const wchar_t* windowClass = WC_LISTBOXW;
    enum Message : UINT {
        addString = LB_ADDSTRING,
        insertString = LB_INSERTSTRING,
        getTextLength = LB_GETTEXTLEN,
        getText = LB_GETTEXT,
        deleteString = LB_DELETESTRING,
        resetContent = LB_RESETCONTENT,
        getCount = LB_GETCOUNT,
        setItemData = LB_SETITEMDATA,
        getItemData = LB_GETITEMDATA,
        findString = LB_FINDSTRING,
        getSelection = LB_GETCURSEL,
        setSelection = LB_SETCURSEL
    };
    enum Style : DWORD {
        hasStrings = LBS_HASSTRINGS,
        ownerDrawFixed = LBS_OWNERDRAWFIXED,
        ownerDrawVariable = LBS_OWNERDRAWVARIABLE
    };
    static constexpr const char* failedString = "Can't add string to listbox";
    static constexpr const char* failedItem = "Can't add item to listbox";
    static constexpr const char* failedText = "Can't get listbox item text";
    static constexpr const char* failedDeleting = "Can't delete listbox item";
    static constexpr const char* failedData = "Can't set listbox item data";
};

template class StringBox<detail::ListBoxMessages>;

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
} // namespace tarn
