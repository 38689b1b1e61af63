#pragma once

#include <tarn/Windows.h>

#include <commctrl.h>

// The structures and messages of the list view and the tree view by the width of their texts.

namespace tarn {
template <class Ch> struct ItemApi;

template <> struct ItemApi<char> {
    using ListItem = LVITEMA;
    using ListColumn = LVCOLUMNA;
    using TreeItem = TVITEMEXA;
    using TreeInsertion = TVINSERTSTRUCTA;

    static constexpr UINT getListText = LVM_GETITEMTEXTA;
    static constexpr UINT getTreeItem = TVM_GETITEMA, insertTreeItem = TVM_INSERTITEMA;
};

template <> struct ItemApi<wchar_t> {
    using ListItem = LVITEMW;
    using ListColumn = LVCOLUMNW;
    using TreeItem = TVITEMEXW;
    using TreeInsertion = TVINSERTSTRUCTW;

    static constexpr UINT getListText = LVM_GETITEMTEXTW;
    static constexpr UINT getTreeItem = TVM_GETITEMW, insertTreeItem = TVM_INSERTITEMW;
};

/// A text that is only read, as the platform's structures take it.
template <class Ch> Ch* textOf(const Ch* text) { return const_cast<Ch*>(text); }
} // namespace tarn
