#include "DayList.h"

#include "Ids.h"

#include <tarn/AutoRedraw.h>

#include <algorithm>

namespace planner {
namespace {
constexpr int timeWidth = 110, categoryWidth = 110;

std::wstring timesOf(const Occurrence& occurrence, Day day)
{
    if (occurrence.event().allDay)
        return L"all day";
    const bool begins = dayOf(occurrence.start) == day, ends = occurrence.end <= midnightOf(day + 1);
    const std::wstring start = timeText(timeOfDay(occurrence.start)), end = timeText(timeOfDay(occurrence.end));
    if (begins && ends)
        return occurrence.start == occurrence.end ? start : start + L" \x2013 " + end;
    return begins ? L"from " + start : ends ? L"until " + end : L"all day";
}
} // namespace

void DayList::create(HWND parent)
{
    ListView::create(parent, ID_LIST, tarn::Rect(),
                     WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS);
    setExtendedStyle(0, WS_EX_CLIENTEDGE);
    setExtendedListViewStyle(LVS_EX_FULLROWSELECT);
    insertColumn(0, L"Time", timeWidth);
    insertColumn(1, L"Subject", 200);
    insertColumn(2, L"Place", 150);
    insertColumn(3, L"Category", categoryWidth);
}

void DayList::show(std::vector<Occurrence> occurrences, Day day)
{
    occurrences_ = std::move(occurrences);
    const tarn::AutoRedraw filling(*this);
    deleteAllItems();
    for (const Occurrence& occurrence : occurrences_) {
        const Event& event = occurrence.event();
        const auto item = static_cast<unsigned>(insertItem(timesOf(occurrence, day).c_str()));
        setItemText(item, event.subject.c_str(), 1);
        setItemText(item, event.place.c_str(), 2);
        setItemText(item, event.category.c_str(), 3);
    }
    if (!occurrences_.empty()) {
        LVITEMW first{};
        first.stateMask = first.state = LVIS_SELECTED | LVIS_FOCUSED;
        sendMessageW(LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&first));
    }
}

void DayList::layOut() const
{
    const tarn::DPI dpi = getDPI();
    const int time = dpi.toPixels(timeWidth), category = dpi.toPixels(categoryWidth);
    const int room = std::max(static_cast<int>(getClientSize().cx) - time - category, 100);
    setColumnWidth(0, time);
    setColumnWidth(1, room * 3 / 5);
    setColumnWidth(2, room - room * 3 / 5);
    setColumnWidth(3, category);
}

const Occurrence* DayList::selected() const
{
    const int item = getNextSelectedItem(-1);
    return item < 0 ? nullptr : &occurrences_[static_cast<std::size_t>(item)];
}
} // namespace planner
