#include <tarn/ListView.h>

#include <tarn/ImageList.h>

#include "ControlMessages.h"
#include "ItemApi.h"
#include "ItemText.h"

#include <climits>

namespace tarn {
namespace {
constexpr unsigned atEnd = INT_MAX;

template <class Ch> typename ItemApi<Ch>::ListColumn columnWith(const Ch* text, int width, int format, unsigned subitem)
{
    typename ItemApi<Ch>::ListColumn column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    column.fmt = format;
    column.cx = width;
    column.pszText = textOf(text);
    column.iSubItem = static_cast<int>(subitem);
    return column;
}

template <class Ch> typename ItemApi<Ch>::ListItem itemWith(unsigned item, unsigned subitem, const Ch* text, int image)
{
    typename ItemApi<Ch>::ListItem attributes{};
    attributes.mask = LVIF_TEXT | LVIF_IMAGE;
    attributes.iItem = static_cast<int>(item);
    attributes.iSubItem = static_cast<int>(subitem);
    attributes.pszText = textOf(text);
    attributes.iImage = image;
    return attributes;
}

template <class Item> Item withData(Item attributes, const void* data)
{
    attributes.mask |= LVIF_PARAM;
    attributes.lParam = toLParam(data);
    return attributes;
}

// Each sends one message, in either width.
int insertColumnBy(UINT msg, const ListView& view, unsigned column, const void* attributes)
{
    return static_cast<int>(ensureSent(view, -1, "Can't insert list view column", msg, column, toLParam(attributes)));
}
int insertItemBy(UINT msg, const ListView& view, const void* item)
{
    return static_cast<int>(ensureSent(view, -1, "Can't insert list view item", msg, 0, toLParam(item)));
}
void getItemBy(UINT msg, const ListView& view, void* item)
{
    ensureSent(view, FALSE, "Can't get listview item", msg, 0, toLParam(item));
}
void setItemBy(UINT msg, const ListView& view, const void* item)
{
    ensureSent(view, FALSE, "Can't set item", msg, 0, toLParam(item));
}
void setTextBy(UINT msg, const ListView& view, unsigned item, const void* text)
{
    ensureSent(view, FALSE, "Can't set item text", msg, item, toLParam(text));
}

template <class Ch> BasicString<Ch> itemText(const ListView& view, unsigned item, unsigned subitem)
{
    return readItemText<Ch>([&](Ch* buffer, int size) {
        auto attributes = itemWith<Ch>(item, subitem, buffer, 0);
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
    return insertColumnBy(LVM_INSERTCOLUMNA, *this, column, &attributes);
}
int ListView::insertColumn(unsigned column, const LVCOLUMNW& attributes) const
{
    return insertColumnBy(LVM_INSERTCOLUMNW, *this, column, &attributes);
}
int ListView::insertColumn(unsigned column, const char* text, int width, int format) const
{
    return insertColumn(column, columnWith(text, width, format, column));
}
int ListView::insertColumn(unsigned column, const wchar_t* text, int width, int format) const
{
    return insertColumn(column, columnWith(text, width, format, column));
}
int ListView::insertColumn(unsigned column, const char* text, int width, int format, int subitem) const
{
    return insertColumn(column, columnWith(text, width, format, static_cast<unsigned>(subitem)));
}
int ListView::insertColumn(unsigned column, const wchar_t* text, int width, int format, int subitem) const
{
    return insertColumn(column, columnWith(text, width, format, static_cast<unsigned>(subitem)));
}
int ListView::getColumnWidth(unsigned column) const
{
    return static_cast<int>(sendMessageA(LVM_GETCOLUMNWIDTH, column));
}

int ListView::insertItem(const LVITEMA& item) const { return insertItemBy(LVM_INSERTITEMA, *this, &item); }
int ListView::insertItem(const LVITEMW& item) const { return insertItemBy(LVM_INSERTITEMW, *this, &item); }
int ListView::insertItem(const char* text, int image) const { return insertItem(atEnd, 0, text, image); }
int ListView::insertItem(const wchar_t* text, int image) const { return insertItem(atEnd, 0, text, image); }
int ListView::insertItem(const char* text, const void* data, int image) const
{
    return insertItem(atEnd, 0, text, data, image);
}
int ListView::insertItem(const wchar_t* text, const void* data, int image) const
{
    return insertItem(atEnd, 0, text, data, image);
}
int ListView::insertItem(unsigned item, unsigned subitem, const char* text, int image) const
{
    return insertItem(itemWith(item, subitem, text, image));
}
int ListView::insertItem(unsigned item, unsigned subitem, const wchar_t* text, int image) const
{
    return insertItem(itemWith(item, subitem, text, image));
}
int ListView::insertItem(unsigned item, unsigned subitem, const char* text, const void* data, int image) const
{
    return insertItem(withData(itemWith(item, subitem, text, image), data));
}
int ListView::insertItem(unsigned item, unsigned subitem, const wchar_t* text, const void* data, int image) const
{
    return insertItem(withData(itemWith(item, subitem, text, image), data));
}

void ListView::getItem(LVITEMA& item) const { getItemBy(LVM_GETITEMA, *this, &item); }
void ListView::getItem(LVITEMW& item) const { getItemBy(LVM_GETITEMW, *this, &item); }
void ListView::setItem(const LVITEMA& item) const { setItemBy(LVM_SETITEMA, *this, &item); }
void ListView::setItem(const LVITEMW& item) const { setItemBy(LVM_SETITEMW, *this, &item); }
void ListView::setItemImage(unsigned item, unsigned subitem, int image) const
{
    LVITEMW attributes{};
    attributes.mask = LVIF_IMAGE;
    attributes.iItem = static_cast<int>(item);
    attributes.iSubItem = static_cast<int>(subitem);
    attributes.iImage = image;
    setItem(attributes);
}
void ListView::setItemText(unsigned item, const LVITEMA& text) const
{
    setTextBy(LVM_SETITEMTEXTA, *this, item, &text);
}
void ListView::setItemText(unsigned item, const LVITEMW& text) const
{
    setTextBy(LVM_SETITEMTEXTW, *this, item, &text);
}
void ListView::setItemText(unsigned item, const char* text, unsigned subitem) const
{
    setItemText(item, itemWith(item, subitem, text, 0));
}
void ListView::setItemText(unsigned item, const wchar_t* text, unsigned subitem) const
{
    setItemText(item, itemWith(item, subitem, text, 0));
}
BasicString<char> ListView::getItemTextA(unsigned item, unsigned subitem) const
{
    return itemText<char>(*this, item, subitem);
}
BasicString<wchar_t> ListView::getItemTextW(unsigned item, unsigned subitem) const
{
    return itemText<wchar_t>(*this, item, subitem);
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
