// Moving one field round within its range.

#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "DayNumbers.h"

#include <algorithm>

namespace tarn {
namespace {
/// Days since the epoch that follow each other: those of a month or year, of which a cutover may have
/// taken some away.
struct DaySpan {
    std::int64_t first;
    std::int64_t last;

    int count() const { return static_cast<int>(last - first + 1); }
};

// The days that both calendars name the same, where the Gregorian one begins with day `cutover`. `today`
// is one of them.
DaySpan daysByCutover(DaySpan julian, DaySpan gregorian, std::int64_t cutover, std::int64_t today)
{
    julian.last = std::min(julian.last, cutover - 1);
    gregorian.first = std::max(gregorian.first, cutover);
    const bool joined = julian.first <= julian.last && julian.last + 1 == cutover &&
                        gregorian.first <= gregorian.last && gregorian.first == cutover;
    if (joined)
        return {julian.first, gregorian.last};
    return today < cutover ? julian : gregorian;
}

DaySpan monthIn(bool gregorian, int year, int month)
{
    const bool leap = isLeapIn(gregorian, year);
    const std::int64_t first = julianDayBeforeYear(gregorian, year) + 1 - epochJulianDay + daysBeforeMonth[leap][month];
    return {first, first + daysInMonth[leap][month] - 1};
}

DaySpan yearIn(bool gregorian, int year)
{
    return {monthIn(gregorian, year, 0).first, monthIn(gregorian, year, 11).last};
}

// `position` after `amount` steps round a circle of `count` places.
int stepsRound(int position, int amount, int count)
{
    return floorRemainder(floorRemainder(position, count) + amount % count, count);
}

struct ClockField {
    int count;
    int unit; ///< Milliseconds.
};

ClockField clockField(unsigned field)
{
    switch (field) {
    case Calendar::FieldAmPm:
        return {2, 43200000};
    case Calendar::FieldHour:
        return {12, 3600000};
    case Calendar::FieldHourOfDay:
        return {24, 3600000};
    case Calendar::FieldMinute:
        return {60, 60000};
    case Calendar::FieldSecond:
        return {60, 1000};
    default:
        return {1000, 1};
    }
}

// The rows of a calendar sheet of some days, and where a day stands on it.
struct Sheet {
    Sheet(DaySpan span, int firstDayOfWeek)
        : days(span), lead(placeInWeek(span.first, firstDayOfWeek)), rows((span.count() + lead + 6) / 7)
    {
    }

    static int placeInWeek(std::int64_t day, int firstDayOfWeek)
    {
        return floorRemainder(wrappingSubtract(weekdayOf(day) + 1, firstDayOfWeek), 7);
    }
    int rowOf(std::int64_t day) const { return (static_cast<int>(day - days.first) + lead) / 7; }
    /// The same weekday in another row, or the row's day that is nearest to it.
    std::int64_t inRow(std::int64_t day, int row) const
    {
        return std::clamp(day + std::int64_t{7} * (row - rowOf(day)), days.first, days.last);
    }

