#include "Reminder.h"

#include "Ids.h"

#include <tarn/Menu.h>

namespace planner {
namespace {
constexpr Local ahead = 10 * minuteLength;
constexpr int showPlanner = 1, quitPlanner = 2;

Local soon(const Zone& zone) { return zone.toLocal(tarn::Time::now()) + ahead; }
} // namespace

Reminder::Reminder(HWND planner, HINSTANCE program) : planner_(planner), told_(soon(Zone()) - ahead)
{
    create(ID_PROGRAM, program, L"Planner");
}

void Reminder::look(const Document& document, const Zone& zone)
{
    const Local next = soon(zone);
    for (const Occurrence& occurrence : document.occurrences(dayOf(told_), dayOf(next), zone)) {
        const bool isDue = occurrence.start > told_ && occurrence.start <= next;
        if (!isDue || occurrence.event().allDay)
            continue;
        const std::wstring text = timeText(timeOfDay(occurrence.start)) + L"  " + occurrence.event().place;
        showNotice(occurrence.event().subject.c_str(), text.c_str());
    }
    told_ = next;
}

void Reminder::onSelect(const tarn::Point&)
{
    if (IsIconic(planner_))
        tarn::Window(planner_).show(SW_RESTORE);
    SetForegroundWindow(planner_);
}
void Reminder::onNoticeSelect() { onSelect(tarn::Point()); }

void Reminder::onMenu(const tarn::Point& position)
{
    tarn::Menu menu(true);
    menu.insert(L"&Show", 0, MF_BYPOSITION, showPlanner);
    menu.insert(L"E&xit", 1, MF_BYPOSITION, quitPlanner);
    const int command = showMenu(menu, position);
    if (command == showPlanner)
        onSelect(position);
    if (command == quitPlanner)
        tarn::Window(planner_).postMessageW(WM_CLOSE);
}
} // namespace planner
