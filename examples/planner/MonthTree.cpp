#include "MonthTree.h"

#include <algorithm>

namespace planner {
namespace {
constexpr int yearsAround = 10;

// What an item stands for, as its number, which is never 0. A year has the month -1.
const void* toData(int year, int month)
{
    return reinterpret_cast<const void*>(static_cast<INT_PTR>(year * 16 + month + 2));
}
int yearOf(LPARAM data) { return static_cast<int>(data >> 4); }
int monthOf(LPARAM data) { return static_cast<int>(data & 15) - 2; }
} // namespace

// Years are only added where there are some near by: a year that the user has just selected must not go.
void MonthTree::provide(int year)
{
    const int from = std::max(year - yearsAround, firstYear), to = std::min(year + yearsAround, lastYear);
    const bool isNear = !months_.empty() && from <= months_.rbegin()->first && to >= months_.begin()->first;
    if (!isNear) {
        deleteAllItems();
        months_.clear();
        addYear(year, TVI_LAST);
    }
    while (months_.begin()->first > from)
        addYear(months_.begin()->first - 1, TVI_FIRST);
    while (months_.rbegin()->first < to)
        addYear(months_.rbegin()->first + 1, TVI_LAST);
}

void MonthTree::addYear(int year, HTREEITEM after)
{
    const HTREEITEM parent = insertItem(yearText(year).c_str(), toData(year, -1), TVI_ROOT, after);
    for (int month = 0; month < 12; ++month)
        months_[year].push_back(insertItem(monthName(month), toData(year, month), parent, TVI_LAST));
}

void MonthTree::show(int year, int month)
{
    isShowing_ = true;
    provide(year);
    // A selected year stands for its January, and keys could not leave it upwards if that took the selection.
    if (month != 0 || getItemData(getSelectedItem()) != toData(year, -1)) {
        const HTREEITEM item = months_[year][static_cast<std::size_t>(month)];
        selectItem(item);
        ensureVisible(item);
    }
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
