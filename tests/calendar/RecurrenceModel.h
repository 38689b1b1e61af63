#pragma once

#include <tarn/RecurrenceRule.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <set>

/// The starts of a rule in UTC, found by looking at every day from the first start's period on. What the parts name is
/// put together by the standard library's calendar. For starts on whole minutes, after 1582.
class RecurrenceModel {
public:
    RecurrenceModel(const tarn::RecurrenceRule& rule, std::int64_t start)
        : rule_(rule), start_(minuteOf(start)), first_(std::chrono::floor<days>(start_))
    {
    }

    std::vector<tarn::Time> startsBefore(std::int64_t end)
    {
        const Minute last = minuteOf(end);
        const auto ofDay = minutesOfDay();
        const days margin(rule_.frequency < Frequency::daily ? 0 : 366);
        std::vector<Minute> named;
        for (Day day = first_ - margin; day < last + margin; day += days(1))
            for (const auto minute : isNamed(day) ? ofDay : std::vector<std::chrono::minutes>())
                if ((periodOf(day + minute) - periodOf(start_)) % rule_.interval == 0)
                    named.push_back(day + minute);
        std::vector<tarn::Time> times = {std::chrono::milliseconds(start_.time_since_epoch()).count()};
        for (auto period = named.begin(); period != named.end();) {
            const auto isOther = [&](Minute minute) { return periodOf(minute) != periodOf(*period); };
            const auto next = std::find_if(period, named.end(), isOther);
            for (const Minute minute : chosenOf({period, next}))
                if (minute > start_ && minute < last)
                    times.emplace_back(std::chrono::milliseconds(minute.time_since_epoch()).count());
            period = next;
        }
        return times;
    }

private:
    using days = std::chrono::days;
    using Day = std::chrono::sys_days;
    using Date = std::chrono::year_month_day;
    using Minute = std::chrono::sys_time<std::chrono::minutes>;
    using Frequency = tarn::RecurrenceRule::Frequency;

    static Minute minuteOf(std::int64_t time)
    {
        return Minute(std::chrono::floor<std::chrono::minutes>(std::chrono::milliseconds(time)));
    }

    Day weekOf(Day day) const
    {
        while (std::chrono::weekday(day).c_encoding() + 1 != static_cast<unsigned>(rule_.weekStart))
            day -= days(1);
        return day;
    }

    long long periodOf(Minute minute) const
    {
        const Day day = std::chrono::floor<days>(minute);
        const Date date(day);
        const long long month = int(date.year()) * 12LL + unsigned(date.month());
        switch (rule_.frequency) {
        case Frequency::yearly:
            return int(date.year());
        case Frequency::monthly:
            return month;
        case Frequency::weekly:
            return (weekOf(day).time_since_epoch().count() + 700000) / 7;
        case Frequency::daily:
            return day.time_since_epoch().count();
        default:
            return rule_.frequency == Frequency::hourly
                       ? std::chrono::floor<std::chrono::hours>(minute).time_since_epoch().count()
                       : minute.time_since_epoch().count();
        }
    }

    // Some of the days from `begin` on, up to `end`, by their numbers.
    static std::set<Day> numbered(Day begin, Day end, const std::vector<int>& numbers, int step = 1)
    {
        std::set<Day> named;
        for (const int number : numbers) {
            const Day day = number > 0 ? begin + days((number - 1) * step) : end + days(number * step);
            for (int i = 0; i < step; ++i)
                if (step > 1 || (day >= begin && day < end))
                    named.insert(day + days(i));
        }
        return named;
    }

    const std::set<Day>& weekdaysIn(Day begin, Day end)
    {
        const auto [place, isNew] = weekdays_.try_emplace(begin);
        std::set<Day>& named = place->second;
        if (!isNew)
            return named;
        for (const auto& weekday : rule_.byDay) {
            std::vector<Day> all;
            for (Day day = begin; day < end; day += days(1))
                if (std::chrono::weekday(day).c_encoding() + 1 == static_cast<unsigned>(weekday.day))
                    all.push_back(day);
            const int count = static_cast<int>(all.size()),
                      nth = weekday.nth > 0 ? weekday.nth - 1 : count + weekday.nth;
            if (weekday.nth == 0)
                named.insert(all.begin(), all.end());
            else if (nth >= 0 && nth < count)
                named.insert(all[static_cast<std::size_t>(nth)]);
        }
        return named;
    }

