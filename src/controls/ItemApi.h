#pragma once

#include <tarn/Windows.h>

#include <commctrl.h>

// The structures and messages of the newer controls by the width of their texts.

namespace tarn {
template <class Ch> struct ItemApi;

template <> struct ItemApi<char> {
    using ListItem = LVITEMA;
    using ListColumn = LVCOLUMNA;
    using TreeItem = TVITEMEXA;
    using TreeInsertion = TVINSERTSTRUCTA;
    using Tab = TCITEMA;

    static constexpr UINT getListText = LVM_GETITEMTEXTA;
    static constexpr UINT getTreeItem = TVM_GETITEMA, setTreeItem = TVM_SETITEMA, insertTreeItem = TVM_INSERTITEMA;
    static constexpr UINT getTab = TCM_GETITEMA, setTab = TCM_SETITEMA, insertTab = TCM_INSERTITEMA;
};

template <> struct ItemApi<wchar_t> {
    using ListItem = LVITEMW;
    using ListColumn = LVCOLUMNW;
    using TreeItem = TVITEMEXW;
    using TreeInsertion = TVINSERTSTRUCTW;
    using Tab = TCITEMW;

    static constexpr UINT getListText = LVM_GETITEMTEXTW;
    static constexpr UINT getTreeItem = TVM_GETITEMW, setTreeItem = TVM_SETITEMW, insertTreeItem = TVM_INSERTITEMW;
    static constexpr UINT getTab = TCM_GETITEMW, setTab = TCM_SETITEMW, insertTab = TCM_INSERTITEMW;
};

/// A text that is only read, as the platform's structures take it.
template <class Ch> Ch* textOf(const Ch* text) { return const_cast<Ch*>(text); }
} // namespace tarn
