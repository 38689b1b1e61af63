#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

#include <concepts>
#include <functional>
#include <optional>
#include <string_view>

namespace tarn {
class ImageList;

/// A list of items with pictures, in columns or as icons. Items and columns count from 0; subitem 0 is the
/// item itself, subitem n its text in the n-th column. Texts are copied.
///
/// What the platform's control can do beyond the members here is done by its messages: sendMessageA().
class TARN_API ListView : public Window {
public:
    /// For the icon view, for all others, and for the state of items.
    enum imagelist { normal = LVSIL_NORMAL, small_images = LVSIL_SMALL, state = LVSIL_STATE };

    /// In the heading of a column.
    enum sort_arrow { no_arrow = 0, ascending = HDF_SORTUP, descending = HDF_SORTDOWN };

    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// A child window with this style besides `WS_CHILD`, which the object owns. It gets none of the list
    /// view's messages; call subclass() with the handle afterwards where that is wanted.
    void create(HWND parent, const RECT& rect, unsigned long style, HINSTANCE module);
    /// The same with an id for the parent's handlers, in the font of the parent, or where it has none in
    /// Font::ofSystem() for its screen. Throws as Window::create() and Font::ofSystem() do.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    // ---- Columns, which only the details view shows

    /// The new column's index. The text of the first column is always at its left.
    /// Throw "Can't insert list view column".
    ///@{
    int insertColumn(unsigned column, const LVCOLUMNA& attributes) const;
    int insertColumn(unsigned column, const LVCOLUMNW& attributes) const;
    ///@}
    /// `width` in pixels. Shows the subitem of the column's own number, or the one given.
    ///@{
    int insertColumn(unsigned column, const char* text, int width, int format = LVCFMT_LEFT) const;
    int insertColumn(unsigned column, const wchar_t* text, int width, int format = LVCFMT_LEFT) const;
    int insertColumn(unsigned column, const char* text, int width, int format, int subitem) const;
    int insertColumn(unsigned column, const wchar_t* text, int width, int format, int subitem) const;
    ///@}
    /// 0 for one that does not exist.
    int getColumnWidth(unsigned column) const;
    /// `LVSCW_AUTOSIZE` fits the items, `LVSCW_AUTOSIZE_USEHEADER` the heading, too. Throws "Can't set list view column
    /// width".
    void setColumnWidth(unsigned column, int width) const;
    /// The headings, for a HeaderControl. Lent, not given.
    HWND getHeader() const;
    /// Shows in the heading of one column that the list is sorted by it, and in no other. Throws "Can't set sort
    /// arrow".
    void setSortArrow(unsigned column, sort_arrow arrow) const;

    // ---- Items

    /// The new item's index, which differs from the wanted one in a sorted list. Without a wanted index the
    /// item comes last. The platform inserts whole items only: any `subitem` but 0 fails, use setItemText().
    /// `image` counts from 0 in the view's image list. Throw "Can't insert list view item".
    ///@{
    int insertItem(const LVITEMA& item) const;
    int insertItem(const LVITEMW& item) const;
    int insertItem(const char* text, int image = I_IMAGENONE) const;
    int insertItem(const wchar_t* text, int image = I_IMAGENONE) const;
    int insertItem(const char* text, const void* data, int image = I_IMAGENONE) const;
    int insertItem(const wchar_t* text, const void* data, int image = I_IMAGENONE) const;
    int insertItem(unsigned item, unsigned subitem, const char* text, int image = I_IMAGENONE) const;
    int insertItem(unsigned item, unsigned subitem, const wchar_t* text, int image = I_IMAGENONE) const;
    int insertItem(unsigned item, unsigned subitem, const char* text, const void* data, int image = I_IMAGENONE) const;
    int insertItem(unsigned item, unsigned subitem, const wchar_t* text, const void* data,
                   int image = I_IMAGENONE) const;
    ///@}

    /// Throws "Can't get listview item".
    ///@{
    void getItem(LVITEMA& item) const;
    void getItem(LVITEMW& item) const;
    ///@}
    /// Throws "Can't set item".
    ///@{
    void setItem(const LVITEMA& item) const;
    void setItem(const LVITEMW& item) const;
    ///@}
    /// Of another subitem than 0 it shows with the extended style `LVS_EX_SUBITEMIMAGES`. Throws "Can't set item".
    void setItemImage(unsigned item, unsigned subitem, int image) const;
    /// Throws "Can't set item text".
    ///@{
    void setItemText(unsigned item, const LVITEMA& text) const;
    void setItemText(unsigned item, const LVITEMW& text) const;
    void setItemText(unsigned item, const char* text, unsigned subitem = 0) const;
    void setItemText(unsigned item, const wchar_t* text, unsigned subitem = 0) const;
    ///@}
    /// Empty when there is no such item.
    ///@{
    BasicString<char> getItemTextA(unsigned item, unsigned subitem) const;
    BasicString<wchar_t> getItemTextW(unsigned item, unsigned subitem) const;
    ///@}
    /// Null when there is no such item.
    void* getItemData(unsigned item) const;

