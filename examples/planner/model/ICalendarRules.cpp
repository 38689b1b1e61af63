#include "ICalendarValues.h"

#include <tarn/Exception.h>
#include <tarn/RecurrenceRule.h>

using tarn::RecurrenceRule;
using Frequency = RecurrenceRule::Frequency;

namespace planner {
namespace {
RecurrenceRule parse(const ContentLine& line)
{
    try {
        return tarn::parseRecurrenceRule(line.value.c_str());
    } catch (const tarn::Exception& e) {
        line.refuse(e.what());
    }
}

// What other programs write, though it says nothing new: the day and month of the start.
bool saysWhatStartSays(const RecurrenceRule& rule, const Date& start)
{
    const bool isDay =
        rule.byMonthDay.empty() || (rule.frequency >= Frequency::monthly && rule.byMonthDay == std::vector{start.day});
    const bool isMonth = rule.byMonth.empty() || (rule.frequency == Frequency::yearly && rule.byMonth.size() == 1 &&
                                                  rule.byMonth.front() == start.month);
    return isDay && isMonth;
}

// The end of an event with a zone is in UTC; a date means the whole of that day.
Local endOf(const RecurrenceRule::Until& until, const CalendarTime& start, const Zone& clock)
{
    switch (until.kind) {
    case RecurrenceRule::Until::Kind::utc:
        return clock.toLocal(until.time);
    case RecurrenceRule::Until::Kind::day:
        return start.isDate ? Local(until.time) : until.time + dayLength - 1;
    default:
        return until.time;
    }
}
} // namespace

std::optional<Recurrence> readRule(const ContentLine& line, const CalendarTime& start, const Zone& clock)
{
    const RecurrenceRule rule = parse(line);
    Recurrence simple;
    simple.frequency = static_cast<Recurrence::Frequency>(static_cast<int>(rule.frequency) - int(Frequency::daily));
    simple.interval = rule.interval;
    simple.count = rule.count;
    simple.weekStart = rule.weekStart;
    if (rule.until)
        simple.until = endOf(*rule.until, start, clock);
    for (const RecurrenceRule::Weekday& weekday : rule.byDay)
        simple.weekdays |= Recurrence::bitOf(weekday.day);

    const bool hasTimes = !rule.bySecond.empty() || !rule.byMinute.empty() || !rule.byHour.empty();
    const bool hasNumbers = !rule.byYearDay.empty() || !rule.byWeekNo.empty() || !rule.bySetPos.empty();
    const bool hasDays = !rule.byDay.empty() && rule.frequency != Frequency::weekly;
    const bool isSimple = rule.frequency >= Frequency::daily && !hasTimes && !hasNumbers && !hasDays &&
                          saysWhatStartSays(rule, Reckoning().dateOf(dayOf(start.local))) && simple.isValid();
    return isSimple ? std::optional(simple) : std::nullopt;
}

std::string writeRule(const Event& event, const Zone& clock)
{
    RecurrenceRule rule = event.recurrence->rule();
    if (rule.until && event.allDay)
        rule.until->kind = RecurrenceRule::Until::Kind::day;
    else if (rule.until && event.zone != Zone::system)
        rule.until = {clock.toTime(rule.until->time)};
    return tarn::formatRecurrenceRuleA(rule);
}
} // namespace planner
