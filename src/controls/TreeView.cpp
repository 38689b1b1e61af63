#include <tarn/TreeView.h>

#include "ControlMessages.h"
#include "ItemApi.h"
#include "ItemText.h"

namespace tarn {
namespace {
/// The pictures of an item to be inserted.
struct Images {
    int image, selectedImage;
};

/// Without pictures or data where those are null.
template <class Ch>
HTREEITEM insertInto(const TreeView& tree, const Ch* text, const Images* images, const void* const* data,
                     HTREEITEM parent, HTREEITEM after)
{
    typename ItemApi<Ch>::TreeInsertion item{};
    item.hParent = parent;
    item.hInsertAfter = after;
    item.item.mask = TVIF_TEXT;
    item.item.pszText = textOf(text);
    if (images) {
        item.item.mask |= TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        item.item.iImage = images->image;
        item.item.iSelectedImage = images->selectedImage;
    }
    if (data) {
        item.item.mask |= TVIF_PARAM;
        item.item.lParam = toLParam(*data);
    }
    return tree.insertItem(item);
}

template <class Ch> HTREEITEM insertItemOf(const TreeView& tree, const typename ItemApi<Ch>::TreeInsertion& item)
{
    return static_cast<HTREEITEM>(
        toPointer(ensureSent(tree, 0, "Can't insert tree view item", ItemApi<Ch>::insertTreeItem, 0, toLParam(&item))));
}

template <class Ch> void getItemOf(const TreeView& tree, typename ItemApi<Ch>::TreeItem& item)
{
    ensureSent(tree, FALSE, "Can't retrieve item", ItemApi<Ch>::getTreeItem, 0, toLParam(&item));
}

template <class Ch, class GetItem> BasicString<Ch> textOfItem(HTREEITEM item, GetItem getItem)
{
    return readItemText<Ch>([&](Ch* buffer, int size) {
        typename ItemApi<Ch>::TreeItem attributes{};
        attributes.mask = TVIF_TEXT;
        attributes.hItem = item;
        attributes.pszText = buffer;
        attributes.cchTextMax = size;
        getItem(attributes);
        return attributes.pszText;
    });
}

void setItemOf(const TreeView& tree, UINT msg, const void* item)
{
    ensureSent(tree, FALSE, "Can't set tree view item", msg, 0, toLParam(item));
}

template <class Ch> void setTextOf(const TreeView& tree, HTREEITEM item, const Ch* text)
{
    typename ItemApi<Ch>::TreeItem attributes{};
    attributes.mask = TVIF_TEXT;
    attributes.hItem = item;
    attributes.pszText = textOf(text);
    setItemOf(tree, ItemApi<Ch>::setTreeItem, &attributes);
}

HTREEITEM nextItem(const TreeView& tree, unsigned relation, HTREEITEM item)
{
    return static_cast<HTREEITEM>(toPointer(tree.sendMessageA(TVM_GETNEXTITEM, relation, toLParam(item))));
}

void sortBranch(const TreeView& tree, HTREEITEM item)
{
    ensureSent(tree, FALSE, "Can't sort tree view child items", TVM_SORTCHILDREN, FALSE, toLParam(item));
}

// One level a message: not every version of the control sorts the levels below, too.
void sortBelow(const TreeView& tree, HTREEITEM item)
{
    for (HTREEITEM child = nextItem(tree, TVGN_CHILD, item); child; child = nextItem(tree, TVGN_NEXT, child)) {
        if (!nextItem(tree, TVGN_CHILD, child))
            continue;
        sortBranch(tree, child);
        sortBelow(tree, child);
    }
}
} // namespace

void TreeView::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_TREEVIEWW, parent, id, rect, style);
}

bool TreeView::onReflectedNotification(const NMTREEVIEWA&) { return false; }
bool TreeView::onReflectedNotification(const NMTREEVIEWW&) { return false; }

