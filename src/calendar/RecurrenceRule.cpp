#include <tarn/RecurrenceRule.h>

#include <tarn/Exception.h>

#include "../foundation/Quoted.h"
#include "../foundation/Throw.h"
#include "Arithmetic.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace tarn {
namespace {
using Rule = RecurrenceRule;
using Until = RecurrenceRule::Until;
namespace chrono = std::chrono;

constexpr std::string_view frequencyNames[] = {"SECONDLY", "MINUTELY", "HOURLY", "DAILY",
                                               "WEEKLY",   "MONTHLY",  "YEARLY"};
constexpr std::string_view weekdayNames[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

/// The parts that are lists of numbers, and what these may be. Those that count from the end may be negative, and are
/// never 0.
struct NumberList {
    std::string_view name;
    std::vector<int> Rule::*values;
    int greatest;
    bool countsFromEnd;

    bool holds(int value) const
    {
        return value <= greatest && (countsFromEnd ? value != 0 && value >= -greatest : value >= 0);
    }
};
constexpr NumberList numberLists[] = {
    {"BYWEEKNO", &Rule::byWeekNo, 53, true},     {"BYYEARDAY", &Rule::byYearDay, 366, true},
    {"BYMONTHDAY", &Rule::byMonthDay, 31, true}, {"BYHOUR", &Rule::byHour, 23, false},
    {"BYMINUTE", &Rule::byMinute, 59, false},    {"BYSECOND", &Rule::bySecond, 60, false},
    {"BYSETPOS", &Rule::bySetPos, 366, true},
};

/// Throws what a text or a value is told that is no rule.
class Refusal {
public:
    /// The text is asked for only when it is needed.
    explicit Refusal(std::function<Description()> quotedText) : text_(std::move(quotedText)) {}

    [[noreturn]] void because(const std::string& reason) const
    {
        throwError(Exception("Not a recurrence rule: " + text_() + ": " + reason));
    }
    [[noreturn]] void value(std::string_view value, std::string_view part) const
    {
        because('"' + std::string(value) + "\" is no " + std::string(part));
    }
    [[noreturn]] void value(int value, std::string_view part) const { this->value(std::to_string(value), part); }

private:
    std::function<Description()> text_;
};

/// Goes through the text of a rule.
class RuleText {
public:
    RuleText(std::string_view text, const Refusal& refusal) : left_(text), refusal_(refusal) {}

    Rule read()
    {
        for (bool hasMore = true; hasMore;) {
            const std::size_t end = left_.find(';');
            readPart(left_.substr(0, end));
            hasMore = end != left_.npos;
            if (hasMore)
                left_.remove_prefix(end + 1);
        }
        if (std::ranges::find(seen_, "FREQ") == seen_.end())
            refusal_.because("FREQ is missing");
        return std::move(rule_);
    }

private:
    void readPart(std::string_view part)
    {
        const std::size_t equals = part.find('=');
        name_ = part.substr(0, equals);
        if (equals == part.npos || !take(part.substr(equals + 1)))
            refusal_.value(part, "part of a rule");
        if (std::ranges::find(seen_, name_) != seen_.end())
            refusal_.because(std::string(name_) + " is there twice");
        seen_.push_back(name_);
    }

    bool take(std::string_view value)
    {
        if (name_ == "FREQ")
            rule_.frequency = static_cast<Rule::Frequency>(indexOf(frequencyNames, value));
        else if (name_ == "INTERVAL")
            rule_.interval = number(value);
        else if (name_ == "COUNT")
            rule_.count = count(value);
        else if (name_ == "UNTIL")
            rule_.until = UntilText(*this, value).read();
        else if (name_ == "WKST")
            rule_.weekStart = weekday(value);
        else if (name_ == "BYDAY")
            each(value, [this](std::string_view item) { rule_.byDay.push_back(numberedWeekday(item)); });
        else if (name_ == "BYMONTH")
            each(value, [this](std::string_view item) { rule_.byMonth.push_back(month(item)); });
        else
            return takeNumbers(value);
        return true;
    }

    bool takeNumbers(std::string_view value)
    {
        const auto list = std::ranges::find(numberLists, name_, &NumberList::name);
        if (list == std::end(numberLists))
            return false;
        each(value, [&](std::string_view item) { (rule_.*list->values).push_back(number(item)); });
        return true;
    }

    template <class Take> static void each(std::string_view values, Take take)
    {
        for (std::size_t end = 0; end != values.npos;) {
            end = values.find(',');
            take(values.substr(0, end));
            if (end != values.npos)
                values.remove_prefix(end + 1);
        }
    }

    [[noreturn]] void refuse(std::string_view value) const { refusal_.value(value, name_); }

    int number(std::string_view text) const
    {
        const bool hasPlus = text.starts_with('+') && !text.starts_with("+-");
        const char* const end = text.data() + text.size();
        int value = 0;
        const auto result = std::from_chars(text.data() + hasPlus, end, value);
        if (result.ec != std::errc() || result.ptr != end)
            refuse(text);
        return value;
    }

    int count(std::string_view text) const
    {
        const int value = number(text);
        if (value < 1) // In a RecurrenceRule 0 says that there is no limit.
            refuse(text);
        return value;
    }

    GregorianCalendarBase::Month month(std::string_view text) const
    {
        const int value = number(text);
        if (value < 1 || value > 12)
            refuse(text);
        return static_cast<GregorianCalendarBase::Month>(value - 1);
    }

    template <std::size_t count> int indexOf(const std::string_view (&names)[count], std::string_view value) const
    {
        const auto found = std::ranges::find(names, value);
        if (found == std::end(names))
            refuse(value);
        return static_cast<int>(found - names);
    }

    GregorianCalendarBase::DayOfWeek weekday(std::string_view value) const
    {
        return static_cast<GregorianCalendarBase::DayOfWeek>(indexOf(weekdayNames, value) +
                                                             GregorianCalendarBase::Sunday);
    }

    // "FR", "1FR", "-2FR".
    Rule::Weekday numberedWeekday(std::string_view value) const
    {
        const std::size_t length = value.size() < 2 ? 0 : value.size() - 2;
        Rule::Weekday day{weekday(value.substr(length))};
        if (length > 0) {
            day.nth = number(value.substr(0, length));
            if (day.nth == 0)
                refuse(value);
        }
        return day;
    }

    /// Reads "19971224", "19971224T090000" or "19971224T090000Z".
    class UntilText {
    public:
        UntilText(const RuleText& rule, std::string_view value) : rule_(rule), value_(value) {}

        Until read() const
        {
            const bool isDay = value_.size() == 8, isUTC = value_.size() == 16 && value_[15] == 'Z';
            if (!isDay && (value_.size() != 15 + std::size_t(isUTC) || value_[8] != 'T'))
                rule_.refuse(value_);
            const chrono::year_month_day date(chrono::year(field(0, 4)),
                                              chrono::month(static_cast<unsigned>(field(4, 2))),
                                              chrono::day(static_cast<unsigned>(field(6, 2))));
            if (!date.ok())
                rule_.refuse(value_);
            const std::int64_t day = chrono::sys_days(date).time_since_epoch().count() * millisPerDay;
            if (isDay)
                return {day, Until::Kind::day};
            return {day + timeOfDay(), isUTC ? Until::Kind::utc : Until::Kind::local};
        }

    private:
        int field(std::size_t at, std::size_t length) const
        {
            const std::string_view digits = value_.substr(at, length);
            if (digits.find_first_not_of("0123456789") != digits.npos)
                rule_.refuse(value_);
            return rule_.number(digits);
        }
        std::int64_t timeOfDay() const
        {
            const int hour = field(9, 2), minute = field(11, 2), second = field(13, 2);
            if (hour > 23 || minute > 59 || second > 60)
                rule_.refuse(value_);
            return std::int64_t(1000) * ((hour * 60 + minute) * 60 + std::min(second, 59));
        }

        const RuleText& rule_;
        std::string_view value_;
    };

    std::string_view left_;
    const Refusal& refusal_;
    Rule rule_;
    std::string_view name_; // Of the part that is read.
    std::vector<std::string_view> seen_;
};

bool isWeekday(int day) { return day >= GregorianCalendarBase::Sunday && day <= GregorianCalendarBase::Saturday; }

std::string_view nameOfWeekday(int day)
{
    return isWeekday(day) ? weekdayNames[day - GregorianCalendarBase::Sunday] : std::string_view("?");
}

void checkValues(const Rule& rule, const Refusal& refusal)
{
    if (rule.frequency < Rule::Frequency::secondly || rule.frequency > Rule::Frequency::yearly)
        refusal.value(static_cast<int>(rule.frequency), "FREQ");
    if (rule.interval < 1)
        refusal.value(rule.interval, "INTERVAL");
    if (rule.count < 0)
        refusal.value(rule.count, "COUNT");
    if (!isWeekday(rule.weekStart))
        refusal.value(rule.weekStart, "WKST");
    for (const NumberList& list : numberLists)
        for (const int value : rule.*list.values)
            if (!list.holds(value))
                refusal.value(value, list.name);
    for (const auto month : rule.byMonth)
        if (month < GregorianCalendarBase::January || month > GregorianCalendarBase::December)
            refusal.value(month + 1, "BYMONTH");
    for (const Rule::Weekday& weekday : rule.byDay)
        if (!isWeekday(weekday.day) || weekday.nth < -53 || weekday.nth > 53)
            refusal.value(std::to_string(weekday.nth) + std::string(nameOfWeekday(weekday.day)), "BYDAY");
}

// What the standard says must not be.
void checkParts(const Rule& rule, const Refusal& refusal)
{
    using enum Rule::Frequency;
    const Rule::Frequency every = rule.frequency;
    const auto refuseIf = [&](bool isWrong, const char* reason) {
        if (isWrong)
            refusal.because(reason);
    };
    const bool isNumbered = std::ranges::any_of(rule.byDay, [](const Rule::Weekday& day) { return day.nth != 0; });
    const bool hasOthers =
        !rule.byDay.empty() || !rule.byMonth.empty() || std::ranges::any_of(numberLists, [&](const NumberList& list) {
            return list.values != &Rule::bySetPos && !(rule.*list.values).empty();
        });
    refuseIf(rule.count != 0 && rule.until, "COUNT and UNTIL exclude each other");
    refuseIf(isNumbered && every != monthly && every != yearly, "BYDAY has numbers in monthly and yearly rules only");
    refuseIf(isNumbered && !rule.byWeekNo.empty(), "BYDAY has no numbers beside BYWEEKNO");
    refuseIf(!rule.byMonthDay.empty() && every == weekly, "BYMONTHDAY is not for weekly rules");
    refuseIf(!rule.byYearDay.empty() && every >= daily && every <= monthly,
             "BYYEARDAY is not for daily, weekly and monthly rules");
    refuseIf(!rule.byWeekNo.empty() && every != yearly, "BYWEEKNO is for yearly rules only");
    refuseIf(!rule.bySetPos.empty() && !hasOthers, "BYSETPOS needs another BY part");
}

template <class Ch> Rule parseRule(const Ch* text)
{
    const Refusal refusal([text] { return quoted(text); });
    std::string upper; // Only letters beyond ASCII are lost, which no rule has.
    for (const Ch* c = text; c && *c; ++c)
        upper += *c >= 'a' && *c <= 'z' ? static_cast<char>(*c - 'a' + 'A') : *c < 0x80 ? static_cast<char>(*c) : '?';
    Rule rule = RuleText(upper, refusal).read();
    checkValues(rule, refusal);
    checkParts(rule, refusal);
    return rule;
}

std::string textOf(const Until& until)
{
    int millis = 0;
    const chrono::year_month_day date{chrono::sys_days(chrono::days(splitDay(until.time, millis)))};
    const int second = millis / 1000;
    char text[64];
    int length = std::snprintf(text, sizeof text, "%04d%02u%02u", int(date.year()), unsigned(date.month()),
                               unsigned(date.day()));
    if (until.kind != Until::Kind::day)
        length +=
            std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), "T%02d%02d%02d%s",
                          second / 3600, second / 60 % 60, second % 60, until.kind == Until::Kind::utc ? "Z" : "");
    return std::string(text, static_cast<std::size_t>(length));
}

