#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/ListView.h>
#include <tarn/StatusBar.h>
#include <tarn/TreeView.h>
#include <tarn/WindowClass.h>

#include <climits>
#include <string>
#include <vector>

// Filling and reading a list view and a tree view, against the same messages sent by hand, unchecked. Both
// sides use the same control by turns, and it has no scroll bars, whose updates would take most of the time.

namespace {
constexpr int items = 50000, nodes = 20000, branch = 100;

struct Row {
    std::wstring name, size, date;
};

std::vector<Row> makeRows()
{
    std::vector<Row> rows;
    for (int i = 0; i < items; ++i) {
        const std::wstring number = std::to_wstring(i);
        rows.push_back({L"file " + number + L".txt", number + L" KB", L"2024-05-" + std::to_wstring(1 + i % 28)});
    }
    return rows;
}

LPARAM param(const void* address) { return reinterpret_cast<LPARAM>(address); }

void fill(const tarn::ListView& view, const std::vector<Row>& rows)
{
    view.deleteAllItems();
    for (const Row& row : rows) {
        const auto item = static_cast<unsigned>(view.insertItem(row.name.c_str(), 0));
        view.setItemText(item, row.size.c_str(), 1);
        view.setItemText(item, row.date.c_str(), 2);
    }
}
void fillRaw(HWND view, const std::vector<Row>& rows)
{
    SendMessageW(view, LVM_DELETEALLITEMS, 0, 0);
    for (const Row& row : rows) {
        LVITEMW item{};
        item.mask = LVIF_TEXT | LVIF_IMAGE;
        item.iItem = INT_MAX;
        item.pszText = const_cast<wchar_t*>(row.name.c_str());
        const auto index = static_cast<WPARAM>(SendMessageW(view, LVM_INSERTITEMW, 0, param(&item)));
        item.iSubItem = 1;
        item.pszText = const_cast<wchar_t*>(row.size.c_str());
        SendMessageW(view, LVM_SETITEMTEXTW, index, param(&item));
        item.iSubItem = 2;
        item.pszText = const_cast<wchar_t*>(row.date.c_str());
        SendMessageW(view, LVM_SETITEMTEXTW, index, param(&item));
    }
}

void read(const tarn::ListView& view)
{
    std::size_t length = 0;
    for (unsigned item = 0; item < items; ++item) {
        for (unsigned subitem = 0; subitem < 3; ++subitem)
            length += view.getItemTextW(item, subitem).size();
    }
    bench::keep(length);
}
void readRaw(HWND view)
{
    std::size_t length = 0;
    for (unsigned item = 0; item < items; ++item) {
        for (int subitem = 0; subitem < 3; ++subitem) {
            wchar_t text[256];
            LVITEMW wanted{};
            wanted.iSubItem = subitem;
            wanted.pszText = text;
            wanted.cchTextMax = 256;
            SendMessageW(view, LVM_GETITEMTEXTW, item, param(&wanted));
            length += std::wstring(text).size();
        }
    }
    bench::keep(length);
}

void fill(const tarn::TreeView& tree, const std::vector<Row>& rows)
{
    tree.deleteAllItems();
    HTREEITEM parent = nullptr;
    for (int i = 0; i < nodes; ++i) {
        const wchar_t* const name = rows[static_cast<std::size_t>(i)].name.c_str();
        if (i % branch == 0)
            parent = tree.insertItem(name, 0, 1);
        else
            tree.insertItem(name, 0, 1, parent, TVI_LAST);
    }
}
void fillTreeRaw(HWND tree, const std::vector<Row>& rows)
{
    SendMessageW(tree, TVM_DELETEITEM, 0, param(TVI_ROOT));
    HTREEITEM parent = nullptr;
    for (int i = 0; i < nodes; ++i) {
        TVINSERTSTRUCTW item{};
        item.hParent = i % branch ? parent : TVI_ROOT;
        item.hInsertAfter = TVI_LAST;
        item.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        item.item.pszText = const_cast<wchar_t*>(rows[static_cast<std::size_t>(i)].name.c_str());
        item.item.iSelectedImage = 1;
        const LRESULT made = SendMessageW(tree, TVM_INSERTITEMW, 0, param(&item));
        if (i % branch == 0)
            parent = reinterpret_cast<HTREEITEM>(made);
    }
}

/// A hidden window with one control.
class Host : public tarn::Window {
public:
    Host(const wchar_t* childClass, unsigned long style)
        : windowClass_(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, GetModuleHandleW(nullptr))
    {
        const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
        InitCommonControlsEx(&classes);
        create(windowClass_, L"", WS_OVERLAPPEDWINDOW, tarn::Rect(0, 0, 300, 300), nullptr, nullptr, nullptr);
        child = CreateWindowExW(0, childClass, L"", WS_CHILD | style, 0, 0, 200, 200, *this, nullptr, nullptr, nullptr);
    }
    ~Host() noexcept override { destroy(); }

    HWND child = nullptr;

private:
    tarn::WindowClass windowClass_;
};

/// A virtual list view, whose parent answers by the library's helper or by hand.
class Asked : public tarn::Window {
public:
    Asked(const std::vector<Row>& rows, bool isOurs)
        : rows_(rows), isOurs_(isOurs),
          windowClass_(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, GetModuleHandleW(nullptr))
    {
        create(windowClass_, L"", WS_OVERLAPPEDWINDOW, tarn::Rect(0, 0, 300, 300), nullptr, nullptr, nullptr);
        list_.create(*this, 1, tarn::Rect(0, 0, 200, 200), LVS_REPORT | LVS_OWNERDATA | LVS_NOSCROLL);
        list_.insertColumn(0, L"column", 80);
        list_.setItemCount(items);
    }
    ~Asked() noexcept override { destroy(); }