    /// Throws "Can't delete listview item".
    void deleteItem(unsigned item) const;
    /// Throws "Can't delete listview item".
    void deleteAllItems() const;
    /// 0 for an empty view.
    unsigned getItemCount() const;

    /// Orders the items: `compare` gets the data of two of them, and gives less than 0, 0, or more. What it throws
    /// comes out of here, the items in some order. Throws "Can't sort list view items".
    void sortItems(const std::function<int(const void*, const void*)>& compare) const;
    /// How many items a view with the style `LVS_OWNERDATA` shows, which asks its parent for their texts
    /// (`LVN_GETDISPINFO`). Throws "Can't set list view item count".
    void setItemCount(unsigned count) const;
    /// For the parent of such a view, in its onNotifyToAnswer(): when the notification asks for the text of an item it
    /// gets what `text(item, subitem)` gives (a wide text of any kind, or a reference to one), cut to the control's
    /// room (260 characters), and the result is true.
    template <std::invocable<unsigned, unsigned> F> static bool giveText(NMHDR& notification, F text)
    {
        LVITEMW* const item = itemAskedFor(notification, LVIF_TEXT);
        if (item)
            giveTextTo(notification, text(static_cast<unsigned>(item->iItem), static_cast<unsigned>(item->iSubItem)));
        return item != nullptr;
    }
    /// The same for the number of an item's picture; one notification may ask for both.
    template <std::invocable<unsigned, unsigned> F> static bool giveImage(NMHDR& notification, F image)
    {
        LVITEMW* const item = itemAskedFor(notification, LVIF_IMAGE);
        if (item)
            item->iImage = image(static_cast<unsigned>(item->iItem), static_cast<unsigned>(item->iSubItem));
        return item != nullptr;
    }

    // ---- Groups: the newer controls have them, for which a program asks in its manifest; a virtual view has none

    /// Whether the items are shown in their groups; those without one are not shown then. Throws "Can't change list
    /// view groups".
    void enableGroups(bool enable) const;
    /// A group with a number of its own, and what it is called; with `collapsible` the user can hide its items. Gives
    /// its place, the last one unless wanted otherwise. Throws "Can't insert list view group".
    ///@{
    int insertGroup(int group, const char* heading, bool collapsible = false, int index = -1) const;
    int insertGroup(int group, const wchar_t* heading, bool collapsible = false, int index = -1) const;
    ///@}
    /// `I_GROUPIDNONE` for none. Throws "Can't set item".
    void setItemGroup(unsigned item, int group) const;
    /// `I_GROUPIDNONE` for none, and for an item that does not exist.
    int getItemGroup(unsigned item) const;
    /// The items stay.
    void removeAllGroups() const;

    // ---- Selection and view

    /// Of an item, or of all with the index -1; the other items stay as they are unless the view has the style
    /// `LVS_SINGLESEL`.
    ///@{
    /// Throws "Can't set item".
    void setSelected(unsigned item, bool selected) const;
    bool isSelected(unsigned item) const;
    ///@}
    /// With the extended style `LVS_EX_CHECKBOXES`.
    ///@{
    /// Throws "Can't set item".
    void setChecked(unsigned item, bool isOn) const;
    bool isChecked(unsigned item) const;
    ///@}
    /// Lets the user change the text of an item, with the style `LVS_EDITLABELS`; the parent hears of it by
    /// `LVN_ENDLABELEDIT`, see getEditedText(). Throws "Can't edit list view item".
    void editItem(unsigned item) const;
    /// What the user has made of the text of an item.
    struct EditedText {
        /// The item's index.
        unsigned item;
        /// As it was entered.
        BasicString<wchar_t> text;
    };
    /// For the parent, in its onNotifyToAnswer(): what an editing has brought, and nothing for other notifications and
    /// where the user gave up. The item takes the text when the handler gives `TRUE`, and keeps its own when it gives
    /// 0; of a virtual view keep the text yourself.
    static std::optional<EditedText> getEditedText(const NMHDR& notification);

    /// (sic)
    unsigned getSlectedItemCount() const;
    /// The item behind `start` (-1: the first one) with these `LVNI_` properties; -1 when there is none.
    int getNextItem(int start, unsigned flags) const;
    /// The same for selected items.
    int getNextSelectedItem(int start) const;
    /// Throws "Can't make list view item visible".
    void ensureVisible(unsigned item, bool partialOk) const;
    /// `LVS_EX_` bits: all of them, or those of `mask`. Gives the bits before.
    ///@{
    unsigned long setExtendedListViewStyle(unsigned long style) const;
    unsigned long setExtendedListViewStyle(unsigned long mask, unsigned long style) const;
    ///@}
    /// The view gets the list's pictures and `list` those that the view had, each owning what it got: the
    /// view destroys its lists at its end. One with the style `LVS_SHAREIMAGELISTS` does not: swap the list
    /// back before the view ends.
    void swapImageList(imagelist which, ImageList& list) const;

private:
    static LVITEMW* itemAskedFor(NMHDR& notification, UINT what);
    static void giveTextTo(NMHDR& notification, std::wstring_view text);
};
} // namespace tarn