template <class List, class TextOf>
void append(std::string& text, std::string_view name, const List& list, TextOf textOf)
{
    char separator = '=';
    for (const auto& item : list) {
        if (separator == '=')
            text.append(1, ';').append(name);
        text += separator + std::string(textOf(item));
        separator = ',';
    }
}

std::string formatRule(const Rule& rule)
{
    const int frequency = static_cast<int>(rule.frequency);
    const bool isKnown = frequency >= 0 && frequency < static_cast<int>(std::size(frequencyNames));
    std::string text = "FREQ=" + std::string(isKnown ? frequencyNames[frequency] : std::string_view("?"));
    const auto number = [](int value) { return std::to_string(value); };
    if (rule.interval != 1)
        text += ";INTERVAL=" + number(rule.interval);
    if (rule.count != 0)
        text += ";COUNT=" + number(rule.count);
    if (rule.until)
        text += ";UNTIL=" + textOf(*rule.until);
    append(text, "BYMONTH", rule.byMonth, [](int month) { return std::to_string(month + 1); });
    for (const NumberList& list : numberLists) {
        if (list.values == &Rule::byHour)
            append(text, "BYDAY", rule.byDay, [&](const Rule::Weekday& day) {
                return (day.nth ? number(day.nth) : std::string()).append(nameOfWeekday(day.day));
            });
        append(text, list.name, rule.*list.values, number);
    }
    if (rule.weekStart != GregorianCalendarBase::Monday)
        text.append(";WKST=").append(nameOfWeekday(rule.weekStart));
    return text;
}
} // namespace

void RecurrenceRule::validate() const
{
    const Refusal refusal([this] { return quoted(formatRule(*this).c_str()); });
    checkValues(*this, refusal);
    checkParts(*this, refusal);
}

RecurrenceRule parseRecurrenceRule(const char* text) { return parseRule(text); }
RecurrenceRule parseRecurrenceRule(const wchar_t* text) { return parseRule(text); }

BasicString<char> formatRecurrenceRuleA(const RecurrenceRule& rule) { return formatRule(rule); }
BasicString<wchar_t> formatRecurrenceRuleW(const RecurrenceRule& rule)
{
    return BasicString<wchar_t>(formatRule(rule).c_str());
}
} // namespace tarn
