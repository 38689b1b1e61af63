#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A tree of items with pictures. Items are handles, valid until deleted; the platform does not notice the
/// handle of a deleted item for sure. Texts are copied.
///
/// What the platform's control can do beyond the members here is done by its messages: sendMessageA().
class TARN_API TreeView : public Window {
public:
    /// The pictures of the items, and those of their state.
    enum imagelist { normal = TVSIL_NORMAL, state = TVSIL_STATE };

    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// A notification of this control, before its parent's handlers: true settles it. The wide form is asked
    /// first, then the converted one. It arrives when the object is attached to the control (or subclasses
    /// it) and the parent is handled by an object that passes notifications on.
    ///@{
    virtual bool onReflectedNotification(const NMTREEVIEWA& notification);
    virtual bool onReflectedNotification(const NMTREEVIEWW& notification);
    ///@}

    /// The new item. `after` may be `TVI_FIRST`, `TVI_LAST` or `TVI_SORT`. Pictures count from 0 in the image
    /// list. Throw "Can't insert tree view item".
    ///@{
    HTREEITEM insertItem(const TVINSERTSTRUCTA& item) const;
    HTREEITEM insertItem(const TVINSERTSTRUCTW& item) const;
    HTREEITEM insertItem(const char* text, HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST) const;
    HTREEITEM insertItem(const wchar_t* text, HTREEITEM parent = TVI_ROOT, HTREEITEM after = TVI_LAST) const;
    HTREEITEM insertItem(const char* text, const void* data, HTREEITEM parent, HTREEITEM after) const;
    HTREEITEM insertItem(const wchar_t* text, const void* data, HTREEITEM parent, HTREEITEM after) const;
    HTREEITEM insertItem(const char* text, int image, int selectedImage, HTREEITEM parent = TVI_ROOT,
                         HTREEITEM after = TVI_LAST) const;
    HTREEITEM insertItem(const wchar_t* text, int image, int selectedImage, HTREEITEM parent = TVI_ROOT,
                         HTREEITEM after = TVI_LAST) const;
    HTREEITEM insertItem(const char* text, int image, int selectedImage, const void* data, HTREEITEM parent,
                         HTREEITEM after) const;
    HTREEITEM insertItem(const wchar_t* text, int image, int selectedImage, const void* data, HTREEITEM parent,
                         HTREEITEM after) const;
    ///@}

    /// With its children. Throws "Can't delete tree item".
    void deleteItem(HTREEITEM item) const;
    /// Of an empty view, too.
    void deleteAllItems() const;
    /// Throws "Can't retrieve item".
    ///@{
    BasicString<char> getItemTextA(HTREEITEM item) const;
    BasicString<wchar_t> getItemTextW(HTREEITEM item) const;
    ///@}
    /// Null for no item.
    void* getItemData(HTREEITEM item) const;

    /// `action` is `TVE_EXPAND`, `TVE_COLLAPSE` or `TVE_TOGGLE`. Throws "Unable to expand/collapse tree view
    /// item", also for an item without children.
    void expand(HTREEITEM item, unsigned action) const;
    /// By text; with `recurse` the children's children too. Throws "Can't sort tree view child items", also
    /// for an item without children.
    void sortChildren(HTREEITEM item, bool recurse) const;
    /// Expands its parents and scrolls.
    void ensureVisible(HTREEITEM item) const;
    /// Null when none is selected.
    HTREEITEM getSelectedItem() const;
    /// Null for none. Shows the item, too. Throws "Can't select tree view item".
    void selectItem(HTREEITEM item) const;
    /// Throws "Can't set tree view item".
    ///@{
    void setItemText(HTREEITEM item, const char* text) const;
    void setItemText(HTREEITEM item, const wchar_t* text) const;
    ///@}
    /// Shows a button for children that are inserted only when it is pressed (`TVN_ITEMEXPANDING`), or none. Throws
    /// "Can't set tree view item".
    void setHasChildren(HTREEITEM item, bool hasChildren) const;
    /// The neighbours of an item: null where there is none. The first child of `TVI_ROOT` is the first item of all.
    ///@{
    HTREEITEM getFirstChild(HTREEITEM item) const;
    HTREEITEM getNextSibling(HTREEITEM item) const;
    HTREEITEM getParentItem(HTREEITEM item) const;
    ///@}
    /// How many items there are on all levels.
    unsigned getItemCount() const;

    /// Gives the list before. The tree view destroys neither: keep an ImageList as long as it is shown.
    HIMAGELIST setImageList(HIMAGELIST list, imagelist which) const;
    /// Null for none. Lent, not given.
    HIMAGELIST getImageList(imagelist which) const;

private:
    void getItem(TVITEMEXA& item) const;
    void getItem(TVITEMEXW& item) const;
};
} // namespace tarn
