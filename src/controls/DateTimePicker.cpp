#include <tarn/DateTimePicker.h>

#include "ControlMessages.h"
#include "SystemDate.h"

namespace tarn {
namespace {
constexpr const char* cannotSetTime = "Can't set time of date picker";
constexpr const char* cannotSetFormat = "Can't set format of date picker";
} // namespace

void DateTimePicker::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, DATETIMEPICK_CLASSW, parent, id, rect, style);
}

std::optional<SYSTEMTIME> DateTimePicker::getTime() const
{
    SYSTEMTIME time{};
    const LRESULT result =
        ensureSent(*this, GDT_ERROR, "Can't get time of date picker", DTM_GETSYSTEMTIME, 0, toLParam(&time));
    return result == GDT_VALID ? std::optional<SYSTEMTIME>(time) : std::nullopt;
}
std::optional<std::chrono::year_month_day> DateTimePicker::getDate() const
{
    const std::optional<SYSTEMTIME> time = getTime();
    return time ? std::optional<std::chrono::year_month_day>(fromSystemDate(*time)) : std::nullopt;
}
void DateTimePicker::setTime(const SYSTEMTIME& time) const
{
    ensureSent(*this, FALSE, cannotSetTime, DTM_SETSYSTEMTIME, GDT_VALID, toLParam(&time));
}
void DateTimePicker::setDate(const std::chrono::year_month_day& date) const
{
    SYSTEMTIME time = toSystemDate(date);
    if (const std::optional<SYSTEMTIME> former = getTime()) {
        time.wHour = former->wHour;
        time.wMinute = former->wMinute;
        time.wSecond = former->wSecond;
    }
    setTime(time);
}
void DateTimePicker::clear() const
{
    const SYSTEMTIME none{}; // Not looked at, but not every version of the control does without.
    ensureSent(*this, FALSE, cannotSetTime, DTM_SETSYSTEMTIME, GDT_NONE, toLParam(&none));
}
void DateTimePicker::setRange(const std::chrono::year_month_day& first, const std::chrono::year_month_day& last) const
{
    const SYSTEMTIME range[] = {toSystemDate(first), toSystemDate(last)};
    ensureSent(*this, FALSE, "Can't set range of date picker", DTM_SETRANGE, GDTR_MIN | GDTR_MAX, toLParam(range));
}
void DateTimePicker::setFormat(const char* format) const
{
    ensureSent(*this, FALSE, cannotSetFormat, DTM_SETFORMATA, 0, toLParam(format));
}
void DateTimePicker::setFormat(const wchar_t* format) const
{
    ensureSent(*this, FALSE, cannotSetFormat, DTM_SETFORMATW, 0, toLParam(format));
}
} // namespace tarn
