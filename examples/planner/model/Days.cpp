#include "Days.h"

#include "Text.h"

#include <tarn/Exception.h>
#include <tarn/TimeText.h>

#include <algorithm>
#include <cwchar>

using tarn::Calendar;
using tarn::GregorianCalendar;

namespace planner {
namespace {
void setYear(GregorianCalendar& calendar, int year)
{
    calendar.set(Calendar::FieldEra, year > 0 ? GregorianCalendar::AD : GregorianCalendar::BC);
    calendar.set(Calendar::FieldYear, year > 0 ? year : 1 - year);
}

std::wstring format(const wchar_t* format, int a, int b, int c = 0)
{
    return tarn::BasicString<wchar_t>::fromFormat(format, a, b, c);
}
} // namespace

GregorianCalendar Reckoning::calendar() const
{
    GregorianCalendar calendar((tarn::TimeZone()));
    calendar.setFirstDayOfWeek(firstDayOfWeek);
    calendar.setMinimalDaysInFirstWeek(minimalDaysInFirstWeek);
    calendar.setGregorianChange(midnightOf(cutover));
    return calendar;
}

Date Reckoning::dateOf(Day day) const
{
    GregorianCalendar calendar = this->calendar();
    calendar.setTime(midnightOf(day));
    const int year = calendar.get(Calendar::FieldYear);
    return {calendar.get(Calendar::FieldEra) == GregorianCalendar::AD ? year : 1 - year,
            calendar.get(Calendar::FieldMonth), calendar.get(Calendar::FieldDayOfMonth)};
}

std::optional<Day> Reckoning::dayOf(const Date& date) const
{
    GregorianCalendar calendar = this->calendar();
    calendar.Clear();
    setYear(calendar, date.year);
    calendar.set(Calendar::FieldMonth, date.month);
    calendar.set(Calendar::FieldDayOfMonth, date.day);
    const Day day = planner::dayOf(calendar.getTime());
    return dateOf(day) == date ? std::optional(day) : std::nullopt; // Lenient calendars take any date.
}

int Reckoning::weekdayOf(Day day) const { return GregorianCalendar::julianDayToDayOfWeek(day); }

// Of a week that two years share some days are numbered one off. The day that decides which year has the week
// (Thursday, by ISO 8601) is right, except that in the era BC a 53rd week may be called the first.
int Reckoning::weekOf(Day day) const
{
    GregorianCalendar calendar = this->calendar();
    calendar.setTime(midnightOf(firstOfWeek(day) + 7 - minimalDaysInFirstWeek));
    return calendar.get(Calendar::FieldWeekOfYear);
}

Day Reckoning::firstOfMonth(int year, int month) const
{
    for (int day = 1;; ++day)
        if (const auto first = dayOf({year, month, day}))
            return *first;
}

Day Reckoning::lastOfMonth(int year, int month) const
{
    return month == GregorianCalendar::December ? firstOfMonth(year + 1, GregorianCalendar::January) - 1
                                                : firstOfMonth(year, month + 1) - 1;
}

Day Reckoning::firstOfWeek(Day day) const { return day - (weekdayOf(day) - firstDayOfWeek + 7) % 7; }

Day Reckoning::addMonths(Day day, int months) const
{
    const Date date = dateOf(day);
    const int index =
        std::clamp(date.year * 12 + date.month + months, firstYear * 12, lastYear * 12 + GregorianCalendar::December);
    const int month = (index % 12 + 12) % 12, year = (index - month) / 12;
    if (const auto same = dayOf({year, month, date.day}))
        return *same;
    const Day last = lastOfMonth(year, month);
    return date.day < dateOf(last).day ? cutover : last;
}

const wchar_t* monthName(int month)
{
    static const wchar_t* const names[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                                           L"July",    L"August",   L"September", L"October", L"November", L"December"};
    return names[month];
}

const wchar_t* weekdayName(int weekday)
{
    static const wchar_t* const names[] = {L"Sunday",   L"Monday", L"Tuesday", L"Wednesday",
                                           L"Thursday", L"Friday", L"Saturday"};
    return names[weekday - GregorianCalendar::Sunday];
}

std::wstring yearText(int year) { return year > 0 ? std::to_wstring(year) : std::to_wstring(1 - year) + L" BC"; }

std::wstring dateText(const Date& date)
{
    return std::to_wstring(date.day) + L" " + monthName(date.month) + L" " + yearText(date.year);
}

std::wstring shortDateText(const Date& date) { return format(L"%04d-%02d-%02d", date.year, date.month + 1, date.day); }

Day parseDay(const std::wstring& text, const Reckoning& reckoning)
{
    Date date{};
    wchar_t rest = 0;
    if (std::swscanf(text.c_str(), L"%5d-%2d-%2d %lc", &date.year, &date.month, &date.day, &rest) != 3)
        throw tarn::Exception("\"" + narrow(text) + "\" is not a date. Write it as 1582-10-04.");
    --date.month;
    const bool isMonth = date.month >= GregorianCalendar::January && date.month <= GregorianCalendar::December;
    const auto day = isMonth && date.year >= firstYear && date.year <= lastYear ? reckoning.dayOf(date) : std::nullopt;
    if (!day)
        throw tarn::Exception("There is no " + narrow(text) + " in this calendar.");
    return *day;
}

// The library's ISO texts reckon by the Gregorian calendar at all times.
std::wstring cutoverText(Day cutover) { return tarn::formatISOTimeW(midnightOf(cutover)).left(10); }

Day parseCutover(const std::wstring& text)
{
    static const Day earliest = Reckoning().cutover, latest = dayOf(tarn::parseISOTime("1999-12-31"));
    const Day day = dayOf(tarn::parseISOTime(text.c_str()));
    if (day < earliest || day > latest)
        throw tarn::Exception("The Gregorian calendar began between 1582-10-15 and 1999-12-31.");
    return day;
}

std::wstring timeText(Local time)
{
    return format(L"%02d:%02d", static_cast<int>(time / hourLength),
                  static_cast<int>(time % hourLength / minuteLength));
}

Local parseTimeOfDay(const std::wstring& text)
{
    unsigned hour = 0, minute = 0;
    wchar_t rest = 0;
    const bool isTime = std::swscanf(text.c_str(), L"%2u:%2u %lc", &hour, &minute, &rest) == 2 ||
                        std::swscanf(text.c_str(), L"%2u %lc", &hour, &rest) == 1;
    if (!isTime || minute > 59 || hour > 24 || hour * 60 + minute > 24 * 60)
        throw tarn::Exception("\"" + narrow(text) + "\" is not a time of day. Write it as 9:30.");
    return hour * hourLength + minute * minuteLength;
}
} // namespace planner
