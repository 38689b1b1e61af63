#include <tarn/MonthCalendar.h>

#include <tarn/Rect.h>

#include "ControlMessages.h"
#include "SystemDate.h"

namespace tarn {
namespace {
constexpr const char* cannotGetDate = "Can't get date of month calendar";
constexpr const char* cannotSetDate = "Can't set date of month calendar";
} // namespace

void MonthCalendar::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, MONTHCAL_CLASSW, parent, id, rect, style);
}
Size MonthCalendar::getSizeOfMonth() const
{
    Rect rect;
    ensureSent(*this, FALSE, "Can't get size of month calendar", MCM_GETMINREQRECT, 0, toLParam(&rect));
    return rect.getSize();
}

std::chrono::year_month_day MonthCalendar::getDate() const
{
    SYSTEMTIME date{};
    ensureSent(*this, FALSE, cannotGetDate, MCM_GETCURSEL, 0, toLParam(&date));
    return fromSystemDate(date);
}
void MonthCalendar::setDate(const std::chrono::year_month_day& date) const
{
    const SYSTEMTIME time = toSystemDate(date);
    ensureSent(*this, FALSE, cannotSetDate, MCM_SETCURSEL, 0, toLParam(&time));
}
std::pair<std::chrono::year_month_day, std::chrono::year_month_day> MonthCalendar::getSelection() const
{
    SYSTEMTIME days[2]{};
    ensureSent(*this, FALSE, cannotGetDate, MCM_GETSELRANGE, 0, toLParam(days));
    return {fromSystemDate(days[0]), fromSystemDate(days[1])};
}
void MonthCalendar::setSelection(const std::chrono::year_month_day& first,
                                 const std::chrono::year_month_day& last) const
{
    const SYSTEMTIME days[] = {toSystemDate(first), toSystemDate(last)};
    ensureSent(*this, FALSE, cannotSetDate, MCM_SETSELRANGE, 0, toLParam(days));
}
void MonthCalendar::setLongestSelection(unsigned days) const
{
    ensureSent(*this, FALSE, cannotSetDate, MCM_SETMAXSELCOUNT, days);
}
void MonthCalendar::setRange(const std::chrono::year_month_day& first, const std::chrono::year_month_day& last) const
{
    const SYSTEMTIME days[] = {toSystemDate(first), toSystemDate(last)};
    ensureSent(*this, FALSE, "Can't set range of month calendar", MCM_SETRANGE, GDTR_MIN | GDTR_MAX, toLParam(days));
}
void MonthCalendar::setToday(const std::chrono::year_month_day& date) const
{
    const SYSTEMTIME time = toSystemDate(date);
    sendMessageA(MCM_SETTODAY, 0, toLParam(&time));
}
void MonthCalendar::setFirstDayOfWeek(std::chrono::weekday day) const
{
    sendMessageA(MCM_SETFIRSTDAYOFWEEK, 0, static_cast<LPARAM>(day.iso_encoding() - 1)); // It counts from Monday.
}
} // namespace tarn
