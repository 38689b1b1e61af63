#include "Recurrence.h"

#include <algorithm>
#include <bit>

using tarn::GregorianCalendar;

namespace planner {
namespace {
constexpr Local weekLength = 7 * dayLength;

/// The periods of a rule, numbered from the one of the first start, and the starts in each.
class Periods {
public:
    Periods(const Recurrence& rule, Local first)
        : rule_(rule), first_(first), firstDay_(dayOf(first)), time_(timeOfDay(first)), date_(usual_.dateOf(firstDay_))
    {
        usual_.firstDayOfWeek = rule.weekStart;
        weekdays_ = rule.weekdays ? rule.weekdays : Recurrence::bitOf(usual_.weekdayOf(firstDay_));
    }

    /// No period before this one has a start at or after `from`.
    std::int64_t numberBefore(Local from) const
    {
        static constexpr Local longest[] = {dayLength, weekLength, 31 * dayLength, 366 * dayLength};
        return std::max<std::int64_t>((from - first_) / (longest[rule_.frequency] * rule_.interval) - 1, 0);
    }

    /// How many starts the periods before this one have, where that follows from the number.
    std::optional<std::int64_t> startsBefore(std::int64_t number) const
    {
        if (number == 0 || rule_.frequency == Recurrence::daily)
            return number;
        if (rule_.frequency == Recurrence::weekly)
            return static_cast<std::int64_t>(startsOf(0).size()) + (number - 1) * std::popcount(weekdays_);
        return std::nullopt;
    }

    Local beginOf(std::int64_t number) const
    {
        const std::int64_t distance = number * rule_.interval;
        switch (rule_.frequency) {
        case Recurrence::daily:
            return midnightOf(firstDay_ + distance);
        case Recurrence::weekly:
            return midnightOf(usual_.firstOfWeek(firstDay_) + distance * 7);
        default: {
            const auto [year, month] = monthOf(number);
            return year > lastYear ? INT64_MAX : midnightOf(usual_.firstOfMonth(static_cast<int>(year), month));
        }
        }
    }

    std::vector<Local> startsOf(std::int64_t number) const
    {
        if (rule_.frequency == Recurrence::daily)
            return {beginOf(number) + time_};
        if (rule_.frequency == Recurrence::weekly)
            return startsOfWeek(dayOf(beginOf(number)));
        const auto [year, month] = monthOf(number);
        const auto day = usual_.dayOf({static_cast<int>(year), month, date_.day});
        return day ? std::vector{midnightOf(*day) + time_} : std::vector<Local>();
    }

private:
    struct MonthNumber {
        std::int64_t year;
        int month;
    };

    MonthNumber monthOf(std::int64_t number) const
    {
        const int months = rule_.frequency == Recurrence::yearly ? 12 : 1;
        const std::int64_t index = std::int64_t(date_.year) * 12 + date_.month + number * rule_.interval * months;
        const int month = static_cast<int>((index % 12 + 12) % 12);
        return {(index - month) / 12, month};
    }

    std::vector<Local> startsOfWeek(Day week) const
    {
        std::vector<Local> starts;
        for (Day day = week; day < week + 7; ++day)
            if (day >= firstDay_ && (weekdays_ & Recurrence::bitOf(usual_.weekdayOf(day))))
                starts.push_back(midnightOf(day) + time_);
        return starts;
    }

    const Recurrence& rule_;
    Reckoning usual_;
    Local first_;
    Day firstDay_;
    Local time_;
    Date date_;
    unsigned weekdays_;
};

const wchar_t* const units[] = {L"day", L"week", L"month", L"year"};

// A first start that its own rule does not name counts all the same, as the first one.
bool namesFirst(const Periods& periods, Local first) { return std::ranges::count(periods.startsOf(0), first) != 0; }
} // namespace

std::vector<Local> Recurrence::starts(Local first, Local from, Local to) const
{
    const Periods periods(*this, first);
    const int extra = namesFirst(periods, first) ? 0 : 1;
    std::vector<Local> found;
    if (extra && first >= from && first < to)
        found.push_back(first);

    std::int64_t number = periods.numberBefore(from), sofar = 0;
    if (count != 0) {
        const auto before = periods.startsBefore(number);
        number = before ? number : 0;
        sofar = before.value_or(0) + extra;
    }
    const Local end = std::min(to, until ? std::max(*until, first) + 1 : to); // The first start counts in any case.
    for (; periods.beginOf(number) < end; ++number) {
        for (const Local start : periods.startsOf(number)) {
            if (start >= end || (count != 0 && sofar++ >= count))
                return found;
            if (start >= from)
                found.push_back(start);
        }
    }
    return found;
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
