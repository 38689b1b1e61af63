#include <tarn/ListView.h>

#include <tarn/ImageList.h>

#include "ControlMessages.h"
#include "ItemApi.h"
#include "ItemText.h"

#include <climits>

namespace tarn {
namespace {
template <class Ch>
int insertColumnInto(const ListView& view, unsigned column, const Ch* text, int width, int format, int subitem)
{
    typename ItemApi<Ch>::ListColumn attributes{};
    attributes.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    attributes.fmt = format;
    attributes.cx = width;
    attributes.pszText = textOf(text);
    attributes.iSubItem = subitem;
    return view.insertColumn(column, attributes);
}

/// An item to be inserted: without data when `data` is null.
template <class Ch>
int insertInto(const ListView& view, unsigned item, unsigned subitem, const Ch* text, const void* const* data,
               int image)
{
    typename ItemApi<Ch>::ListItem attributes{};
    attributes.mask = LVIF_TEXT | LVIF_IMAGE | (data ? LVIF_PARAM : 0u);
    attributes.iItem = static_cast<int>(item);
    attributes.iSubItem = static_cast<int>(subitem);
    attributes.pszText = textOf(text);
    attributes.iImage = image;
    attributes.lParam = data ? toLParam(*data) : 0;
    return view.insertItem(attributes);
}

constexpr unsigned atEnd = INT_MAX;

template <class Ch>
int insertColumnOf(const ListView& view, unsigned column, const typename ItemApi<Ch>::ListColumn& attributes)
{
    return static_cast<int>(ensureSent(view, -1, "Can't insert list view column", ItemApi<Ch>::insertListColumn, column,
                                       toLParam(&attributes)));
}

template <class Ch> int insertItemOf(const ListView& view, const typename ItemApi<Ch>::ListItem& item)
{
    return static_cast<int>(
        ensureSent(view, -1, "Can't insert list view item", ItemApi<Ch>::insertListItem, 0, toLParam(&item)));
}

template <class Ch> void getItemOf(const ListView& view, typename ItemApi<Ch>::ListItem& item)
{
    ensureSent(view, FALSE, "Can't get listview item", ItemApi<Ch>::getListItem, 0, toLParam(&item));
}

template <class Ch> void setItemOf(const ListView& view, const typename ItemApi<Ch>::ListItem& item)
{
    ensureSent(view, FALSE, "Can't set item", ItemApi<Ch>::setListItem, 0, toLParam(&item));
}

template <class Ch> void setTextOf(const ListView& view, unsigned item, const typename ItemApi<Ch>::ListItem& text)
{
    ensureSent(view, FALSE, "Can't set item text", ItemApi<Ch>::setListText, item, toLParam(&text));
}

template <class Ch> void setSubitemText(const ListView& view, unsigned item, const Ch* text, unsigned subitem)
{
    typename ItemApi<Ch>::ListItem attributes{};
    attributes.iSubItem = static_cast<int>(subitem);
    attributes.pszText = textOf(text);
    view.setItemText(item, attributes);
}

template <class Ch> BasicString<Ch> textOfItem(const ListView& view, unsigned item, unsigned subitem)
{
    return readItemText<Ch>([&](Ch* buffer, int size) {
        typename ItemApi<Ch>::ListItem attributes{};
        attributes.iSubItem = static_cast<int>(subitem);
        attributes.pszText = buffer;
        attributes.cchTextMax = size;
        view.sendMessageA(ItemApi<Ch>::getListText, item, toLParam(&attributes));
        return attributes.pszText;
    });
}
} // namespace

void ListView::create(HWND parent, const RECT& rect, unsigned long style, HINSTANCE module)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    create(WC_LISTVIEWW, L"", WS_CHILD | style, rect, parent, nullptr, module);
}

int ListView::insertColumn(unsigned column, const LVCOLUMNA& attributes) const
{
    return insertColumnOf<char>(*this, column, attributes);
}
int ListView::insertColumn(unsigned column, const LVCOLUMNW& attributes) const
{
    return insertColumnOf<wchar_t>(*this, column, attributes);
}
int ListView::insertColumn(unsigned column, const char* text, int width, int format) const
{
    return insertColumnInto(*this, column, text, width, format, static_cast<int>(column));
}
int ListView::insertColumn(unsigned column, const wchar_t* text, int width, int format) const
{
    return insertColumnInto(*this, column, text, width, format, static_cast<int>(column));
}
int ListView::insertColumn(unsigned column, const char* text, int width, int format, int subitem) const
{
    return insertColumnInto(*this, column, text, width, format, subitem);
}
int ListView::insertColumn(unsigned column, const wchar_t* text, int width, int format, int subitem) const
{
    return insertColumnInto(*this, column, text, width, format, subitem);
}
int ListView::getColumnWidth(unsigned column) const
{
    return static_cast<int>(sendMessageA(LVM_GETCOLUMNWIDTH, column));
}

