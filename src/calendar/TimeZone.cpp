#include <tarn/TimeZone.h>

#include <tarn/GregorianCalendar.h>
#include <tarn/Windows.h>

#include "../foundation/Check.h"
#include "Arithmetic.h"
#include "DayNumbers.h"
#include "PlatformZone.h"
#include "ZoneHistory.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
enum RuleMode { fixedDay, weekdayInMonth, nthWeekday }; // And wholeHistory.

constexpr const char* noInformation = "Can't get time zone information";

// The year's local dates run from its first millisecond to its last.
std::int64_t clampToYear(int year, std::int64_t local)
{
    return std::clamp(local, newYear(year), newYear(year + 1) - 1);
}
} // namespace

TimeZone::TimeZone() = default;
TimeZone::TimeZone(const char*) {}
TimeZone::TimeZone(const TIME_ZONE_INFORMATION& information) { set(information); }

// Zones are no larger than they were without a history, which lives on: the place of a rule has room for its address.
TimeZone::TimeZone(const ZoneHistory& history)
{
    const ZoneHistory::Offsets latest = history.latest();
    rawOffset_ = latest.standard;
    dstOffset_ = latest.daylight;
    if (history.isConstant())
        return;
    const std::uint64_t address = reinterpret_cast<std::uintptr_t>(&history);
    start_ = {wholeHistory, 0, 0, static_cast<int>(address), static_cast<int>(address >> 32)};
}

const ZoneHistory& TimeZone::history() const
{
    const std::uint64_t address =
        std::uint64_t(static_cast<std::uint32_t>(start_.day)) << 32 | static_cast<std::uint32_t>(start_.dayOfWeek);
    return *reinterpret_cast<const ZoneHistory*>(static_cast<std::uintptr_t>(address));
}

void TimeZone::dropHistory()
{
    if (hasHistory())
        start_ = end_ = {};
}

TimeZone TimeZone::current()
{
    TIME_ZONE_INFORMATION information;
    ensureNot(TIME_ZONE_ID_INVALID, GetTimeZoneInformation(&information), noInformation);
    return TimeZone(information);
}

TimeZone TimeZone::ofSystem()
{
    DYNAMIC_TIME_ZONE_INFORMATION zone;
    ensureNot(TIME_ZONE_ID_INVALID, GetDynamicTimeZoneInformation(&zone), noInformation);
    return TimeZone(ZoneHistory::of(zone));
}

TimeZone TimeZone::currentForYear(int year) { return forYear(year, nullptr); }

TimeZone TimeZone::forYear(int year, const DYNAMIC_TIME_ZONE_INFORMATION* named)
{
    year = std::clamp(year, firstPlatformYear, lastPlatformYear);
    const TIME_ZONE_INFORMATION information = zoneInformation(year, named);
    TimeZone zone;
    zone.rawOffset_ = -static_cast<int>(information.Bias + information.StandardBias) * millisPerMinute;
    if (information.DaylightDate.wMonth == 0 || information.StandardDate.wMonth == 0)
        return zone;
    zone.dstOffset_ = static_cast<int>(information.StandardBias - information.DaylightBias) * millisPerMinute;

    std::int64_t start = transitionIn(year, information.DaylightDate) - zone.rawOffset_;
    std::int64_t end = transitionIn(year, information.StandardDate) - zone.rawOffset_ - zone.dstOffset_;
    if (zone.dstOffset_ < 0) { // Standard time is then what the tables have for summer.
        zone.rawOffset_ += zone.dstOffset_;
        zone.dstOffset_ = -zone.dstOffset_;
        std::swap(start, end);
    }

    // Both in standard time, as instants are compared. A transition's own instant belongs to what was
    // before it, hence the millisecond less.
    const auto ruleAt = [&zone, year](std::int64_t time) {
        int millis = 0;
        const YearDay date = gregorianYearDay(splitDay(clampToYear(year, time + zone.rawOffset_), millis));
        const int month = monthOfDay(date.day, date.leap);
        return Rule{fixedDay, month, millis - 1, 0, date.day - daysBeforeMonth[date.leap][month] + 1};
    };
    zone.start_ = ruleAt(start);
    zone.end_ = ruleAt(end);
    if (end < start && zone.start_.month == zone.end_.month) // An end that was the year's beginning.
        zone.end_ = {fixedDay, GregorianCalendarBase::December, static_cast<int>(millisPerDay), 0, 31};
    return zone;
}

void TimeZone::set(const TIME_ZONE_INFORMATION& information)
{
    rawOffset_ = -static_cast<int>(information.Bias + information.StandardBias) * millisPerMinute;
    dstOffset_ = static_cast<int>(information.StandardBias - information.DaylightBias) * millisPerMinute;
    if (dstOffset_ == 0)
        return;

    const auto ruleFrom = [](const SYSTEMTIME& date) {
        const bool absolute = date.wYear != 0;
        return Rule{absolute ? fixedDay : weekdayInMonth, date.wMonth, timeOfDay(date),
                    absolute ? date.wYear : date.wDayOfWeek, date.wDay};
    };
    start_ = ruleFrom(information.DaylightDate);
    end_ = ruleFrom(information.StandardDate);
}

void TimeZone::SetDSTOffset(int milliseconds)
{
    dropHistory();
    dstOffset_ = milliseconds;
}
void TimeZone::SetStandardOffset(int milliseconds)
{
    dropHistory();
    rawOffset_ = milliseconds;
}

