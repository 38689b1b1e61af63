#include <tarn/ListView.h>

#include <tarn/HeaderControl.h>
#include <tarn/ImageList.h>

#include "../windowing/HandlerScope.h"
#include "ControlMessages.h"
#include "ItemApi.h"
#include "ItemText.h"

#include <climits>
#include <utility>

namespace tarn {
namespace {
constexpr unsigned atEnd = INT_MAX;

struct Sorting {
    const std::function<int(const void*, const void*)>& compare;
    bool hasFailed;
};

// After a failure everything is equal, so that the control soon comes to its end.
int CALLBACK compareItems(LPARAM a, LPARAM b, LPARAM data)
{
    auto& sorting = *static_cast<Sorting*>(toPointer(data));
    if (sorting.hasFailed)
        return 0;
    try {
        return sorting.compare(toPointer(a), toPointer(b));
    } catch (...) {
        sorting.hasFailed = true;
        HandlerScope::keepCurrentException({"the comparison of items of a list view", nullptr, 0},
                                           __builtin_return_address(0));
        return 0;
    }
}

void setState(const ListView& view, unsigned item, unsigned mask, unsigned state)
{
    LVITEMW attributes{};
    attributes.stateMask = mask;
    attributes.state = state;
    ensureSent(view, FALSE, "Can't set item", LVM_SETITEMSTATE, item, toLParam(&attributes));
}

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

// As much of the text as the control has room for.
template <class Item, class Text> void copyText(const Item& item, const Text& text)
{
    const auto room = static_cast<std::size_t>(item.cchTextMax);
    if (room > 0)
        item.pszText[text.copy(item.pszText, room - 1)] = 0;
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
    loadControls(ICC_LISTVIEW_CLASSES);
    create(WC_LISTVIEWW, L"", WS_CHILD | style, rect, parent, nullptr, module);
}

void ListView::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_LISTVIEWW, parent, id, rect, style);
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

void ListView::setColumnWidth(unsigned column, int width) const
{
    ensureSent(*this, FALSE, "Can't set list view column width", LVM_SETCOLUMNWIDTH, column, width);
}

HWND ListView::getHeader() const { return static_cast<HWND>(toPointer(sendMessageA(LVM_GETHEADER))); }
void ListView::setSortArrow(unsigned column, sort_arrow arrow) const
{
    HeaderControl(getHeader()).setSortArrow(column, arrow);
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

void ListView::sortItems(const std::function<int(const void*, const void*)>& compare) const
{
    Sorting sorting{compare, false};
    ensureSent(*this, FALSE, "Can't sort list view items", LVM_SORTITEMS, reinterpret_cast<WPARAM>(&sorting),
               reinterpret_cast<LPARAM>(&compareItems));
}
void ListView::setItemCount(unsigned count) const
{
    ensureSent(*this, FALSE, "Can't set list view item count", LVM_SETITEMCOUNT, count);
}

// The narrow form of the structure differs in the type of the text alone.
LVITEMW* ListView::itemAskedFor(NMHDR& notification, UINT what)
{
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(notification).item;
    const bool isAsked = notification.code == LVN_GETDISPINFOW || notification.code == LVN_GETDISPINFOA;
    return isAsked && (item.mask & what) ? &item : nullptr;
}
void ListView::giveTextTo(NMHDR& notification, std::wstring_view text)
{
    const LVITEMW& item = reinterpret_cast<const NMLVDISPINFOW&>(notification).item;
    if (notification.code == LVN_GETDISPINFOW)
        copyText(item, text);
    else
        copyText(reinterpret_cast<const LVITEMA&>(item), BasicString<char>(std::wstring(text).c_str()));
}

void ListView::enableGroups(bool enable) const
{
    ensureSent(*this, -1, "Can't change list view groups", LVM_ENABLEGROUPVIEW, enable);
}
int ListView::insertGroup(int group, const char* heading, bool collapsible, int index) const
{
    return insertGroup(group, BasicString<wchar_t>(heading).c_str(), collapsible, index);
}
int ListView::insertGroup(int group, const wchar_t* heading, bool collapsible, int index) const
{
    LVGROUP attributes{};
    attributes.cbSize = sizeof attributes;
    attributes.mask = LVGF_HEADER | LVGF_GROUPID | LVGF_STATE;
    attributes.pszHeader = textOf(heading);
    attributes.iGroupId = group;
    attributes.state = collapsible ? LVGS_COLLAPSIBLE : 0;
    attributes.stateMask = LVGS_COLLAPSIBLE;
    return static_cast<int>(ensureSent(*this, -1, "Can't insert list view group", LVM_INSERTGROUP,
                                       static_cast<WPARAM>(index), toLParam(&attributes)));
}
void ListView::setItemGroup(unsigned item, int group) const
{
    LVITEMW attributes{};
    attributes.mask = LVIF_GROUPID;
    attributes.iItem = static_cast<int>(item);
    attributes.iGroupId = group;
    setItem(attributes);
}
int ListView::getItemGroup(unsigned item) const
{
    LVITEMW attributes{};
    attributes.mask = LVIF_GROUPID;
    attributes.iItem = static_cast<int>(item);
    attributes.iGroupId = I_GROUPIDNONE;
    sendMessageA(LVM_GETITEMW, 0, toLParam(&attributes));
    return attributes.iGroupId;
}
void ListView::removeAllGroups() const { sendMessageA(LVM_REMOVEALLGROUPS); }

void ListView::setSelected(unsigned item, bool selected) const
{
    setState(*this, item, LVIS_SELECTED, selected ? LVIS_SELECTED : 0u);
}
bool ListView::isSelected(unsigned item) const { return sendMessageA(LVM_GETITEMSTATE, item, LVIS_SELECTED) != 0; }
// The pictures of the boxes are numbered from 1 on: empty, checked.
void ListView::setChecked(unsigned item, bool isOn) const
{
    setState(*this, item, LVIS_STATEIMAGEMASK, INDEXTOSTATEIMAGEMASK(isOn ? 2u : 1u));
}
bool ListView::isChecked(unsigned item) const
{
    return sendMessageA(LVM_GETITEMSTATE, item, LVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2);
}
void ListView::editItem(unsigned item) const
{
    setFocus(); // The control edits nothing without it.
    ensureSent(*this, 0, "Can't edit list view item", LVM_EDITLABELW, item);
}

std::optional<ListView::EditedText> ListView::getEditedText(const NMHDR& notification)
{
    const LVITEMW& item = reinterpret_cast<const NMLVDISPINFOW&>(notification).item;
    const bool isNarrow = notification.code == LVN_ENDLABELEDITA;
    if ((!isNarrow && notification.code != LVN_ENDLABELEDITW) || !item.pszText)
        return std::nullopt;
    BasicString<wchar_t> text(isNarrow ? BasicString<wchar_t>(reinterpret_cast<const LVITEMA&>(item).pszText)
                                       : BasicString<wchar_t>(item.pszText));
    return EditedText{static_cast<unsigned>(item.iItem), std::move(text)};
}

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
