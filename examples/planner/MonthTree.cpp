#include "MonthTree.h"

#include <algorithm>

namespace planner {
namespace {
constexpr int yearsAround = 10;

// What an item stands for, as its number. A year has the month -1.
const void* toData(int year, int month)
{
    return reinterpret_cast<const void*>(static_cast<INT_PTR>(year * 16 + month + 1));
}
int yearOf(LPARAM data) { return static_cast<int>(data >> 4); }
int monthOf(LPARAM data) { return static_cast<int>(data & 15) - 1; }
} // namespace

void MonthTree::fill(int year)
{
    deleteAllItems();
    months_.clear();
    for (int y = std::max(year - yearsAround, firstYear); y <= std::min(year + yearsAround, lastYear); ++y) {
        const HTREEITEM parent = insertItem(yearText(y).c_str(), toData(y, -1), TVI_ROOT, TVI_LAST);
        for (int month = 0; month < 12; ++month)
            months_[y].push_back(insertItem(monthName(month), toData(y, month), parent, TVI_LAST));
    }
}

void MonthTree::show(int year, int month)
{
    isShowing_ = true;
    if (!months_.contains(year))
        fill(year);
    const HTREEITEM item = months_[year][static_cast<std::size_t>(month)];
    sendMessageW(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    ensureVisible(item);
    isShowing_ = false;
}

bool MonthTree::onReflectedNotification(const NMTREEVIEWW& notification)
{
    if (notification.hdr.code != TVN_SELCHANGEDW || isShowing_)
        return false;
    const LPARAM data = notification.itemNew.lParam;
    onSelect(yearOf(data), std::max(monthOf(data), 0));
    return true;
}
} // namespace planner
