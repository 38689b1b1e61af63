#pragma once

#include <tarn/Export.h>
#include <tarn/GregorianCalendarBase.h>
#include <tarn/Layout.h>
#include <tarn/Time.h>

struct _TIME_DYNAMIC_ZONE_INFORMATION;
struct _TIME_ZONE_INFORMATION;

namespace tarn {
class ZoneHistory;

/// An offset from UTC with two yearly rules, the start and the end of daylight time; or, of a zone by its name, all
/// that the platform's tables know of its past and future.
///
/// A value that a Calendar carries. Offsets are milliseconds to add to UTC, positive east of Greenwich;
/// times of day are milliseconds after midnight. Rules compare local dates with a transition: the
/// instant of a transition itself still belongs to what was before it.
class TARN_API TimeZone {
public:
    /// The names that the rules are given with.
    ///@{
    using Era = GregorianCalendarBase::Era;
    using Month = GregorianCalendarBase::Month;
    using DayOfWeek = GregorianCalendarBase::DayOfWeek;
    ///@}

    /// UTC, without daylight time.
    TimeZone();
    /// UTC too: the name is ignored. Call named().
    TimeZone(const char* name);

    /// The zone of the running system, with the numbers of its rules as the platform counts them: months
    /// from 1 and weekdays from 0, so that transitions are found in the month after the true one. The
    /// offsets are right; for right transitions use currentForYear(). Throws WindowsError "Can't get time
    /// zone information".
    static TimeZone current();
    /// The zone of the running system with the transitions of this year (1601 to 30827; others as the
    /// nearest of these), right to the millisecond. The rules are dates, so they hold for no other year.
    /// Throws as current().
    static TimeZone currentForYear(int year);
    /// The zone of a name, that of Windows, "W. Europe Standard Time", or that of the rest of the world,
    /// "Europe/Berlin", for all times: by the platform's tables in the years that these know, by their first and last
    /// year in others. The offsets that it tells by itself are those of the last year; to set one of them, or a rule,
    /// makes it a zone with the same rules for all years. Throws WindowsError `Can't get time zone information of
    /// "Mars/Olympus"`, with ERROR_FILE_NOT_FOUND for a name that is not known.
    ///@{
    static TimeZone named(const char* name);
    static TimeZone named(const wchar_t* name);
    ///@}
    /// The same for the zone of the running system. Throws as current() or named().
    static TimeZone ofSystem();
    /// As currentForYear() for the zone of a name, that of Windows, "W. Europe Standard Time", or that of the rest of
    /// the world, "Europe/Berlin", by the rules that the platform's tables have for the year. They know no more than
    /// two changes a year; for years that they do not cover the system takes rules of others. Throws as without a
    /// year.
    ///@{
    static TimeZone named(const char* name, int year);
    static TimeZone named(const wchar_t* name, int year);
    ///@}

    /// What daylight time adds to the standard offset, in milliseconds.
    ///@{
    int GetDSTOffset() const { return dstOffset_; }
    /// 0: no daylight time.
    void SetDSTOffset(int milliseconds);
    ///@}
    /// What standard time adds to UTC, in milliseconds.
    ///@{
    int GetStandardOffset() const { return rawOffset_; }
    void SetStandardOffset(int milliseconds);
    ///@}
    /// Whether the daylight offset is other than 0; rules alone make no daylight time. In a zone for all times, whether
    /// its clocks have ever been changed.
    bool UseDaylightTime() const { return dstOffset_ != 0 || hasHistory(); }

    /// A rule by weekday: with -1 the last one of the month, with -2 the one before (February counts 28
    /// days in every year). A positive `dayOfWeekInMonth` is meant to count from the month's start, but the
    /// rule's day comes out right for few of the dates that it is compared with: call SetStartRuleByWeekday().
    ///
    /// `time` is compared with standard time when an instant is turned into fields and with the clock's
    /// time in the other direction: give the end rule in standard time. Nothing is validated.
    void SetStartRule(Month month, int dayOfWeekInMonth, DayOfWeek dayOfWeek, int time);
    /// A rule by date.
    void SetStartRule(Month month, int dayOfMonth, int time);
    /// As SetStartRule(), for the end of daylight time.
    ///@{
    void SetEndRule(Month month, int dayOfWeekInMonth, DayOfWeek dayOfWeek, int time);
    void SetEndRule(Month month, int dayOfMonth, int time);
    ///@}

    /// A rule by weekday that is right in every month and year: `nth` 1 is the first one of the month, 5 the fifth
    /// or, where there are four, the last; -1 is the last, -2 the one before. The rule takes effect at `time`
    /// itself, which is standard time for the end rule, too.
    ///@{
    void SetStartRuleByWeekday(Month month, int nth, DayOfWeek dayOfWeek, int time);
    void SetEndRuleByWeekday(Month month, int nth, DayOfWeek dayOfWeek, int time);
    ///@}

    /// What to add to UTC at this local date and time of day: the standard offset, in daylight time with
    /// the daylight amount on top. There is no daylight time in the era BC; `year` only tells SetStartRuleByWeekday()
    /// how long February is.
    int GetOffset(Era era, int year, Month month, int day, DayOfWeek dayOfWeek, int millis) const;

    /// What clocks add to UTC, in milliseconds.
    struct Offsets {
        /// The standard offset that is in force.
        int standard;
        /// What daylight time adds to it; 0 when there is none.
        int daylight;

        /// Equal numbers.
        bool operator==(const Offsets&) const = default;
    };
    /// At an instant.
    Offsets offsetsAt(const Time& time) const;
    /// Whether daylight time is in force at the instant.
    bool InDaylightTime(const Time& time) const;

    /// What a local time stands for.
    struct Instants {
        /// How often clocks show it: 0 in the hour that the start of daylight time leaves out, 2 in the hour
        /// that its end repeats.
        int count;
        /// The instant in daylight time and the one in standard time, the same when there is but one. Of a time
        /// that is left out they are shown as just as long before the gap, and after it.
        ///@{
        Time earlier;
        Time later;
        ///@}
    };
    /// The instants at which clocks in this zone show a local time, given as a UTC clock shows it:
    /// `zone.instantsOf(parseISOTime("2026-10-25T02:30"))`.
    Instants instantsOf(const Time& local) const;

private:
    struct Rule {
        int mode;
        int month;
        int time;
        int dayOfWeek;
        int day;

        int compare(int year, Month dateMonth, int dateDay, DayOfWeek dateDayOfWeek, int millis) const;
        int dayByWeekday(int monthLength, int dateDay, DayOfWeek dateDayOfWeek) const;
    };

    friend class GregorianCalendar;
    static constexpr int wholeHistory = 3; // The mode of a start rule in whose place there is a history.

    explicit TimeZone(const _TIME_ZONE_INFORMATION& information);
    explicit TimeZone(const ZoneHistory& history);
    static TimeZone forYear(int year, const _TIME_DYNAMIC_ZONE_INFORMATION* zone);
    void set(const _TIME_ZONE_INFORMATION& information);
    bool hasHistory() const { return start_.mode == wholeHistory; }
    const ZoneHistory& history() const;
    void dropHistory();

    int dstOffset_ = 0;
    int rawOffset_ = 0;
    Rule start_{};
    Rule end_{};
};
TARN_LAYOUT(TimeZone, 48, 48);
} // namespace tarn
