#pragma once

#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Time.h>

#include <cstdint>

namespace tarn {
class TimeZone;

/// The vocabulary of eras, months and weekdays, and the instant at which the Julian calendar gives way
/// to the Gregorian one. Comes as a base of GregorianCalendar.
class TARN_API GregorianCalendarBase {
public:
    /// Before Christ, and after.
    enum Era : int { BC, AD };
    /// The months by their English names.
    enum Month : int {
        /// 0: months count from zero, days from one.
        January,
        February,
        March,
        April,
        May,
        June,
        July,
        August,
        September,
        October,
        November,
        December
    };
    /// From Sunday, which is 1, to Saturday, 7.
    enum DayOfWeek : int { Sunday = 1, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };

    /// With the cutover of 1582-10-15 00:00:00 UTC.
    GregorianCalendarBase();

    /// The first instant reckoned by the Gregorian rules.
    Time gregorianChange() const { return Time(gregorianCutover_); }

    /// Days of the month in a common year: ask GregorianCalendar::monthLength for February in a leap
    /// year. Months outside the year are taken modulo 12.
    static short MonthLength(Month month);

protected:
    /// The cutover at the start of its day in UTC; dates change over there.
    std::int64_t normalizedGregorianCutover() const { return normalizedCutover_; }
    /// `zone` decides which year the cutover falls in.
    void setGregorianChange(const Time& cutover, const TimeZone& zone);

    // Years are astronomical from here on: 0 is 1 BC, -1 is 2 BC.

    /// Whether the year is that of the cutover or a later one.
    bool isGregorian(int year) const { return year >= cutoverYear_; }
    /// The whole year of the cutover is judged by the Gregorian rule.
    bool isLeapYear(int year) const
    {
        return year % 4 == 0 && (!isGregorian(year) || year % 100 != 0 || year % 400 == 0);
    }

    /// Quotients rounded toward negative infinity, for positive divisors; `remainder` is never negative.
    ///@{
    static std::int64_t floorDivide(std::int64_t numerator, std::int64_t divisor);
    static int floorDivide(int numerator, int divisor);
    static int floorDivide(int numerator, int divisor, int& remainder);
    static int floorDivide(std::int64_t numerator, int divisor, int& remainder);
    ///@}

private:
    std::int64_t gregorianCutover_;
    std::int64_t normalizedCutover_;
    int cutoverYear_;
};
TARN_LAYOUT(GregorianCalendarBase, 24, 24);
} // namespace tarn
