#include "RecurrenceStarts.h"

#include "Arithmetic.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace tarn {
namespace {
using Frequency = RecurrenceRule::Frequency;

constexpr int lastYearOfRules = 9999;
constexpr std::int64_t longestSearch = 12000 * std::int64_t(366);

bool isShorterThanDay(Frequency frequency) { return frequency < Frequency::daily; }

int unitOf(Frequency frequency)
{
    return frequency == Frequency::hourly     ? static_cast<int>(millisPerHour)
           : frequency == Frequency::minutely ? millisPerMinute
                                              : 1000;
}

// A list as it is, or with the one value that the first start gives.
std::vector<int> valuesOr(const std::vector<int>& values, int value)
{
    return values.empty() ? std::vector<int>{value} : values;
}

bool allows(const std::vector<int>& values, int value)
{
    return values.empty() || std::ranges::find(values, value) != values.end();
}

template <class T> void sortOut(std::vector<T>& values)
{
    std::ranges::sort(values);
    values.erase(std::unique(values.begin(), values.end()), values.end()); // Clang 14 does not know that of ranges.
}

std::vector<int> secondsOf(const RecurrenceRule& rule)
{
    std::vector<int> seconds = rule.bySecond;
    std::ranges::replace(seconds, 60, 59);
    return seconds;
}
} // namespace

void DayFilter::Numbers::add(int number)
{
    fromBegin.resize(367);
    fromEnd.resize(367);
    (number > 0 ? fromBegin : fromEnd)[static_cast<std::size_t>(number > 0 ? number : -number)] = true;
}

void DayFilter::Numbers::add(const std::vector<int>& numbers)
{
    for (const int number : numbers)
        add(number);
}

bool DayFilter::Numbers::has(std::int64_t number, std::int64_t numberFromEnd) const
{
    return isEmpty() || fromBegin[static_cast<std::size_t>(number)] || fromEnd[static_cast<std::size_t>(numberFromEnd)];
}

DayFilter::DayFilter(const RecurrenceRule& rule, std::int64_t startDay)
    : weekStart_(rule.weekStart - GregorianCalendarBase::Sunday),
      countsInMonths_(rule.frequency == Frequency::monthly || !rule.byMonth.empty())
{
    for (const auto month : rule.byMonth)
        months_ |= 1u << month;
    for (const RecurrenceRule::Weekday& day : rule.byDay) {
        const int weekday = day.day - GregorianCalendarBase::Sunday;
        if (day.nth == 0)
            weekdays_ |= 1u << weekday;
        else
            numberedWeekdays_.push_back({weekday, day.nth});
    }
    monthDays_.add(rule.byMonthDay);
    yearDays_.add(rule.byYearDay);
    weeks_.add(rule.byWeekNo);

    const bool isYearly = rule.frequency == Frequency::yearly;
    const bool namesDays = !rule.byDay.empty() || !monthDays_.isEmpty() || !yearDays_.isEmpty();
    const Date start = dateOf(startDay);
    if ((isYearly && !namesDays && !weeks_.isEmpty()) || (rule.frequency == Frequency::weekly && !namesDays))
        weekdays_ = 1u << weekdayOf(startDay);
    else if ((isYearly || rule.frequency == Frequency::monthly) && !namesDays) {
        monthDays_.add(start.day);
        if (isYearly && months_ == 0)
            months_ = 1u << start.month;
    }
}

std::int64_t DayFilter::firstOfMonth(int year, int month)
{
    const auto in = [=](bool gregorian) {
        return julianDayBeforeYear(gregorian, year) + 1 - epochJulianDay +
               daysBeforeMonth[isLeapIn(gregorian, year)][month];
    };
    const std::int64_t first = in(true);
    return first >= cutoverDay ? first : in(false);
}

bool DayFilter::matches(std::int64_t day) const
{
    const Date date = dateOf(day);
    return (months_ == 0 || (months_ >> date.month & 1)) && isMonthDay(day, date) && isWeekday(day, date) &&
           isYearDay(day, date) && isInWeek(day);
}

bool DayFilter::isMonthDay(std::int64_t day, const Date& date) const
{
    if (monthDays_.isEmpty())
        return true;
    return monthDays_.has(date.day, firstOfMonth(date.year + date.month / 11, (date.month + 1) % 12) - day);
}

