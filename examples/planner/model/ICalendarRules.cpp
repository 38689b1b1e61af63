#include "ICalendarValues.h"

#include <tarn/BasicString.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <iterator>
#include <map>

using tarn::GregorianCalendar;

namespace planner {
namespace {
constexpr const char* frequencies[] = {"DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
constexpr const char* weekdays[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

template <std::size_t size> std::optional<int> indexOf(const char* const (&names)[size], const std::string& name)
{
    const auto found = std::ranges::find(names, name);
    return found == std::end(names) ? std::nullopt : std::optional(static_cast<int>(found - names));
}

/// Turns the parts of a rule into a Recurrence.
class RuleReader {
public:
    RuleReader(const ContentLine& line, const CalendarTime& start, const Zone& clock)
        : line_(line), start_(start), clock_(clock), date_(Reckoning().dateOf(dayOf(start.local)))
    {
    }

    std::optional<Recurrence> read()
    {
        std::map<std::string, std::string> parts;
        for (const std::string& part : split(tarn::BasicString<char>(line_.value).toUpper(), ';')) {
            const std::size_t equals = part.find('=');
            if (equals == std::string::npos || !parts.emplace(part.substr(0, equals), part.substr(equals + 1)).second)
                line_.refuse(quoted(part) + " is not a part of a rule");
        }
        if (!parts.contains("FREQ"))
            line_.refuse("the rule has no FREQ");
        if (parts.contains("COUNT") && parts.contains("UNTIL"))
            line_.refuse("the rule has both COUNT and UNTIL");
        const auto frequency = indexOf(frequencies, parts["FREQ"]);
        if (!frequency)
            return std::nullopt;
        rule_.frequency = static_cast<Recurrence::Frequency>(*frequency);
        parts.erase("FREQ");
        const bool isUnderstood = std::ranges::all_of(parts, [this](const auto& p) { return take(p.first, p.second); });
        return isUnderstood ? std::optional(rule_) : std::nullopt;
    }

private:
    bool take(const std::string& name, const std::string& value)
    {
        if (name == "INTERVAL")
            return (rule_.interval = number(value)) <= Recurrence::greatestInterval;
        if (name == "COUNT")
            return (rule_.count = number(value)) > 0;
        if (name == "UNTIL")
            return takeEnd(value);
        if (name == "WKST")
            return (rule_.weekStart = weekday(value)) != 0;
        if (name == "BYDAY")
            return takeWeekdays(value);
        // What other programs write, though it says nothing new.
        if (name == "BYMONTHDAY")
            return rule_.frequency >= Recurrence::monthly && value == std::to_string(date_.day);
        return name == "BYMONTH" && rule_.frequency == Recurrence::yearly && value == std::to_string(date_.month + 1);
    }

    int number(const std::string& value) const
    {
        const bool isNumber = value.size() <= 9 && value.find_first_not_of("0123456789") == std::string::npos;
        const int number = isNumber ? std::atoi(value.c_str()) : 0;
        if (number < 1)
            line_.refuse(quoted(value) + " is not a number from 1");
        return number;
    }

    int weekday(const std::string& value) const
    {
        const auto index = indexOf(weekdays, value);
        if (!index)
            line_.refuse(quoted(value) + " is not a weekday");
        return *index + GregorianCalendar::Sunday;
    }

    // With a number ("the second Monday") or in another rule than a weekly one it means something else.
    bool takeWeekdays(const std::string& value)
    {
        for (const std::string& name : split(value, ',')) {
            if (name.find_first_of("0123456789") != std::string::npos)
                return false;
            rule_.weekdays |= Recurrence::bitOf(weekday(name));
        }
        return rule_.frequency == Recurrence::weekly;
    }

    // The end of an event with a zone is in UTC; a date means the whole of that day.
    bool takeEnd(const std::string& value)
    {
        const CalendarTime end = readTime(ContentLine{line_.name, {}, line_.value, line_.number}, value);
        if (end.isDate)
            rule_.until = start_.isDate ? end.local : end.local + dayLength - 1;
        else
            rule_.until = end.zone == "UTC" ? clock_.toLocal(tarn::Time(end.local)) : end.local;
        return true;
    }

    const ContentLine& line_;
    const CalendarTime& start_;
    const Zone& clock_;
    Date date_;
    Recurrence rule_;
};
} // namespace

std::optional<Recurrence> readRule(const ContentLine& line, const CalendarTime& start, const Zone& clock)
{
    return RuleReader(line, start, clock).read();
}

const char* weekdayCode(int weekday) { return weekdays[weekday - GregorianCalendar::Sunday]; }

std::string writeRule(const Event& event, const Zone& clock)
{
    const Recurrence& rule = *event.recurrence;
    std::string text = std::string("FREQ=") + frequencies[rule.frequency];
    if (rule.interval != 1)
        text += ";INTERVAL=" + std::to_string(rule.interval);
    if (rule.count != 0)
        text += ";COUNT=" + std::to_string(rule.count);
    if (rule.until) {
        const bool isLocal = event.allDay || event.zone == Zone::system;
        const Local end = isLocal ? *rule.until : Local(clock.toTime(*rule.until));
        text += ";UNTIL=" + writeTime(end, event.allDay) + (isLocal ? "" : "Z");
    }
    std::string days;
    for (int weekday = GregorianCalendar::Sunday; weekday <= GregorianCalendar::Saturday; ++weekday)
        if (rule.weekdays & Recurrence::bitOf(weekday))
            days.append(",").append(weekdayCode(weekday));
    if (!days.empty())
        text.append(";BYDAY=").append(days.substr(1));
    if (rule.weekStart != GregorianCalendar::Monday)
        text += std::string(";WKST=") + weekdayCode(rule.weekStart);
    return text;
}
} // namespace planner
