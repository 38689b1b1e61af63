#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/GregorianCalendarBase.h>
#include <tarn/Time.h>

#include <optional>
#include <vector>

namespace tarn {
/// How something repeats, as iCalendar (RFC 5545, section 3.3.10) has it: a period, and what is chosen in each:
///
///     RecurrenceRule payday = parseRecurrenceRule("FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1");
///     payday.count = 12;
///
/// A value, whose members have the names of the rule's parts. A RecurrenceSet has the instants. Lists that are empty
/// leave the choice to the first start; negative numbers count from the end.
struct TARN_API RecurrenceRule {
    /// The length of a period.
    enum class Frequency { secondly, minutely, hourly, daily, weekly, monthly, yearly };
    /// A day of the week.
    struct Weekday {
        /// By its name.
        GregorianCalendarBase::DayOfWeek day;
        /// 1 is the first one of the month, or of the year in a yearly rule without months; -1 the last; 0 all of them.
        int nth = 0;

        /// The same day and number.
        bool operator==(const Weekday&) const = default;
    };
    /// The last possible start, itself included.
    struct Until {
        /// How the time is meant.
        enum class Kind {
            /// Any time of that day, by the clocks of the set's zone.
            day,
            /// What clocks in the set's zone show.
            local,
            /// An instant.
            utc
        };
        /// The instant; of the others what clocks show, as a UTC clock shows it: `parseISOTime("2026-12-24")`.
        Time time;
        /// What `time` is.
        Kind kind = Kind::utc;

        /// The same time of the same kind.
        bool operator==(const Until&) const = default;
    };

    /// FREQ.
    Frequency frequency = Frequency::daily;
    /// INTERVAL: only each such period counts, from that of the first start on.
    int interval = 1;
    /// COUNT: how many starts there are in all, the first one included; 0 for no limit.
    int count = 0;
    /// UNTIL, in whose place there may be a COUNT.
    std::optional<Until> until;
    /// BYSECOND, BYMINUTE and BYHOUR, from 0. There are no leap seconds: 60 is taken for 59.
    ///@{
    std::vector<int> bySecond;
    std::vector<int> byMinute;
    std::vector<int> byHour;
    ///@}
    /// BYDAY.
    std::vector<Weekday> byDay;
    /// BYMONTHDAY, 1 to 31 or -31 to -1.
    std::vector<int> byMonthDay;
    /// BYYEARDAY, 1 to 366 or -366 to -1.
    std::vector<int> byYearDay;
    /// BYWEEKNO, 1 to 53 or -53 to -1: the first week of a year is the first that has four days in it.
    std::vector<int> byWeekNo;
    /// BYMONTH, by name: these count from 0, in the text from 1.
    std::vector<GregorianCalendarBase::Month> byMonth;
    /// BYSETPOS: which of the starts in a period are taken, 1 to 366 or -366 to -1.
    std::vector<int> bySetPos;
    /// WKST: the day on which weeks begin.
    GregorianCalendarBase::DayOfWeek weekStart = GregorianCalendarBase::Monday;

    /// The same parts, in the same order.
    bool operator==(const RecurrenceRule&) const = default;

    /// Throws Exception "Not a recurrence rule: "TEXT": WHY" for values that no rule has, and for parts that exclude
    /// each other.
    void validate() const;
};

/// Reads the text of a rule, "FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,FR", with its parts in any order and in letters of any
/// case.
///
/// Throws Exception `Not a recurrence rule: "FREQ=DAILY;COUNT=0": "0" is no COUNT`, with the reason at its end, for any
/// other text.
///@{
TARN_API RecurrenceRule parseRecurrenceRule(const char* text);
TARN_API RecurrenceRule parseRecurrenceRule(const wchar_t* text);
///@}
/// The text of a rule, which parseRecurrenceRule() reads as long as the year of UNTIL has four digits. Parts that say
/// what is so without them are left out.
///@{
TARN_API BasicString<char> formatRecurrenceRuleA(const RecurrenceRule& rule);
TARN_API BasicString<wchar_t> formatRecurrenceRuleW(const RecurrenceRule& rule);
///@}
} // namespace tarn