    DaySpan days;
    int lead; ///< Days of the first row before the first day.
    int rows;
};

// The day `amount` weeks on, counting only weeks that belong to the year.
std::int64_t rollWeekOfYear(const Sheet& year, std::int64_t today, int minimalDays, int amount)
{
    const int firstRow = 7 - year.lead >= minimalDays ? 0 : 1;
    const int daysInLastRow = (year.lead + year.days.count()) % 7;
    const bool lastIsNextYears = daysInLastRow != 0 && 7 - daysInLastRow >= minimalDays;
    const int weeks = year.rows - firstRow - (lastIsNextYears ? 1 : 0);
    if (weeks < 1)
        return today; // A cutover left the year no week of its own.
    return year.inRow(today, firstRow + stepsRound(year.rowOf(today) - firstRow, amount, weeks));
}

// The same week's day with the new weekday, or its neighbour a week on or back that lies in the month.
std::int64_t rollWeekday(const DaySpan& month, std::int64_t today, int firstDayOfWeek, int amount)
{
    const int weekday = weekdayOf(today);
    const std::int64_t weekStart = today - Sheet::placeInWeek(today, firstDayOfWeek);
    std::int64_t day = weekStart + floorRemainder(stepsRound(weekday, amount, 7) - weekdayOf(weekStart), 7);
    if (day < month.first)
        day += 7;
    else if (day > month.last)
        day -= 7;
    return std::clamp(day, month.first, month.last);
}

// The day whose weekday comes the new number of times up to it in the month.
std::int64_t rollWeekdayInMonth(const DaySpan& month, std::int64_t today, int amount)
{
    const int index = static_cast<int>(today - month.first);
    const int occurrences = (month.count() - index % 7 + 6) / 7;
    return month.first + index % 7 + std::int64_t{7} * stepsRound(index / 7, amount, occurrences);
}
} // namespace

void GregorianCalendar::roll(unsigned field, bool up) { roll(field, up ? 1 : -1); }

void GregorianCalendar::roll(unsigned field, int amount)
{
    if (amount == 0 || field >= FieldCount)
        return;
    complete();
    switch (field) {
    case FieldEra:
    case FieldYear:
        rollYears(field, amount);
        break;
    case FieldMonth:
        set(FieldMonth, stepsRound(internalGet(FieldMonth), amount, 12));
        pinDayOfMonth();
        break;
    case FieldZoneOffset:
    case FieldDstOffset:
        rollOffset(field, amount);
        break;
    default:
        if (field < FieldAmPm) {
            rollDays(field, amount);
        } else {
            const auto [count, unit] = clockField(field);
            const int value = internalGet(field);
            shiftKeepingClock(std::int64_t(stepsRound(value, amount, count) - value) * unit);
        }
    }
}

void GregorianCalendar::rollYears(unsigned field, int amount)
{
    const int year = internalGet(FieldYear);
    const int leastMaximum = getLeastMaximum(FieldYear);
    if (field == FieldEra) {
        set(FieldEra, stepsRound(internalGet(FieldEra), amount, 2));
        if (year > leastMaximum)
            set(FieldYear, leastMaximum); // The eras end in different years.
    } else {
        // The search for the last year is needed only by who goes past it.
        const std::int64_t target = std::int64_t(year) + amount;
        const bool inside = target >= 1 && target <= leastMaximum;
        set(FieldYear,
            inside ? static_cast<int>(target) : 1 + stepsRound(year - 1, amount, getActualMaximum(FieldYear)));
    }
    pinDayOfMonth();
}

void GregorianCalendar::rollOffset(unsigned field, int amount)
{
    const int number = static_cast<int>(field);
    const int minimum = getActualMinimum(number);
    const int count = getActualMaximum(number) - minimum + 1;
    const auto place = static_cast<int>((std::int64_t(internalGet(field)) - minimum) % count);
    const int value = minimum + stepsRound(place, amount, count);
    // The daylight field counts only together with a zone field that was set.
    if (field == FieldDstOffset)
        set(FieldZoneOffset, internalGet(FieldZoneOffset));
    set(field, value);
}

void GregorianCalendar::rollDays(unsigned field, int amount)
{
    const std::int64_t cutover = floorQuotient(normalizedGregorianCutover(), millisPerDay);
    const std::int64_t today = shownDay();
    const Date date = dateOf(today >= cutover, today);
    const bool inYear = field == FieldDayOfYear || field == FieldWeekOfYear;
    const DaySpan days = inYear ? daysByCutover(yearIn(false, date.year), yearIn(true, date.year), cutover, today)
                                : daysByCutover(monthIn(false, date.year, date.month),
                                                monthIn(true, date.year, date.month), cutover, today);

    std::int64_t target = today;
    switch (field) {
    case FieldDayOfMonth:
    case FieldDayOfYear:
        target = days.first + stepsRound(static_cast<int>(today - days.first), amount, days.count());
        break;
    case FieldDayOfWeek:
        target = rollWeekday(days, today, firstDayOfWeek_, amount);
        break;
    case FieldDayOfWeekInMonth:
        target = rollWeekdayInMonth(days, today, amount);
        break;
    case FieldWeekOfMonth: {
        const Sheet sheet(days, firstDayOfWeek_);
        target = sheet.inRow(today, stepsRound(sheet.rowOf(today), amount, sheet.rows));
        break;
    }
    case FieldWeekOfYear:
        target = rollWeekOfYear(Sheet(days, firstDayOfWeek_), today, minimalDaysInFirstWeek_, amount);
        break;
    }
    shiftKeepingClock((target - today) * millisPerDay);
}

// The local day, since the epoch, that the fields show.
std::int64_t GregorianCalendar::shownDay() const
{
    int millisInDay = 0;
    const std::int64_t local = addOrEpoch(time_, internalGet(FieldZoneOffset));
    const std::int64_t day = splitDay(local, millisInDay);
    const int dstOffset = internalGet(FieldDstOffset);
    const bool carries = std::int64_t(millisInDay) + dstOffset >= millisPerDay;
    return carries ? floorQuotient(addOrEpoch(local, dstOffset), millisPerDay) : day;
}

// Moves the instant so that the clock shows the same time of day, moved by `delta`. A time of day that
// the start of daylight time leaves out becomes the one an hour on: an hour back could be another day.
void GregorianCalendar::shiftKeepingClock(std::int64_t delta)
{
    // An instant that reads as the epoch, because its offset leads past the ends of time, moves on from there.
    const int offset = internalGet(FieldZoneOffset);
    std::int64_t moved = 0;
    if (__builtin_add_overflow(time_, offset, &moved))
        moved = delta - offset;
    else
        moved = wrappingAdd(time_, delta);
    const int before = internalGet(FieldDstOffset);
    setTimeInMillis(moved);
    const int after = internalGet(FieldDstOffset);
    if (after == before)
        return;
    const std::int64_t corrected = wrappingAdd(moved, std::int64_t(before) - after);
    setTimeInMillis(corrected);
    if (internalGet(FieldDstOffset) != after)
        setTimeInMillis(std::max(moved, corrected));
}
} // namespace tarn