bool DayFilter::isWeekday(std::int64_t day, const Date& date) const
{
    if (weekdays_ == 0 && numberedWeekdays_.empty())
        return true;
    const int weekday = weekdayOf(day);
    if (weekdays_ >> weekday & 1)
        return true;
    return std::ranges::any_of(numberedWeekdays_, [&](const NumberedWeekday& numbered) {
        if (numbered.weekday != weekday)
            return false;
        const std::int64_t begin = firstOfMonth(date.year, countsInMonths_ ? date.month : 0);
        const std::int64_t end = countsInMonths_ ? firstOfMonth(date.year + date.month / 11, (date.month + 1) % 12)
                                                 : firstOfYear(date.year + 1);
        return numbered.nth > 0 ? (day - begin) / 7 + 1 == numbered.nth : (end - 1 - day) / 7 + 1 == -numbered.nth;
    });
}

bool DayFilter::isYearDay(std::int64_t day, const Date& date) const
{
    return yearDays_.isEmpty() || yearDays_.has(day - firstOfYear(date.year) + 1, firstOfYear(date.year + 1) - day);
}

// A week belongs to the year that has four days of it.
bool DayFilter::isInWeek(std::int64_t day) const
{
    if (weeks_.isEmpty())
        return true;
    const std::int64_t fourth = firstOfWeek(day) + 3;
    const int year = dateOf(fourth).year;
    return weeks_.has((fourth - firstOfYear(year)) / 7 + 1, (firstOfYear(year + 1) - 1 - fourth) / 7 + 1);
}

RecurrenceStarts::RecurrenceStarts(const RecurrenceRule& rule, std::int64_t start)
    : filter_(rule, floorQuotient(start, millisPerDay)), frequency_(rule.frequency), interval_(rule.interval),
      positions_(rule.bySetPos), start_(start), startDay_(floorQuotient(start, millisPerDay)),
      startDate_(DayFilter::dateOf(startDay_)), lastFound_(startDay_),
      endDay_(DayFilter::firstOfYear(lastYearOfRules + 1))
{
    setTimes(rule, static_cast<int>(start - startDay_ * millisPerDay));
    if (isShorterThanDay(frequency_))
        setUnitsOfDay(rule);
}

// What is counted in a period's slots: times of day, or what is shorter than the period.
void RecurrenceStarts::setTimes(const RecurrenceRule& rule, int timeOfDay)
{
    const std::vector<int> none = {0};
    const auto hours = frequency_ >= Frequency::daily ? valuesOr(rule.byHour, timeOfDay / 3600000) : none;
    const auto minutes = frequency_ >= Frequency::hourly ? valuesOr(rule.byMinute, timeOfDay / 60000 % 60) : none;
    const auto seconds = frequency_ >= Frequency::minutely ? valuesOr(secondsOf(rule), timeOfDay / 1000 % 60) : none;
    for (const int hour : hours)
        for (const int minute : minutes)
            for (const int second : seconds)
                times_.push_back(((hour * 60 + minute) * 60 + second) * 1000 + timeOfDay % 1000);
    sortOut(times_);
}

void RecurrenceStarts::setUnitsOfDay(const RecurrenceRule& rule)
{
    unit_ = unitOf(frequency_);
    firstUnit_ = floorQuotient(start_, unit_);
    const int starts = static_cast<int>(times_.size()); // In each of them.
    const auto isAmongStarts = [=](int position) { return std::abs(position) <= starts; };
    if (!positions_.empty() && std::ranges::none_of(positions_, isAmongStarts))
        return;
    const std::int64_t count = millisPerDay / unit_, step = std::gcd(interval_, count);
    const std::vector<int> seconds = secondsOf(rule);
    for (std::int64_t index = 0; index < count; ++index) {
        const auto second = static_cast<int>(index * unit_ / 1000);
        const bool isAllowed = allows(rule.byHour, second / 3600) &&
                               (frequency_ == Frequency::hourly || allows(rule.byMinute, second / 60 % 60)) &&
                               (frequency_ != Frequency::secondly || allows(seconds, second % 60));
        // The interval leads to no others, on whatever day.
        if (isAllowed && (index - firstUnit_) % step == 0)
            unitsOfDay_.push_back(static_cast<int>(index));
    }
}

