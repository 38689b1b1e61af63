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
    using Heading = HDITEMA;
    using Tool = TTTOOLINFOA;

    static constexpr UINT getListText = LVM_GETITEMTEXTA;
    static constexpr UINT getTreeItem = TVM_GETITEMA, setTreeItem = TVM_SETITEMA, insertTreeItem = TVM_INSERTITEMA;
    static constexpr UINT getTab = TCM_GETITEMA, setTab = TCM_SETITEMA, insertTab = TCM_INSERTITEMA;
    static constexpr UINT getHeading = HDM_GETITEMA, setHeading = HDM_SETITEMA, insertHeading = HDM_INSERTITEMA;
    static constexpr UINT addTool = TTM_ADDTOOLA, setToolText = TTM_UPDATETIPTEXTA;
    static constexpr UINT addButtons = TB_ADDBUTTONSA, getButtonText = TB_GETBUTTONTEXTA;
};

template <> struct ItemApi<wchar_t> {
    using ListItem = LVITEMW;
    using ListColumn = LVCOLUMNW;
    using TreeItem = TVITEMEXW;
    using TreeInsertion = TVINSERTSTRUCTW;
    using Tab = TCITEMW;
    using Heading = HDITEMW;
    using Tool = TTTOOLINFOW;

    static constexpr UINT getListText = LVM_GETITEMTEXTW;
    static constexpr UINT getTreeItem = TVM_GETITEMW, setTreeItem = TVM_SETITEMW, insertTreeItem = TVM_INSERTITEMW;
    static constexpr UINT getTab = TCM_GETITEMW, setTab = TCM_SETITEMW, insertTab = TCM_INSERTITEMW;
    static constexpr UINT getHeading = HDM_GETITEMW, setHeading = HDM_SETITEMW, insertHeading = HDM_INSERTITEMW;
    static constexpr UINT addTool = TTM_ADDTOOLW, setToolText = TTM_UPDATETIPTEXTW;
    static constexpr UINT addButtons = TB_ADDBUTTONSW, getButtonText = TB_GETBUTTONTEXTW;
};

/// A text that is only read, as the platform's structures take it.
template <class Ch> Ch* textOf(const Ch* text) { return const_cast<Ch*>(text); }
} // namespace tarn
