#include "Controls.h"

#include <tarn/ListView.h>
#include <tarn/TreeView.h>

namespace {
template <class Ch> BasicString<Ch> text(const char* s) { return BasicString<Ch>(s); }

template <class Ch> BasicString<Ch> itemText(const ListView& view, unsigned item, unsigned subitem)
{
    if constexpr (std::is_same_v<Ch, char>)
        return view.getItemTextA(item, subitem);
    else
        return view.getItemTextW(item, subitem);
}

int imageOf(const ListView& view, int item)
{
    LVITEMW attributes{};
    attributes.mask = LVIF_IMAGE;
    attributes.iItem = item;
    view.getItem(attributes);
    return attributes.iImage;
}

using ListHost = Hosted<ListView>;
} // namespace

TEMPLATE_TEST_CASE("ListView: items and columns of both widths come back as they were set", "", char, wchar_t)
{
    using Ch = TestType;
    const ListHost host(WC_LISTVIEWW, LVS_REPORT);
    const ListView& view = host.control;
    CHECK(view.insertColumn(0, text<Ch>("name"), 60) == 0);
    CHECK(view.insertColumn(1, text<Ch>("size"), 70, LVCFMT_RIGHT, 1) == 1);
    LVCOLUMNW column{};
    column.mask = LVCF_FMT | LVCF_SUBITEM;
    view.sendMessageA(LVM_GETCOLUMNW, 1, reinterpret_cast<LPARAM>(&column));
    CHECK((column.iSubItem == 1 && (column.fmt & LVCFMT_JUSTIFYMASK) == LVCFMT_RIGHT));
    CHECK((view.getColumnWidth(1) == 70 && view.getColumnWidth(9) == 0));

    CHECK((view.insertItem(text<Ch>("c"), 3) == 0 && view.insertItem(text<Ch>("d"), &host, 4) == 1));
    CHECK((view.insertItem(0, 0, text<Ch>("a"), 5) == 0 && view.insertItem(1, 0, text<Ch>("b"), address, 6) == 1));
    CHECK(view.insertItem(text<Ch>("e")) == 4);
    for (unsigned i = 0; i < 5; ++i)
        CHECK(itemText<Ch>(view, i, 0) == BasicString<Ch>(1, static_cast<Ch>('a' + i)));
    const int images[] = {5, 6, 3, 4, I_IMAGENONE};
    for (int i = 0; i < 5; ++i)
        CHECK(imageOf(view, i) == images[i]);
    CHECK((view.getItemData(1) == address && view.getItemData(3) == &host && !view.getItemData(0)));

    view.setItemText(2, text<Ch>("C"));
    CHECK(itemText<Ch>(view, 2, 0) == text<Ch>("C"));
    for (const int length : {254, 255, 511}) { // Around the ends of the buffers.
        const BasicString<Ch> border(length, Ch('y'));
        view.setItemText(0, border, 1);
        CHECK(itemText<Ch>(view, 0, 1) == border);
    }
    CHECK((itemText<Ch>(view, 99, 0).empty() && !view.getItemData(5)));
    view.setItemImage(2, 0, 1);
    CHECK(imageOf(view, 2) == 1);
    view.deleteItem(0);
    CHECK(itemText<Ch>(view, 1, 0) == text<Ch>("C"));
}

