#include <tarn/GregorianCalendarBase.h>

#include <tarn/GregorianCalendar.h>

#include "DayNumbers.h"

namespace tarn {
namespace {
constexpr std::int64_t defaultCutover = cutoverDay * millisPerDay;

constexpr short monthLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

// The start of the day, or the least instant when that lies before it.
std::int64_t startOfDay(std::int64_t millis)
{
    constexpr std::int64_t firstDay = INT64_MIN / millisPerDay;
    const std::int64_t day = floorQuotient(millis, millisPerDay);
    return day < firstDay ? INT64_MIN : day * millisPerDay;
}
} // namespace

GregorianCalendarBase::GregorianCalendarBase()
    : gregorianCutover_(defaultCutover), normalizedCutover_(defaultCutover), cutoverYear_(1582)
{
}

short GregorianCalendarBase::MonthLength(Month month) { return monthLengths[floorRemainder(month, 12)]; }

void GregorianCalendarBase::setGregorianChange(const Time& cutover, const TimeZone& zone)
{
    gregorianCutover_ = cutover;
    normalizedCutover_ = startOfDay(cutover);

    GregorianCalendar calendar(zone);
    calendar.setTime(cutover);
    const int year = calendar.get(Calendar::FieldYear);
    cutoverYear_ = calendar.get(Calendar::FieldEra) == AD ? year : 1 - year;
}

std::int64_t GregorianCalendarBase::floorDivide(std::int64_t numerator, std::int64_t divisor)
{
    return floorQuotient(numerator, divisor);
}

int GregorianCalendarBase::floorDivide(int numerator, int divisor) { return floorQuotient(numerator, divisor); }

int GregorianCalendarBase::floorDivide(int numerator, int divisor, int& remainder)
{
    return floorQuotient(numerator, divisor, remainder);
}

int GregorianCalendarBase::floorDivide(std::int64_t numerator, int divisor, int& remainder)
{
    return floorQuotient(numerator, divisor, remainder);
}
} // namespace tarn
