#include <tarn/TimeText.h>

#include <tarn/Exception.h>
#include <tarn/GregorianCalendar.h>

#include "../foundation/Throw.h"
#include "../foundation/Quoted.h"
#include "Arithmetic.h"
#include "DayNumbers.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace tarn {
namespace {
/// What clocks in a zone show.
struct Local {
    Local(const Time& time, const TimeZone& zone)
    {
        GregorianCalendar calendar(zone);
        calendar.setTime(time);
        const std::int64_t zoneOffset = calendar.get(Calendar::FieldZoneOffset);
        minutes = static_cast<int>((zoneOffset + calendar.get(Calendar::FieldDstOffset)) / millisPerMinute);
        if (__builtin_add_overflow(std::int64_t(time), std::int64_t(minutes) * millisPerMinute, &millis)) {
            millis = time; // Within an offset of the ends of time only UTC is left.
            minutes = 0;
        }
    }

    std::int64_t millis = 0;
    int minutes; // Ahead of UTC.
};

std::string formatYear(int year)
{
    char text[16];
    std::snprintf(text, sizeof text, year < 0 ? "%05d" : year > 9999 ? "%+d" : "%04d", year);
    return text;
}

std::string formatISOTime(const Time& time, const TimeZone& zone)
{
    const Local local(time, zone);
    const int minutes = local.minutes;
    int millis = 0;
    const YearDay date = gregorianYearDay(splitDay(local.millis, millis));
    const int month = monthOfDay(date.day, date.leap);
    char offset[16] = "Z";
    if (minutes != 0)
        std::snprintf(offset, sizeof offset, "%c%02d:%02d", minutes < 0 ? '-' : '+', std::abs(minutes) / 60,
                      std::abs(minutes) % 60);
    char text[64];
    std::snprintf(text, sizeof text, "%s-%02d-%02dT%02d:%02d:%02d.%03d%s", formatYear(date.year).c_str(), month + 1,
                  date.day - daysBeforeMonth[date.leap][month] + 1, millis / 3600000, millis / 60000 % 60,
                  millis / 1000 % 60, millis % 1000, offset);
    return text;
}

/// Reads a text from left to right. Every read fails at a character that it does not expect.
template <class Ch> class Reader {
public:
    explicit Reader(const Ch* text) : next_(text) {}

    bool atEnd() const { return *next_ == 0; }
    bool skip(char c)
    {
        if (*next_ != static_cast<Ch>(c))
            return false;
        ++next_;
        return true;
    }
    bool isDigit() const { return *next_ >= '0' && *next_ <= '9'; }
    int digit() { return static_cast<int>(*next_++ - '0'); }

    /// A number of `least` to `most` digits.
    std::optional<int> number(int least, int most)
    {
        int value = 0, count = 0;
        for (; count < most && isDigit(); ++count)
            value = value * 10 + digit();
        return count >= least ? std::optional(value) : std::nullopt;
    }
    /// A number of two digits, at most `greatest`.
    std::optional<int> upTo(int greatest)
    {
        const auto value = number(2, 2);
        return value && *value <= greatest ? value : std::nullopt;
    }

private:
    const Ch* next_;
};

// Sunday is the last day of the week.
int isoWeekdayOf(std::int64_t epochDay) { return (weekdayOf(epochDay) + 6) % 7 + 1; }

ISOWeek weekOfDay(std::int64_t epochDay)
{
    const int weekday = isoWeekdayOf(epochDay);
    const YearDay thursday = gregorianYearDay(epochDay - weekday + 4);
    return {thursday.year, thursday.day / 7 + 1, weekday};
}

/// What follows "2026-W": the day since the epoch, Monday when none is named.
template <class Ch> std::optional<std::int64_t> readWeek(Reader<Ch>& text, int year)
{
    const auto week = text.upTo(53);
    const auto weekday = text.skip('-') ? text.number(1, 1) : 1;
    if (!week || !weekday)
        return std::nullopt;
    const std::int64_t fourth = julianDayBeforeYear(true, year) - epochJulianDay + 4; // Of January, in the first week.
    const std::int64_t day = fourth - isoWeekdayOf(fourth) + 7 * (*week - 1) + *weekday;
    return weekOfDay(day).week == *week ? std::optional(day) : std::nullopt; // Weekdays 0, 8 and 9 are in another week.
}

/// The day since the epoch.
template <class Ch> std::optional<std::int64_t> readDate(Reader<Ch>& text)
{
    const bool negative = text.skip('-');
    const bool hasSign = negative || text.skip('+');
    auto year = text.number(4, hasSign ? 9 : 4);
    if (!year || !text.skip('-'))
        return std::nullopt;
    if (negative)
        year = -*year;
    if (text.skip('W'))
        return readWeek(text, *year);
    const auto month = text.upTo(12);
    if (!month || *month == 0 || !text.skip('-'))
        return std::nullopt;
    const bool leap = isLeapIn(true, *year);
    const auto day = text.upTo(daysInMonth[leap][*month - 1]);
    if (!day || *day == 0)
        return std::nullopt;
    return julianDayBeforeYear(true, *year) - epochJulianDay + daysBeforeMonth[leap][*month - 1] + *day;
}

/// Milliseconds since midnight.
template <class Ch> std::optional<int> readTimeOfDay(Reader<Ch>& text)
{
    const auto hour = text.upTo(24);
    if (!hour || !text.skip(':'))
        return std::nullopt;
    const auto minute = text.upTo(59);
    if (!minute)
        return std::nullopt;
    int millis = (*hour * 60 + *minute) * millisPerMinute;
    if (text.skip(':')) {
        const auto second = text.upTo(59);
        if (!second)
            return std::nullopt;
        millis += *second * 1000;
        if (text.skip('.') || text.skip(',')) {
            if (!text.isDigit())
                return std::nullopt;
            for (int unit = 100; text.isDigit(); unit /= 10)
                millis += text.digit() * unit;
        }
    }
    return millis <= millisPerDay ? std::optional(millis) : std::nullopt;
}

/// Milliseconds to take from the local time; absent when the text names no offset.
template <class Ch> std::optional<int> readOffset(Reader<Ch>& text)
{
    if (text.skip('Z'))
        return 0;
    const bool negative = text.skip('-');
    if (!negative && !text.skip('+'))
        return std::nullopt;
    const auto hours = text.upTo(23);
    if (!hours)
        return std::nullopt;
    std::optional<int> minutes = 0;
    if (text.skip(':') || text.isDigit())
        minutes = text.upTo(59);
    if (!minutes)
        return std::nullopt;
    const int offset = (*hours * 60 + *minutes) * millisPerMinute;
    return negative ? -offset : offset;
}

// The date is that of calendars, Julian before the cutover.
int offsetOfLocal(std::int64_t local, const TimeZone& zone)
{
    int millis = 0;
    const std::int64_t day = splitDay(local, millis);
    const Date date = dateOf(day >= cutoverDay, day);
    const bool isBC = date.year < 1;
    return zone.GetOffset(isBC ? GregorianCalendar::BC : GregorianCalendar::AD, isBC ? 1 - date.year : date.year,
                          static_cast<TimeZone::Month>(date.month), date.day,
                          static_cast<TimeZone::DayOfWeek>(weekdayOf(day) + 1), millis);
}

template <class Ch> std::optional<std::int64_t> readTime(const Ch* string, const TimeZone& zone)
{
    Reader<Ch> text(string);
    const auto day = readDate(text);
    std::optional<int> millis = 0, offset;
    if (text.skip('T') || text.skip(' ')) {
        millis = readTimeOfDay(text);
        if (!text.atEnd()) {
            offset = readOffset(text);
            if (!offset)
                return std::nullopt;
        }
    }
    if (!day || !millis || !text.atEnd())
        return std::nullopt;
    // Before the epoch the day's end is reached first, so that the very first instants are read too.
    const int whole = *day < 0 ? 1 : 0;
    std::int64_t result = 0;
    if (__builtin_mul_overflow(*day + whole, millisPerDay, &result) ||
        __builtin_add_overflow(result, *millis - whole * millisPerDay, &result))
        return std::nullopt;
    if (__builtin_sub_overflow(result, offset ? *offset : offsetOfLocal(result, zone), &result))
        return std::nullopt;
    return result;
}

template <class Ch> Time parse(const Ch* text, const TimeZone& zone)
{
    const auto time = readTime(text, zone);
    if (!time)
        throwError(Exception("Not an ISO 8601 time: " + quoted(text)));
    return Time(*time);
}
} // namespace

BasicString<char> formatISOTimeA(const Time& time, const TimeZone& zone) { return formatISOTime(time, zone); }
BasicString<wchar_t> formatISOTimeW(const Time& time, const TimeZone& zone)
{
    return BasicString<wchar_t>(formatISOTime(time, zone).c_str());
}

ISOWeek isoWeekOf(const Time& time, const TimeZone& zone)
{
    int millis = 0;
    return weekOfDay(splitDay(Local(time, zone).millis, millis));
}
BasicString<char> formatISOWeekA(const Time& time, const TimeZone& zone)
{
    const ISOWeek week = isoWeekOf(time, zone);
    return BasicString<char>::fromFormat("%s-W%02d-%d", formatYear(week.year).c_str(), week.week, week.weekday);
}
BasicString<wchar_t> formatISOWeekW(const Time& time, const TimeZone& zone)
{
    return BasicString<wchar_t>(formatISOWeekA(time, zone).c_str());
}

Time parseISOTime(const char* text, const TimeZone& zone) { return parse(text, zone); }
Time parseISOTime(const wchar_t* text, const TimeZone& zone) { return parse(text, zone); }
} // namespace tarn
