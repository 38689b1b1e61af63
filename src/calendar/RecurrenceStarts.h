#pragma once

#include <tarn/RecurrenceRule.h>

#include "DayNumbers.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// What a rule names, by the clock on the wall.

namespace tarn {
/// Which days the parts of a rule name. Years are astronomical, months from 0; before 1582-10-15 they are Julian.
class DayFilter {
public:
    /// What the rule leaves open is as on the day of the first start.
    DayFilter(const RecurrenceRule& rule, std::int64_t startDay);

    bool matches(std::int64_t day) const;

    static Date dateOf(std::int64_t day) { return tarn::dateOf(day >= cutoverDay, day); }
    /// The cutover took no month's first day.
    static std::int64_t firstOfMonth(int year, int month);
    static std::int64_t firstOfYear(int year) { return firstOfMonth(year, 0); }
    /// The first day of a day's week.
    std::int64_t firstOfWeek(std::int64_t day) const { return day - (weekdayOf(day) - weekStart_ + 7) % 7; }

private:
    /// Numbers of days or weeks, from the beginning and from the end.
    struct Numbers {
        std::vector<bool> fromBegin, fromEnd;

        bool isEmpty() const { return fromBegin.empty(); }
        void add(int number);
        void add(const std::vector<int>& numbers);
        bool has(std::int64_t number, std::int64_t numberFromEnd) const;
    };
    struct NumberedWeekday {
        int weekday;
        int nth;
    };

    bool isMonthDay(std::int64_t day, const Date& date) const;
    bool isWeekday(std::int64_t day, const Date& date) const;
    bool isYearDay(std::int64_t day, const Date& date) const;
    bool isInWeek(std::int64_t day) const;

    int weekStart_;               // From 0, Sunday.
    unsigned months_ = 0;         // A bit for each; none stands for all.
    unsigned weekdays_ = 0;       // The same.
    bool countsInMonths_ = false; // As weekdays with numbers do, in years otherwise.
    std::vector<NumberedWeekday> numberedWeekdays_;
    Numbers monthDays_, yearDays_, weeks_;
};

/// The local times that a rule names, one after the other, in milliseconds as a UTC clock would show them.
class RecurrenceStarts {
public:
    /// Of a valid rule.
    RecurrenceStarts(const RecurrenceRule& rule, std::int64_t start);

    /// The next one behind the first start, false when there is none up to the end of the year 9999.
    bool next(std::int64_t& local);
    /// Pass over what lies before, and behind, as far as whole periods do; to be called before next().
    ///@{
    void skipTo(std::int64_t local);
    void endAt(std::int64_t local);
    ///@}

private:
    bool nextPeriod();
    bool nextPeriodOfDays();
    bool nextPeriodInDay();
    bool isBeyond(std::int64_t day) const;
    void beginPeriod();
    void setTimes(const RecurrenceRule& rule, int timeOfDay);
    void setUnitsOfDay(const RecurrenceRule& rule);
    /// Of the period with this number: its first day, and the first one behind it.
    struct Days {
        std::int64_t begin, end;
    };
    Days daysOf(std::int64_t number) const;
    std::int64_t numberOf(std::int64_t local) const;

    const DayFilter filter_;
    const RecurrenceRule::Frequency frequency_;
    const std::int64_t interval_;
    const std::vector<int> positions_;
    const std::int64_t start_;
    const std::int64_t startDay_;
    const Date startDate_;

    // Of periods shorter than a day: their length, the number of the first one since the epoch, and those of a day in
    // which the rule names anything.
    std::int64_t unit_ = 0;
    std::int64_t firstUnit_ = 0;
    std::vector<int> unitsOfDay_;

    // The starts of a period are its slots, days or what is shorter, each with all of the times in it.
    std::vector<std::int64_t> slots_;
    std::vector<int> times_;
    std::vector<std::size_t> chosen_; // By BYSETPOS, counted through slots and times.
    std::size_t at_ = 0;
    std::size_t count_ = 0;

    std::int64_t number_ = -1; // Of the period.
    std::int64_t lastFound_;   // The day of the last period that had a start.
    std::int64_t endDay_;      // Periods that begin here have none.
};
} // namespace tarn
