#include "MonthContent.h"

#include "Holidays.h"

namespace planner {
MonthContent MonthContent::of(const Document& document, const Reckoning& reckoning, const Zone& zone, Day selected)
{
    MonthContent content;
    const Date date = reckoning.dateOf(selected);
    content.reckoning = reckoning;
    content.year = date.year;
    content.month = date.month;
    content.first = reckoning.firstOfWeek(reckoning.firstOfMonth(date.year, date.month));
    content.last = reckoning.firstOfWeek(reckoning.lastOfMonth(date.year, date.month)) + 6;
    content.selected = selected;
    content.today = planner::today(zone);
    content.occurrences = document.occurrences(content.first, content.last, zone);
    for (int year = date.year - 1; year <= date.year + 1; ++year)
        content.holidays.merge(holidaysOf(year, reckoning));
    return content;
}

int MonthContent::missingBefore(Day day) const
{
    if (day != reckoning.cutover)
        return 0;
    const Date before = reckoning.dateOf(day - 1), date = reckoning.dateOf(day);
    return date.month == before.month ? date.day - before.day - 1 : 0;
}
} // namespace planner
