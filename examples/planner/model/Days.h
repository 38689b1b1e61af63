#pragma once

#include <tarn/GregorianCalendar.h>

#include <cstdint>
#include <optional>
#include <string>

namespace planner {
/// A day by its Julian day number, which is the same whatever calendar names it.
using Day = std::int64_t;

/// What a clock on the wall shows, counted in milliseconds as if it showed UTC: a date and a time of day
/// that belong to no zone.
using Local = std::int64_t;

constexpr Local minuteLength = 60000, hourLength = 60 * minuteLength, dayLength = 24 * hourLength;

inline Day dayOf(Local local) { return tarn::GregorianCalendar::millisToJulianDay(local); }
inline Local midnightOf(Day day) { return tarn::GregorianCalendar::JulianDayToMillis(day); }
inline Local timeOfDay(Local local) { return local - midnightOf(dayOf(local)); }

struct Date {
    int year;  ///< Astronomical: 0 is 1 BC.
    int month; ///< January is 0.
    int day;   ///< From 1.

    bool operator==(const Date&) const = default;
};

/// How days are named and counted in weeks: what the user chooses about the calendar.
struct Reckoning {
    int firstDayOfWeek = tarn::GregorianCalendar::Monday;
    int minimalDaysInFirstWeek = 4;
    /// The first day of the Gregorian calendar; before it the Julian one counts.
    Day cutover = planner::dayOf(tarn::GregorianCalendarBase().gregorianChange());

    bool operator==(const Reckoning&) const = default;

    Date dateOf(Day day) const;
    /// None when there is no such day: 30 February, or 10 October 1582.
    std::optional<Day> dayOf(const Date& date) const;
    int weekdayOf(Day day) const; ///< Sunday is 1.
    /// The number of the week in its year. The days that the cutover left out count, so that a number may be
    /// left out, too.
    int weekOf(Day day) const;

    /// The month's first day that there is: the cutover may take days off its beginning.
    Day firstOfMonth(int year, int month) const;
    Day lastOfMonth(int year, int month) const;
    Day firstOfWeek(Day day) const;
    /// The same day of another month. Where there is none, the month's last day, or the first one after
    /// those that the cutover took away.
    Day addMonths(Day day, int months) const;

private:
    tarn::GregorianCalendar calendar() const;
};

// The years that can be shown.
constexpr int firstYear = -4711, lastYear = 9999;

const wchar_t* monthName(int month);
const wchar_t* weekdayName(int weekday); ///< Sunday is 1.
std::wstring yearText(int year);         ///< "1582", "1 BC".
std::wstring dateText(const Date& date); ///< "4 October 1582".
/// "1582-10-04", as dates are typed in.
std::wstring shortDateText(const Date& date);
/// Reads what shortDateText writes. Throws Exception with a sentence for the user.
Day parseDay(const std::wstring& text, const Reckoning& reckoning);
/// The first day of the Gregorian calendar, in that calendar.
std::wstring cutoverText(Day cutover);
/// Reads what cutoverText writes. Throws Exception with a sentence for the user, also for a day before 1582
/// or after 1999.
Day parseCutover(const std::wstring& text);

std::wstring timeText(Local timeOfDay); ///< "09:30".
/// Reads "9:30", "09:30" or "9" as milliseconds after midnight. Throws Exception with a sentence for the user.
Local parseTimeOfDay(const std::wstring& text);
} // namespace planner
