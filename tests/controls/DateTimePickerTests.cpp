#include "Controls.h"

#include <tarn/DateTimePicker.h>
#include <tarn/MonthCalendar.h>

using namespace std::chrono_literals;
using std::chrono::February;
using std::chrono::March;

namespace {
constexpr auto leapDay = 2024y / February / 29;
constexpr auto noDay = 2023y / February / 29;
constexpr std::pair march(2024y / March / 1, 2024y / March / 31);

auto rangeOf(const Window& control, UINT getRange)
{
    SYSTEMTIME days[2]{};
    control.sendMessageA(getRange, 0, reinterpret_cast<LPARAM>(days));
    const auto dateOf = [](const SYSTEMTIME& time) { return std::chrono::year(time.wYear) / time.wMonth / time.wDay; };
    return std::pair(dateOf(days[0]), dateOf(days[1]));
}
} // namespace

TEST_CASE("DateTimePicker: date and time come back as they were set, and none when it is emptied")
{
    Host host;
    DateTimePicker picker;
    picker.create(host, 5, Rect(0, 0, 120, 24), DTS_SHOWNONE);
    picker.setFormat(L"yyyy'|'MM'|'dd");
    picker.setTime({2024, 3, 0, 1, 13, 14, 15, 0});
    picker.setDate(leapDay);
    const std::optional<SYSTEMTIME> time = picker.getTime();
    REQUIRE(time);
    CHECK((picker.getDate() == leapDay && time->wHour == 13 && time->wMinute == 14 && time->wSecond == 15));
    picker.setRange(march.first, march.second);
    CHECK(rangeOf(picker, DTM_GETRANGE) == march);
    picker.clear();
    CHECK((!picker.getTime() && !picker.getDate()));
    picker.setDate(march.first);
    CHECK(picker.getDate() == march.first);
    picker.setFormat(static_cast<const char*>(nullptr));
    const auto fails = [](auto call, const char* what) { expectWindowsError(call, what); };
    fails([&] { picker.setDate(noDay); }, "Can't set time of date picker");
    fails([] { DateTimePicker().getTime(); }, "Can't get time of date picker");
    fails([] { DateTimePicker().setRange(leapDay, leapDay); }, "Can't set range of date picker");
    fails([] { DateTimePicker().setFormat("d"); }, "Can't set format of date picker");
}

TEST_CASE("MonthCalendar: days and ranges of days come back as they were set")
{
    Host host;
    MonthCalendar single, several;
    single.create(host, 5, Rect(0, 0, 200, 200), 0);
    CHECK((single.getSizeOfMonth().cx > 50 && single.getSizeOfMonth().cy > 50));
    single.setDate(leapDay);
    single.setToday(leapDay);
    single.setFirstDayOfWeek(std::chrono::Sunday);
    SYSTEMTIME today{};
    CHECK((single.sendMessageA(MCM_GETTODAY, 0, LPARAM(&today)) && today.wMonth == 2 && today.wDay == 29));
    CHECK((single.getDate() == leapDay && LOWORD(single.sendMessageA(MCM_GETFIRSTDAYOFWEEK)) == 6));
    single.setRange(march.first, march.second);
    CHECK(rangeOf(single, MCM_GETRANGE) == march);
    several.create(host, 6, Rect(0, 0, 200, 200), MCS_MULTISELECT);
    several.setLongestSelection(3);
    several.setSelection(leapDay, 2024y / March / 2);
    CHECK(several.getSelection() == std::pair(leapDay, 2024y / March / 2));
    const auto fails = [](auto call, const char* what) { expectWindowsError(call, what); };
    fails([&] { several.setSelection(leapDay, 2024y / March / 3); }, "Can't set date of month calendar");
    fails([&] { several.getDate(); }, "Can't get date of month calendar");
    fails([&] { single.getSelection(); }, "Can't get date of month calendar");
    fails([&] { single.setLongestSelection(2); }, "Can't set date of month calendar");
    fails([&] { single.setDate(noDay); }, "Can't set date of month calendar");
    fails([] { MonthCalendar().setRange(leapDay, leapDay); }, "Can't set range of month calendar");
    fails([] { MonthCalendar().getSizeOfMonth(); }, "Can't get size of month calendar");
}
