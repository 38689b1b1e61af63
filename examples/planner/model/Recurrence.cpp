#include "Recurrence.h"

using tarn::GregorianCalendar;

namespace planner {
namespace {
const wchar_t* const units[] = {L"day", L"week", L"month", L"year"};
} // namespace

tarn::RecurrenceRule Recurrence::rule() const
{
    using Library = tarn::RecurrenceRule;
    Library rule;
    rule.frequency = static_cast<Library::Frequency>(static_cast<int>(Library::Frequency::daily) + frequency);
    rule.interval = interval;
    rule.count = count;
    if (until)
        rule.until = {*until, Library::Until::Kind::local};
    for (int weekday = GregorianCalendar::Sunday; weekday <= GregorianCalendar::Saturday; ++weekday)
        if (weekdays & bitOf(weekday))
            rule.byDay.push_back({static_cast<GregorianCalendar::DayOfWeek>(weekday)});
    rule.weekStart = static_cast<GregorianCalendar::DayOfWeek>(weekStart);
    return rule;
}

// By a clock that is never changed; what clocks make of a start is the affair of whoever shows it.
std::vector<Local> Recurrence::starts(Local first, Local from, Local to) const
{
    tarn::RecurrenceSet set(first);
    set.setRule(rule());
    const std::vector<tarn::Time> times = set.between(from, to);
    return {times.begin(), times.end()};
}

bool Recurrence::isValid() const
{
    return frequency >= daily && frequency <= yearly && interval >= 1 && interval <= greatestInterval && count >= 0 &&
           until.value_or(0) < INT64_MAX && weekdays < 1u << 7 && weekStart >= GregorianCalendar::Sunday &&
           weekStart <= GregorianCalendar::Saturday;
}

std::wstring describe(const Recurrence& rule)
{
    std::wstring text = L"Every ";
    if (rule.interval == 1)
        text += units[rule.frequency];
    else
        text += std::to_wstring(rule.interval) + L" " + units[rule.frequency] + L"s";
    const wchar_t* separator = L" on ";
    for (int weekday = GregorianCalendar::Sunday; weekday <= GregorianCalendar::Saturday; ++weekday) {
        if (rule.weekdays & Recurrence::bitOf(weekday)) {
            text += separator + std::wstring(weekdayName(weekday)).substr(0, 3);
            separator = L", ";
        }
    }
    if (rule.count != 0)
        text += rule.count == 1 ? L", once" : L", " + std::to_wstring(rule.count) + L" times";
    if (rule.until)
        text += L", until " + dateText(Reckoning().dateOf(dayOf(*rule.until)));
    return text;
}
} // namespace planner