    bool isNamed(Day day)
    {
        const Date date(day), start(first_);
        const auto every = rule_.frequency;
        const Day month = date.year() / date.month() / 1,
                  monthEnd = Day(date.year() / date.month() / std::chrono::last) + days(1);
        const Day year = date.year() / 1 / 1, yearEnd = (date.year() + std::chrono::years(1)) / 1 / 1;
        const bool inMonths = every == Frequency::monthly || !rule_.byMonth.empty();
        const auto holds = [](const std::vector<int>& numbers, const auto& named, Day wanted) {
            return numbers.empty() || named.contains(wanted);
        };
        const auto isMonth = [&](auto wanted) { return unsigned(date.month()) == unsigned(wanted) + 1; };
        if (!rule_.byMonth.empty() && std::ranges::none_of(rule_.byMonth, isMonth))
            return false;
        if (!holds(rule_.byMonthDay, numbered(month, monthEnd, rule_.byMonthDay), day) ||
            !holds(rule_.byYearDay, numbered(year, yearEnd, rule_.byYearDay), day) || !isInWeek(day))
            return false;
        if (!rule_.byDay.empty() && !weekdaysIn(inMonths ? month : year, inMonths ? monthEnd : yearEnd).contains(day))
            return false;
        // What is left open is the start's.
        if (every < Frequency::weekly || !rule_.byDay.empty() || !rule_.byMonthDay.empty() || !rule_.byYearDay.empty())
            return true;
        if (every == Frequency::weekly || !rule_.byWeekNo.empty())
            return std::chrono::weekday(day) == std::chrono::weekday(first_);
        return date.day() == start.day() &&
               (every == Frequency::monthly || !rule_.byMonth.empty() || date.month() == start.month());
    }

    bool isInWeek(Day day) const
    {
        if (rule_.byWeekNo.empty())
            return true;
        const Date fourth(weekOf(day) + days(3));
        const auto firstWeek = [this](std::chrono::year year) { return weekOf(Day(year / 1 / 4)); };
        const Day begin = firstWeek(fourth.year()), end = firstWeek(fourth.year() + std::chrono::years(1));
        const auto named = numbered(begin, end, rule_.byWeekNo, 7);
        return named.contains(day) && day >= begin && day < end;
    }

    std::vector<std::chrono::minutes> minutesOfDay() const
    {
        const auto has = [](const std::vector<int>& numbers, long long number, bool otherwise) {
            return numbers.empty() ? otherwise : std::ranges::count(numbers, number) != 0;
        };
        const long long start = (start_ - first_).count();
        std::vector<std::chrono::minutes> minutes;
        for (long long minute = 0; minute < 24 * 60; ++minute)
            if (has(rule_.byHour, minute / 60, rule_.frequency < Frequency::daily || minute / 60 == start / 60) &&
                has(rule_.byMinute, minute % 60, rule_.frequency < Frequency::hourly || minute % 60 == start % 60))
                minutes.emplace_back(minute);
        return minutes;
    }

    std::vector<Minute> chosenOf(const std::vector<Minute>& all) const
    {
        std::set<std::size_t> chosen;
        for (const int position : rule_.bySetPos)
            chosen.insert(position > 0 ? static_cast<std::size_t>(position - 1)
                                       : all.size() - static_cast<std::size_t>(-position));
        std::vector<Minute> minutes;
        for (const std::size_t index : chosen)
            if (index < all.size())
                minutes.push_back(all[index]);
        return rule_.bySetPos.empty() ? all : minutes;
    }

    const tarn::RecurrenceRule& rule_;
    const Minute start_;
    const Day first_;
    std::map<Day, std::set<Day>> weekdays_; // Of a month or year, by its first day.
};