int ListView::insertItem(const LVITEMA& item) const { return insertItemOf<char>(*this, item); }
int ListView::insertItem(const LVITEMW& item) const { return insertItemOf<wchar_t>(*this, item); }
int ListView::insertItem(const char* text, int image) const
{
    return insertInto(*this, atEnd, 0, text, nullptr, image);
}
int ListView::insertItem(const wchar_t* text, int image) const
{
    return insertInto(*this, atEnd, 0, text, nullptr, image);
}
int ListView::insertItem(const char* text, const void* data, int image) const
{
    return insertInto(*this, atEnd, 0, text, &data, image);
}
int ListView::insertItem(const wchar_t* text, const void* data, int image) const
{
    return insertInto(*this, atEnd, 0, text, &data, image);
}
int ListView::insertItem(unsigned item, unsigned subitem, const char* text, int image) const
{
    return insertInto(*this, item, subitem, text, nullptr, image);
}
int ListView::insertItem(unsigned item, unsigned subitem, const wchar_t* text, int image) const
{
    return insertInto(*this, item, subitem, text, nullptr, image);
}
int ListView::insertItem(unsigned item, unsigned subitem, const char* text, const void* data, int image) const
{
    return insertInto(*this, item, subitem, text, &data, image);
}
int ListView::insertItem(unsigned item, unsigned subitem, const wchar_t* text, const void* data, int image) const
{
    return insertInto(*this, item, subitem, text, &data, image);
}

void ListView::getItem(LVITEMA& item) const { getItemOf<char>(*this, item); }
void ListView::getItem(LVITEMW& item) const { getItemOf<wchar_t>(*this, item); }
void ListView::setItem(const LVITEMA& item) const { setItemOf<char>(*this, item); }
void ListView::setItem(const LVITEMW& item) const { setItemOf<wchar_t>(*this, item); }
void ListView::setItemImage(unsigned item, unsigned subitem, int image) const
{
    LVITEMW attributes{};
    attributes.mask = LVIF_IMAGE;
    attributes.iItem = static_cast<int>(item);
    attributes.iSubItem = static_cast<int>(subitem);
    attributes.iImage = image;
    setItem(attributes);
}
void ListView::setItemText(unsigned item, const LVITEMA& text) const { setTextOf<char>(*this, item, text); }
void ListView::setItemText(unsigned item, const LVITEMW& text) const { setTextOf<wchar_t>(*this, item, text); }
void ListView::setItemText(unsigned item, const char* text, unsigned subitem) const
{
    setSubitemText(*this, item, text, subitem);
}
void ListView::setItemText(unsigned item, const wchar_t* text, unsigned subitem) const
{
    setSubitemText(*this, item, text, subitem);
}
BasicString<char> ListView::getItemTextA(unsigned item, unsigned subitem) const
{
    return textOfItem<char>(*this, item, subitem);
}
BasicString<wchar_t> ListView::getItemTextW(unsigned item, unsigned subitem) const
{
    return textOfItem<wchar_t>(*this, item, subitem);
}
void* ListView::getItemData(unsigned item) const
{
    LVITEMW attributes{};
    attributes.mask = LVIF_PARAM;
    attributes.iItem = static_cast<int>(item);
    return sendMessageA(LVM_GETITEMW, 0, toLParam(&attributes)) ? toPointer(attributes.lParam) : nullptr;
}

void ListView::deleteItem(unsigned item) const
{
    ensureSent(*this, FALSE, "Can't delete listview item", LVM_DELETEITEM, item);
}
void ListView::deleteAllItems() const { ensureSent(*this, FALSE, "Can't delete listview item", LVM_DELETEALLITEMS); }
unsigned ListView::getItemCount() const { return static_cast<unsigned>(sendMessageA(LVM_GETITEMCOUNT)); }

unsigned ListView::getSlectedItemCount() const { return static_cast<unsigned>(sendMessageA(LVM_GETSELECTEDCOUNT)); }
int ListView::getNextItem(int start, unsigned flags) const
{
    return static_cast<int>(sendMessageA(LVM_GETNEXTITEM, static_cast<WPARAM>(start), MAKELPARAM(flags, 0)));
}
int ListView::getNextSelectedItem(int start) const { return getNextItem(start, LVNI_SELECTED); }

void ListView::ensureVisible(unsigned item, bool partialOk) const
{
    ensureSent(*this, FALSE, "Can't make list view item visible", LVM_ENSUREVISIBLE, item, partialOk);
}

// A mask of 0 means all bits.
unsigned long ListView::setExtendedListViewStyle(unsigned long style) const
{
    return setExtendedListViewStyle(0, style);
}
unsigned long ListView::setExtendedListViewStyle(unsigned long mask, unsigned long style) const
{
    return static_cast<unsigned long>(sendMessageA(LVM_SETEXTENDEDLISTVIEWSTYLE, mask, static_cast<LPARAM>(style)));
}

void ListView::swapImageList(imagelist which, ImageList& list) const
{
    const LRESULT former = sendMessageA(LVM_SETIMAGELIST, static_cast<WPARAM>(which), toLParam(list.getHandle()));
    if (toPointer(sendMessageA(LVM_GETIMAGELIST, static_cast<WPARAM>(which))) != list.getHandle())
        return; // Not taken; a view that is gone for instance.
    list.detach();
    list.attach(static_cast<HIMAGELIST>(toPointer(former)));
}
} // namespace tarn