    LRESULT onNotifyToAnswer(NMHDR& header) override
    {
        if (isOurs_) {
            const auto text = [this](unsigned item, unsigned) -> const std::wstring& { return rows_[item].name; };
            return tarn::ListView::giveText(header, text) ? 0 : Window::onNotifyToAnswer(header);
        }
        if (header.code != LVN_GETDISPINFOW)
            return Window::onNotifyToAnswer(header);
        LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(header).item;
        if (item.mask & LVIF_TEXT)
            lstrcpynW(item.pszText, rows_[static_cast<std::size_t>(item.iItem)].name.c_str(), item.cchTextMax);
        return 0;
    }

    void ask() const
    {
        for (WPARAM i = 0; i < 20000; ++i) {
            wchar_t text[256];
            LVITEMW wanted{};
            wanted.pszText = text;
            wanted.cchTextMax = 256;
            bench::keep(SendMessageW(list_, LVM_GETITEMTEXTW, i, param(&wanted)));
        }
    }

private:
    const std::vector<Row>& rows_;
    bool isOurs_;
    tarn::WindowClass windowClass_;
    tarn::ListView list_;
};

/// A list view that is sorted by the sizes of its rows, turned round each time.
class Sorted {
public:
    explicit Sorted(const std::vector<Row>& rows)
    {
        list_.insertColumn(0, L"column", 80);
        for (std::size_t i = 0; i < 2000; ++i)
            list_.insertItem(rows[i].name.c_str(), &rows[i]);
    }

    void sort() const
    {
        list_.sortItems([this](const void* a, const void* b) { return order(a, b); });
        isAscending_ = !isAscending_;
    }
    void sortRaw() const
    {
        SendMessageW(list_, LVM_SORTITEMS, reinterpret_cast<WPARAM>(this), reinterpret_cast<LPARAM>(&compare));
        isAscending_ = !isAscending_;
    }

private:
    int order(const void* a, const void* b) const
    {
        const int order = static_cast<const Row*>(a)->size.compare(static_cast<const Row*>(b)->size);
        return isAscending_ ? order : -order;
    }
    static int CALLBACK compare(LPARAM a, LPARAM b, LPARAM self)
    {
        return reinterpret_cast<const Sorted*>(self)->order(reinterpret_cast<const void*>(a),
                                                            reinterpret_cast<const void*>(b));
    }

    mutable bool isAscending_ = true;
    Host host_{WC_LISTVIEWW, LVS_REPORT | LVS_NOSCROLL};
    tarn::ListView list_{host_.child};
};
} // namespace

TEST_CASE("Controls")
{
    const std::vector<Row> rows = makeRows();
    const Host listHost(WC_LISTVIEWW, LVS_REPORT | LVS_NOSCROLL), treeHost(WC_TREEVIEWW, TVS_NOSCROLL);
    const tarn::ListView list(listHost.child);
    const tarn::TreeView tree(treeHost.child);
    for (unsigned column = 0; column < 3; ++column)
        list.insertColumn(column, L"column", 80);

    // The first round would find empty controls and a fresh heap.
    fillRaw(list, rows);
    fillTreeRaw(tree, rows);

    bench::Ratios ratios("Controls");
    ratios.row(
        "list view: 50,000 items of three columns / messages", 1.05, [&] { fill(list, rows); },
        [&] { fillRaw(list, rows); });
    ratios.row(
        "list view: their 150,000 texts / messages", 1.2, [&] { read(list); }, [&] { readRaw(list); });
    ratios.row(
        "tree view: 20,000 nodes / messages", 1.05, [&] { fill(tree, rows); }, [&] { fillTreeRaw(tree, rows); });

    constexpr int turns = 2000;
    const Host barHost(STATUSCLASSNAMEW, 0);
    const tarn::StatusBar bar(barHost.child);
    ratios.row(
        "status bar: 2,000 texts / messages", 1.05,
        [&] {
            for (int i = 0; i < turns; ++i)
                bar.setPartText(0, rows[static_cast<std::size_t>(i)].name.c_str());
        },
        [&] {
            for (int i = 0; i < turns; ++i)
                SendMessageW(bar, SB_SETTEXTW, 0, param(rows[static_cast<std::size_t>(i)].name.c_str()));
        });
    const Asked ours(rows, true), raw(rows, false);
    ratios.row(
        "virtual list view: 20,000 texts asked for / filled in by hand", 1.05, [&] { ours.ask(); }, [&] { raw.ask(); });
    const Sorted sorted(rows);
    ratios.row(
        "list view: 2,000 items sorted / by message", 1.05, [&] { sorted.sort(); }, [&] { sorted.sortRaw(); });
}

TEST_CASE("Controls: growth", "[.growth]")
{
    const Host host(WC_LISTVIEWW, LVS_REPORT | LVS_NOSCROLL);
    const tarn::ListView list(host.child);
    for (unsigned column = 0; column < 3; ++column)
        list.insertColumn(column, L"column", 80);
    fillRaw(list, makeRows()); // As above.
    const bench::Growth growth("Filling a list view", "items");
    const auto some = [](unsigned size) {
        std::vector<Row> rows = makeRows();
        rows.resize(size);
        return rows;
    };
    growth.line("library", bench::tens(1, 4),
                [&](unsigned size) { return [&list, rows = some(size)] { fill(list, rows); }; });
    growth.line("messages by hand", bench::tens(1, 4),
                [&](unsigned size) { return [&list, rows = some(size)] { fillRaw(list, rows); }; });
}