HTREEITEM TreeView::insertItem(const TVINSERTSTRUCTA& item) const { return insertItemOf<char>(*this, item); }
HTREEITEM TreeView::insertItem(const TVINSERTSTRUCTW& item) const { return insertItemOf<wchar_t>(*this, item); }
HTREEITEM TreeView::insertItem(const char* text, HTREEITEM parent, HTREEITEM after) const
{
    return insertInto(*this, text, nullptr, nullptr, parent, after);
}
HTREEITEM TreeView::insertItem(const wchar_t* text, HTREEITEM parent, HTREEITEM after) const
{
    return insertInto(*this, text, nullptr, nullptr, parent, after);
}
HTREEITEM TreeView::insertItem(const char* text, const void* data, HTREEITEM parent, HTREEITEM after) const
{
    return insertInto(*this, text, nullptr, &data, parent, after);
}
HTREEITEM TreeView::insertItem(const wchar_t* text, const void* data, HTREEITEM parent, HTREEITEM after) const
{
    return insertInto(*this, text, nullptr, &data, parent, after);
}
HTREEITEM TreeView::insertItem(const char* text, int image, int selectedImage, HTREEITEM parent, HTREEITEM after) const
{
    const Images images{image, selectedImage};
    return insertInto(*this, text, &images, nullptr, parent, after);
}
HTREEITEM TreeView::insertItem(const wchar_t* text, int image, int selectedImage, HTREEITEM parent,
                               HTREEITEM after) const
{
    const Images images{image, selectedImage};
    return insertInto(*this, text, &images, nullptr, parent, after);
}
HTREEITEM TreeView::insertItem(const char* text, int image, int selectedImage, const void* data, HTREEITEM parent,
                               HTREEITEM after) const
{
    const Images images{image, selectedImage};
    return insertInto(*this, text, &images, &data, parent, after);
}
HTREEITEM TreeView::insertItem(const wchar_t* text, int image, int selectedImage, const void* data, HTREEITEM parent,
                               HTREEITEM after) const
{
    const Images images{image, selectedImage};
    return insertInto(*this, text, &images, &data, parent, after);
}

void TreeView::deleteItem(HTREEITEM item) const
{
    ensureSent(*this, FALSE, "Can't delete tree item", TVM_DELETEITEM, 0, toLParam(item));
}
void TreeView::deleteAllItems() const { sendMessageA(TVM_DELETEITEM, 0, toLParam(TVI_ROOT)); }

void TreeView::getItem(TVITEMEXA& item) const { getItemOf<char>(*this, item); }
void TreeView::getItem(TVITEMEXW& item) const { getItemOf<wchar_t>(*this, item); }

BasicString<char> TreeView::getItemTextA(HTREEITEM item) const
{
    return textOfItem<char>(item, [this](TVITEMEXA& attributes) { getItem(attributes); });
}
BasicString<wchar_t> TreeView::getItemTextW(HTREEITEM item) const
{
    return textOfItem<wchar_t>(item, [this](TVITEMEXW& attributes) { getItem(attributes); });
}

void* TreeView::getItemData(HTREEITEM item) const
{
    TVITEMEXW attributes{};
    attributes.mask = TVIF_PARAM;
    attributes.hItem = item;
    return sendMessageA(TVM_GETITEMW, 0, toLParam(&attributes)) ? toPointer(attributes.lParam) : nullptr;
}

void TreeView::expand(HTREEITEM item, unsigned action) const
{
    ensureSent(*this, FALSE, "Unable to expand/collapse tree view item", TVM_EXPAND, action, toLParam(item));
}

void TreeView::sortChildren(HTREEITEM item, bool recurse) const
{
    sortBranch(*this, item);
    if (recurse)
        sortBelow(*this, item);
}

void TreeView::ensureVisible(HTREEITEM item) const { sendMessageA(TVM_ENSUREVISIBLE, 0, toLParam(item)); }
HTREEITEM TreeView::getSelectedItem() const { return nextItem(*this, TVGN_CARET, nullptr); }

void TreeView::selectItem(HTREEITEM item) const
{
    ensureSent(*this, FALSE, "Can't select tree view item", TVM_SELECTITEM, TVGN_CARET, toLParam(item));
}
void TreeView::setItemText(HTREEITEM item, const char* text) const { setTextOf(*this, item, text); }
void TreeView::setItemText(HTREEITEM item, const wchar_t* text) const { setTextOf(*this, item, text); }
void TreeView::setHasChildren(HTREEITEM item, bool hasChildren) const
{
    TVITEMEXW attributes{};
    attributes.mask = TVIF_CHILDREN;
    attributes.hItem = item;
    attributes.cChildren = hasChildren;
    setItemOf(*this, TVM_SETITEMW, &attributes);
}
HTREEITEM TreeView::getFirstChild(HTREEITEM item) const
{
    return nextItem(*this, item == TVI_ROOT ? TVGN_ROOT : TVGN_CHILD, item);
}
HTREEITEM TreeView::getNextSibling(HTREEITEM item) const { return nextItem(*this, TVGN_NEXT, item); }
HTREEITEM TreeView::getParentItem(HTREEITEM item) const { return nextItem(*this, TVGN_PARENT, item); }
unsigned TreeView::getItemCount() const { return static_cast<unsigned>(sendMessageA(TVM_GETCOUNT)); }

HIMAGELIST TreeView::setImageList(HIMAGELIST list, imagelist which) const
{
    return static_cast<HIMAGELIST>(
        toPointer(sendMessageA(TVM_SETIMAGELIST, static_cast<WPARAM>(which), toLParam(list))));
}
HIMAGELIST TreeView::getImageList(imagelist which) const
{
    return static_cast<HIMAGELIST>(toPointer(sendMessageA(TVM_GETIMAGELIST, static_cast<WPARAM>(which))));
}
} // namespace tarn