RecurrenceStarts::Days RecurrenceStarts::daysOf(std::int64_t number) const
{
    const std::int64_t distance = number * interval_;
    const auto months = [&](std::int64_t first, int count) -> Days {
        const auto month = static_cast<int>((first % 12 + 12) % 12);
        const std::int64_t year = (first - month) / 12;
        if (year > lastYearOfRules)
            return {INT64_MAX, INT64_MAX};
        const int firstYear = static_cast<int>(year);
        return {DayFilter::firstOfMonth(firstYear, month),
                DayFilter::firstOfMonth(firstYear + (month + count) / 12, (month + count) % 12)};
    };
    switch (frequency_) {
    case Frequency::yearly:
        return months((startDate_.year + distance) * 12, 12);
    case Frequency::monthly:
        return months(startDate_.year * std::int64_t(12) + startDate_.month + distance, 1);
    case Frequency::weekly: {
        const std::int64_t begin = filter_.firstOfWeek(startDay_) + 7 * distance;
        return {begin, begin + 7};
    }
    default:
        return {startDay_ + distance, startDay_ + distance + 1};
    }
}

std::int64_t RecurrenceStarts::numberOf(std::int64_t local) const
{
    const std::int64_t day = floorQuotient(local, millisPerDay);
    const Date date = DayFilter::dateOf(day);
    switch (frequency_) {
    case Frequency::yearly:
        return (date.year - startDate_.year) / interval_;
    case Frequency::monthly:
        return ((date.year - startDate_.year) * std::int64_t(12) + date.month - startDate_.month) / interval_;
    case Frequency::weekly:
        return (filter_.firstOfWeek(day) - filter_.firstOfWeek(startDay_)) / 7 / interval_;
    case Frequency::daily:
        return (day - startDay_) / interval_;
    default:
        return (floorQuotient(local, unit_) - firstUnit_) / interval_;
    }
}

void RecurrenceStarts::skipTo(std::int64_t local)
{
    if (local <= start_)
        return;
    number_ = numberOf(local) - 1;
    lastFound_ = floorQuotient(local, millisPerDay);
}

void RecurrenceStarts::endAt(std::int64_t local)
{
    endDay_ = std::min(endDay_, floorQuotient(local, millisPerDay) + 1);
}

bool RecurrenceStarts::next(std::int64_t& local)
{
    do {
        while (at_ == count_)
            if (!nextPeriod())
                return false;
        const std::size_t index = positions_.empty() ? at_ : chosen_[at_];
        ++at_;
        local = slots_[index / times_.size()] + times_[index % times_.size()];
    } while (local <= start_);
    return true;
}

bool RecurrenceStarts::nextPeriod()
{
    if (!(isShorterThanDay(frequency_) ? nextPeriodInDay() : nextPeriodOfDays()))
        return false;
    beginPeriod();
    if (count_ != 0)
        lastFound_ = floorQuotient(slots_.front(), millisPerDay);
    return true;
}

void RecurrenceStarts::beginPeriod()
{
    at_ = 0;
    count_ = slots_.size() * times_.size();
    if (positions_.empty())
        return;
    chosen_.clear();
    for (const int position : positions_) {
        const std::int64_t index = position > 0 ? position - 1 : static_cast<std::int64_t>(count_) + position;
        if (index >= 0 && index < static_cast<std::int64_t>(count_))
            chosen_.push_back(static_cast<std::size_t>(index));
    }
    sortOut(chosen_);
    count_ = chosen_.size();
}

bool RecurrenceStarts::isBeyond(std::int64_t day) const { return day >= endDay_ || day - lastFound_ > longestSearch; }

bool RecurrenceStarts::nextPeriodOfDays()
{
    for (slots_.clear(); slots_.empty();) {
        const Days days = daysOf(++number_);
        if (isBeyond(days.begin))
            return false;
        for (std::int64_t day = days.begin; day < days.end; ++day)
            if (filter_.matches(day))
                slots_.push_back(day * millisPerDay);
    }
    return true;
}

bool RecurrenceStarts::nextPeriodInDay()
{
    if (unitsOfDay_.empty())
        return false;
    const std::int64_t unitsOfWholeDay = millisPerDay / unit_;
    for (++number_;;) {
        const std::int64_t unit = firstUnit_ + number_ * interval_;
        const std::int64_t day = floorQuotient(unit, unitsOfWholeDay), dayBegin = day * unitsOfWholeDay;
        if (isBeyond(day))
            return false;
        const auto nextInDay = std::ranges::lower_bound(unitsOfDay_, unit - dayBegin);
        const bool isInDay = nextInDay != unitsOfDay_.end() && filter_.matches(day);
        const std::int64_t wanted = dayBegin + (isInDay ? *nextInDay : unitsOfWholeDay);
        if (wanted == unit) {
            slots_.assign(1, unit * unit_);
            return true;
        }
        number_ = (wanted - firstUnit_ + interval_ - 1) / interval_;
    }
}
} // namespace tarn