void TimeZone::SetStartRule(Month month, int dayOfWeekInMonth, DayOfWeek dayOfWeek, int time)
{
    start_ = {weekdayInMonth, month, time, dayOfWeek, dayOfWeekInMonth};
}
void TimeZone::SetStartRule(Month month, int dayOfMonth, int time) { start_ = {fixedDay, month, time, 0, dayOfMonth}; }
void TimeZone::SetEndRule(Month month, int dayOfWeekInMonth, DayOfWeek dayOfWeek, int time)
{
    dropHistory();
    end_ = {weekdayInMonth, month, time, dayOfWeek, dayOfWeekInMonth};
}
void TimeZone::SetEndRule(Month month, int dayOfMonth, int time)
{
    dropHistory();
    end_ = {fixedDay, month, time, 0, dayOfMonth};
}

// What is compared with a rule's time counts as after it from the next millisecond on.
void TimeZone::SetStartRuleByWeekday(Month month, int nth, DayOfWeek dayOfWeek, int time)
{
    start_ = {nthWeekday, month, wrappingSubtract(time, 1), dayOfWeek, nth};
}
void TimeZone::SetEndRuleByWeekday(Month month, int nth, DayOfWeek dayOfWeek, int time)
{
    dropHistory();
    end_ = {nthWeekday, month, wrappingSubtract(time, 1), dayOfWeek, nth};
}

// 1 before the transition, -1 after it, 0 exactly at it.
int TimeZone::Rule::compare(int year, Month dateMonth, int dateDay, DayOfWeek dateDayOfWeek, int millis) const
{
    if (dateMonth != month)
        return dateMonth < month ? 1 : -1;

    std::int64_t ruleDay = 0;
    if (mode == fixedDay) {
        ruleDay = day;
    } else if (mode == weekdayInMonth && day > 0) {
        // The day of the month stands here with the wrong sign; results are kept as they always were.
        ruleDay = (std::int64_t(dayOfWeek) - dateDay - dateDayOfWeek + 8) % 7 + 7 * std::int64_t(day) - 6;
    } else if (mode == weekdayInMonth) {
        const int length = GregorianCalendarBase::MonthLength(dateMonth);
        ruleDay =
            length + 7 * (std::int64_t(day) + 1) - (std::int64_t(length) - dayOfWeek - dateDay + dateDayOfWeek + 7) % 7;
    }
    if (mode == nthWeekday)
        ruleDay = dayByWeekday(daysInMonth[isLeapIn(year > 1582, year)][floorRemainder(dateMonth, 12)], dateDay,
                               dateDayOfWeek);
    if (dateDay != ruleDay)
        return dateDay < ruleDay ? 1 : -1;
    return millis < time ? 1 : millis > time ? -1 : 0;
}

// The day of the month with the rule's weekday, from the weekday of any day.
int TimeZone::Rule::dayByWeekday(int monthLength, int dateDay, DayOfWeek dateDayOfWeek) const
{
    const std::int64_t distance = std::int64_t(dayOfWeek) - dateDayOfWeek + dateDay - 1;
    const int first = 1 + static_cast<int>((distance % 7 + 7) % 7);
    const int last = first + (monthLength - first) / 7 * 7;
    const std::int64_t counted = day > 0 ? first + 7 * (std::int64_t(day) - 1) : last + 7 * (std::int64_t(day) + 1);
    return static_cast<int>(std::clamp<std::int64_t>(counted, first, last));
}

int TimeZone::GetOffset(Era era, int year, Month month, int day, DayOfWeek dayOfWeek, int millis) const
{
    if (hasHistory()) {
        constexpr int endOfTime = 280000000;
        const int counted =
            std::clamp(era == GregorianCalendarBase::AD ? year : wrappingSubtract(1, year), -endOfTime, endOfTime);
        const bool gregorian = counted > 1582 || (counted == 1582 && 100 * month + day >= 915); // 15 October.
        const std::int64_t before = julianDayBeforeYear(gregorian, counted) - epochJulianDay +
                                    daysBeforeMonth[isLeapIn(gregorian, counted)][floorRemainder(month, 12)];
        const std::int64_t local = (before + day) * millisPerDay + millis;
        const Instants instants = history().instantsOf(local);
        return static_cast<int>(local - (instants.count == 0 ? instants.earlier : instants.later));
    }
    if (dstOffset_ == 0 || era != GregorianCalendarBase::AD)
        return rawOffset_;
    const int start = start_.compare(year, month, day, dayOfWeek, millis);
    const int end = end_.compare(year, month, day, dayOfWeek, millis);
    const bool northern = start_.month <= end_.month;
    const bool standard = northern ? start >= 0 || end < 0 : start >= 0 && end < 0;
    return standard ? rawOffset_ : wrappingAdd(rawOffset_, dstOffset_);
}

TimeZone::Offsets TimeZone::offsetsAt(const Time& time) const
{
    if (hasHistory())
        return history().at(time);
    GregorianCalendar calendar(*this);
    calendar.setTime(time);
    return {rawOffset_, calendar.get(Calendar::FieldDstOffset)};
}

bool TimeZone::InDaylightTime(const Time& time) const { return offsetsAt(time).daylight != 0; }

TimeZone::Instants TimeZone::instantsOf(const Time& local) const
{
    if (hasHistory())
        return history().instantsOf(local);
    const std::int64_t standard = wrappingSubtract(std::int64_t(local), rawOffset_);
    const std::int64_t daylight = wrappingSubtract(standard, dstOffset_);
    return instantsAmong(standard, !InDaylightTime(standard), daylight, InDaylightTime(daylight));
}
} // namespace tarn