TEST_CASE("ListView: selection, styles and scrolling")
{
    const ListHost host(WC_LISTVIEWW, LVS_REPORT);
    const ListView& view = host.control;
    for (int i = 0; i < 40; ++i)
        view.insertItem("item");
    LVITEMA selected{};
    selected.mask = LVIF_STATE;
    selected.state = selected.stateMask = LVIS_SELECTED;
    for (selected.iItem = 3; selected.iItem < 20; selected.iItem += 14)
        view.setItem(selected);
    CHECK((view.getSlectedItemCount() == 2 && view.getNextSelectedItem(-1) == 3 && view.getNextSelectedItem(3) == 17));
    CHECK((view.getNextItem(17, LVNI_SELECTED) == -1 && view.getNextItem(5, LVNI_ALL) == 6));
    view.ensureVisible(39, false);
    CHECK(view.sendMessageA(LVM_GETTOPINDEX) > 0);
    view.setExtendedListViewStyle(LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    view.setExtendedListViewStyle(LVS_EX_GRIDLINES, 0);
    CHECK(view.setExtendedListViewStyle(0) == LVS_EX_FULLROWSELECT);
}

TEST_CASE("ListView: items are sorted by their data, and an arrow shows the column")
{
    const ListHost host(WC_LISTVIEWW, LVS_REPORT);
    const ListView& view = host.control;
    const int numbers[] = {3, 1, 2};
    for (const int& sorted : numbers)
        view.insertItem(BasicString<wchar_t>::fromInt(sorted), &sorted);
    for (unsigned i = 0; i < 2; ++i)
        view.insertColumn(i, "column", 40);
    const auto order = [](const void* a, const void* b) {
        return *static_cast<const int*>(a) - *static_cast<const int*>(b);
    };
    view.sortItems(order);
    CHECK((view.getItemTextA(0, 0) == "1" && view.getItemTextA(2, 0) == "3"));
    int calls = 0;
    const auto fail = [&](const void*, const void*) -> int {
        throw std::runtime_error(++calls == 1 ? "first" : "next");
    };
    expectError<std::runtime_error>([&] { view.sortItems(fail); }, "first");
    CHECK(calls == 1);

    const auto arrowOf = [&](unsigned column) {
        HDITEMW heading{};
        heading.mask = HDI_FORMAT;
        SendMessageW(HWND(view.sendMessageA(LVM_GETHEADER)), HDM_GETITEMW, column, reinterpret_cast<LPARAM>(&heading));
        return heading.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    };
    view.setSortArrow(0, ListView::ascending);
    view.setSortArrow(1, ListView::descending);
    CHECK((arrowOf(0) == 0 && arrowOf(1) == HDF_SORTDOWN));
    view.setColumnWidth(1, 77);
    CHECK(view.getColumnWidth(1) == 77);
    view.setColumnWidth(1, LVSCW_AUTOSIZE_USEHEADER);
    CHECK(view.getColumnWidth(1) != 77);
    expectWindowsError([&] { view.setColumnWidth(9, 1); }, "Can't set list view column width");
    expectWindowsError([] { ListView().setSortArrow(0, ListView::ascending); }, "Can't set sort arrow");
}

TEST_CASE("ListView: items are checked, selected and edited by code; a virtual view asks for their texts")
{
    const ListHost host(WC_LISTVIEWW, LVS_REPORT | LVS_EDITLABELS);
    const ListView& view = host.control;
    view.setExtendedListViewStyle(LVS_EX_CHECKBOXES);
    view.insertItem("a");
    view.insertItem("b");
    view.setChecked(1, true);
    view.setSelected(0, true);
    CHECK((view.isChecked(1) && !view.isChecked(0) && view.isSelected(0) && !view.isSelected(1)));
    view.setChecked(1, false);
    view.setSelected(0, false);
    CHECK((!view.isChecked(1) && view.getSlectedItemCount() == 0));
    view.setSelected(static_cast<unsigned>(-1), true);
    CHECK(view.getSlectedItemCount() == 2);
    view.editItem(1);
    CHECK(view.sendMessageA(LVM_GETEDITCONTROL) != 0);
    expectWindowsError([&] { view.setChecked(9, true); }, "Can't set item");
    expectWindowsError([&] { view.editItem(9); }, "Can't edit list view item");
    struct : Host {
        LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
        {
            const auto text = [](unsigned item, unsigned subitem) {
                return BasicString<wchar_t>::fromInt(item) + std::wstring(subitem ? 300u : 0u, L'\xE9');
            };
            const auto image = [](unsigned item, unsigned) { return static_cast<int>(item) % 7; };
            if (msg == WM_NOTIFY && (ListView::giveText(*reinterpret_cast<NMHDR*>(lParam), text) ||
                                     ListView::giveImage(*reinterpret_cast<NMHDR*>(lParam), image)))
                return 0;
            return Host::onMessage(msg, wParam, lParam);
        }
    } virtualHost;
    ListView large;
    large.create(virtualHost, 9, Rect(0, 0, 90, 90), LVS_REPORT | LVS_OWNERDATA);
    large.insertColumn(0, "column", 40);
    large.insertColumn(1, "column", 40);
    large.setItemCount(1000000);
    CHECK((large.getItemCount() == 1000000 && large.getItemTextW(999999, 0) == L"999999"));
    const std::wstring cut = large.getItemTextW(5, 1);
    CHECK((cut.size() >= 200 && cut[0] == L'5' && cut.find_first_not_of(L'\xE9', 1) == cut.npos));
    CHECK((large.getItemTextA(7, 0) == "7" && imageOf(large, 12) == 5));
}

TEMPLATE_TEST_CASE("ListView: a text is given as far as there is room, to who asks for it", "", char, wchar_t)
{
    constexpr bool isNarrow = std::is_same_v<TestType, char>;
    std::conditional_t<isNarrow, NMLVDISPINFOA, NMLVDISPINFOW> asked{};
    TestType buffer[] = {'-', '-', '-', '-', '-'};
    asked.hdr.code = isNarrow ? LVN_GETDISPINFOA : LVN_GETDISPINFOW;
    asked.item.pszText = buffer;
    const auto give = [&](unsigned mask, int room) {
        asked.item.mask = mask;
        asked.item.cchTextMax = room;
        return ListView::giveText(asked.hdr, [](unsigned, unsigned) { return L"text"; });
    };
    CHECK((give(LVIF_TEXT, 0) && !give(LVIF_IMAGE, 5) && buffer[0] == '-'));
    CHECK((give(LVIF_TEXT, 4) && buffer == text<TestType>("tex") && buffer[4] == '-'));
    CHECK((give(LVIF_TEXT, 5) && buffer == text<TestType>("text")));
    asked.hdr.code = NM_CLICK;
    CHECK(!give(LVIF_TEXT, 5));
}

TEMPLATE_TEST_CASE("ListView: what the user has made of a text is told, and decided on", "", char, wchar_t)
{
    struct : Host {
        LRESULT onNotifyToAnswer(NMHDR& header) override
        {
            const auto edited = ListView::getEditedText(header);
            if (!edited)
                return Host::onNotifyToAnswer(header);
            heard += BasicString<wchar_t>::fromInt(edited->item) + edited->text;
            return edited->text != L"no";
        }
        std::wstring heard;
    } host;
    ListView view;
    view.create(host, 9, Rect(0, 0, 90, 90), LVS_REPORT | LVS_EDITLABELS);
    view.sendMessageA(CCM_SETUNICODEFORMAT, std::is_same_v<TestType, wchar_t>);
    view.insertColumn(0, "column", 80);
    view.insertItem("a");
    view.insertItem("b");
    const auto enter = [&](const wchar_t* text, WPARAM key) {
        view.editItem(1);
        const Window field(static_cast<HWND>(reinterpret_cast<void*>(view.sendMessageA(LVM_GETEDITCONTROL))));
        field.setText(text);
        SendMessageW(field, WM_KEYDOWN, key, 0);
        SendMessageW(field, WM_CHAR, key, 0);
    };
    enter(L"yes", VK_RETURN);
    CHECK(view.getItemTextW(1, 0) == L"yes");
    enter(L"no", VK_RETURN);
    enter(L"never", VK_ESCAPE);
    CHECK((view.getItemTextW(1, 0) == L"yes" && host.heard == L"1yes1no"));
}

TEMPLATE_TEST_CASE("ListView: what the control refuses is named", "", LVITEMA, LVITEMW)
{
    const ListHost host(WC_LISTVIEWW, LVS_REPORT);
    const ListView& view = host.control;
    const ListView gone;
    using Ch = std::remove_pointer_t<decltype(TestType::pszText)>;
    const BasicString<Ch> x = text<Ch>("x");
    TestType missing{};
    missing.mask = LVIF_PARAM;
    missing.iItem = 7;
    const auto fails = [](auto call, const char* what) { expectWindowsError(call, what); };
    fails([&] { view.getItem(missing); }, "Can't get listview item");
    fails([&] { view.setItem(missing); }, "Can't set item");
    fails([&] { view.setItemImage(7, 0, 1); }, "Can't set item");
    fails([&] { view.setItemText(7, x); }, "Can't set item text");
    fails([&] { view.insertItem(0, 1, x); }, "Can't insert list view item"); // A subitem.
    fails([&] { view.deleteItem(7); }, "Can't delete listview item");
    fails([&] { view.ensureVisible(7, true); }, "Can't make list view item visible");
    fails([&] { gone.insertColumn(0, x, 10); }, "Can't insert list view column");
    fails([&] { gone.insertItem(x); }, "Can't insert list view item");
    fails([&] { gone.deleteAllItems(); }, "Can't delete listview item");
    fails([&] { gone.setItemCount(1); }, "Can't set list view item count");
    fails([&] { gone.sortItems([](const void*, const void*) { return 0; }); }, "Can't sort list view items");
    CHECK(itemText<Ch>(gone, 0, 0).empty());
}

TEST_CASE("ListView: groups are told to the control as it is documented, which Wine's does not know")
{
    struct : Window {
        LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
        {
            if (msg == LVM_ENABLEGROUPVIEW)
                return isOn = wParam != FALSE, answer;
            if (msg == LVM_REMOVEALLGROUPS)
                return heading.clear(), 0;
            if (msg == LVM_INSERTGROUP) {
                group = *reinterpret_cast<const LVGROUP*>(lParam);
                heading = group.pszHeader;
                return answer ? answer : static_cast<LRESULT>(wParam) + 10;
            }
            if (msg == LVM_SETITEMW)
                return item = *reinterpret_cast<const LVITEMW*>(lParam), TRUE;
            if (msg == LVM_GETITEMW)
                return reinterpret_cast<LVITEMW*>(lParam)->iGroupId = item.iGroupId, TRUE;
            return Window::onMessage(msg, wParam, lParam);
        }
        LRESULT answer = 0;
        bool isOn = false;
        LVGROUP group{};
        std::wstring heading;
        LVITEMW item{};
    } control;
    open(control);
    const ListView view(control.getWindowHandle());
    view.enableGroups(true);
    CHECK(control.isOn);
    CHECK((view.insertGroup(7, "narrow", true, 2) == 12 && control.heading == L"narrow"));
    CHECK((control.group.iGroupId == 7 && control.group.state == LVGS_COLLAPSIBLE && control.group.cbSize != 0));
    CHECK(control.group.mask == (LVGF_HEADER | LVGF_GROUPID | LVGF_STATE));
    CHECK((view.insertGroup(8, L"\u03B1") == 9 && control.heading == L"\u03B1" && control.group.state == 0));
    view.removeAllGroups();
    CHECK(control.heading.empty());
    view.setItemGroup(3, 8);
    CHECK((control.item.iItem == 3 && control.item.mask == LVIF_GROUPID && view.getItemGroup(3) == 8));
    CHECK(ListView().getItemGroup(0) == I_GROUPIDNONE);
    control.answer = -1;
    expectWindowsError([&] { view.enableGroups(true); }, "Can't change list view groups");
    expectWindowsError([&] { view.insertGroup(1, L"x"); }, "Can't insert list view group");
}

TEMPLATE_TEST_CASE("Views: a text that the control keeps elsewhere is read there", "", ListView, TreeView)
{
    /// Redirects the reader of an item's text.
    struct Redirecting : Window {
        Redirecting() { open(*this); }
        LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
        {
            if (msg == LVM_GETITEMTEXTW)
                return reinterpret_cast<LVITEMW*>(lParam)->pszText = text, 4;
            if (msg == TVM_GETITEMW)
                return reinterpret_cast<TVITEMEXW*>(lParam)->pszText = text, TRUE;
            return Window::onMessage(msg, wParam, lParam);
        }
        wchar_t* text = nullptr;
    } control;
    const TestType view(control.getWindowHandle());
    const auto read = [&] {
        if constexpr (std::is_same_v<TestType, ListView>)
            return view.getItemTextW(0, 0);
        else
            return view.getItemTextW(nullptr);
    };
    std::wstring kept(300, L'x');
    control.text = kept.data();
    CHECK(read() == kept);
    for (wchar_t* const none : {static_cast<wchar_t*>(nullptr), LPSTR_TEXTCALLBACKW}) {
        control.text = none;
        CHECK(read().empty());
    }
}
