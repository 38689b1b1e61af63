#include <tarn/ComboBox.h>

#include "StringBoxImpl.h"

namespace tarn {
struct detail::ComboBoxMessages {
    static constexpr const wchar_t* windowClass = WC_COMBOBOXW;
    enum Message : UINT {
        addString = CB_ADDSTRING,
        insertString = CB_INSERTSTRING,
        getTextLength = CB_GETLBTEXTLEN,
        getText = CB_GETLBTEXT,
        deleteString = CB_DELETESTRING,
        resetContent = CB_RESETCONTENT,
        getCount = CB_GETCOUNT,
        setItemData = CB_SETITEMDATA,
        getItemData = CB_GETITEMDATA,
        findString = CB_FINDSTRING,
        getSelection = CB_GETCURSEL,
        setSelection = CB_SETCURSEL
    };
    enum Style : DWORD {
        hasStrings = CBS_HASSTRINGS,
        ownerDrawFixed = CBS_OWNERDRAWFIXED,
        ownerDrawVariable = CBS_OWNERDRAWVARIABLE
    };
    static constexpr const char* failedString = "Unspecified error in adding a string to a combo box";
    static constexpr const char* failedItem = "Unspecified error in adding an owner draw item to a combo box";
    static constexpr const char* failedText = "Can't get combo box item text";
    static constexpr const char* failedDeleting = "Error when deleting a combo box item";
    static constexpr const char* failedData = "Can't set combo box item data";
};

template class StringBox<detail::ComboBoxMessages>;
} // namespace tarn
