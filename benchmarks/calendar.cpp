#include <catch2/catch.hpp>

#include <tarn/GregorianCalendar.h>
#include <tarn/Windows.h>

#include "Growth.h"
#include "Ratios.h"

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <random>
#include <vector>

using tarn::Calendar;
using tarn::GregorianCalendar;
namespace posix = boost::posix_time;
namespace gregorian = boost::gregorian;

namespace {
constexpr int count = 50000;
constexpr std::int64_t millisPerYear = 31556952000;

std::vector<std::int64_t> instants(std::int64_t firstYear, std::int64_t years)
{
    std::mt19937_64 random(19700101);
    std::uniform_int_distribution<std::int64_t> pick(0, years * millisPerYear);
    std::vector<std::int64_t> result(count);
    for (std::int64_t& time : result)
        time = (firstYear - 1970) * millisPerYear + pick(random);
    return result;
}

constexpr unsigned clockFields[] = {Calendar::FieldYear,       Calendar::FieldMonth,  Calendar::FieldDayOfMonth,
                                    Calendar::FieldHourOfDay,  Calendar::FieldMinute, Calendar::FieldSecond,
                                    Calendar::FieldMillisecond};

// Year to millisecond of every instant, by the calendar.
void decompose(GregorianCalendar& calendar, const std::vector<std::int64_t>& times)
{
    int sum = 0;
    for (const std::int64_t time : times) {
        calendar.setTime(time);
        for (const unsigned field : clockFields)
            sum += calendar.get(field);
    }
    bench::keep(sum);
}

void decomposeWithWeeks(GregorianCalendar& calendar, const std::vector<std::int64_t>& times)
{
    int sum = 0;
    for (const std::int64_t time : times) {
        calendar.setTime(time);
        for (const unsigned field : clockFields)
            sum += calendar.get(field);
        sum += calendar.get(Calendar::FieldWeekOfYear) + calendar.get(Calendar::FieldWeekOfMonth) +
               calendar.get(Calendar::FieldDayOfWeekInMonth);
    }
    bench::keep(sum);
}

// The same by Boost, whose years are 1400 to 9999.
void decomposeByBoost(const std::vector<std::int64_t>& times)
{
    const posix::ptime epoch(gregorian::date(1970, 1, 1));
    int sum = 0;
    for (const std::int64_t time : times) {
        const posix::ptime instant = epoch + posix::milliseconds(time);
        const gregorian::date::ymd_type date = instant.date().year_month_day();
        const posix::time_duration clock = instant.time_of_day();
        sum += date.year + date.month + date.day;
        sum += static_cast<int>(clock.hours() + clock.minutes() + clock.seconds() + clock.fractional_seconds() / 1000);
    }
    bench::keep(sum);
}

void decomposeByPlatform(const std::vector<std::int64_t>& times)
{
    int sum = 0;
    for (const std::int64_t time : times) {
        const auto units = static_cast<std::uint64_t>((time + 11644473600000) * 10000);
        const FILETIME fileTime{static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
        SYSTEMTIME fields;
        FileTimeToSystemTime(&fileTime, &fields);
        sum += fields.wYear + fields.wMonth + fields.wDay + fields.wHour + fields.wMinute + fields.wSecond +
               fields.wMilliseconds;
    }
    bench::keep(sum);
}

struct Date {
    int year, month, day, hour, minute, second;
};

std::vector<Date> dates(const std::vector<std::int64_t>& times)
{
    std::vector<Date> result;
    GregorianCalendar calendar((tarn::TimeZone()));
    for (const std::int64_t time : times) {
        calendar.setTime(time);
        result.push_back({calendar.get(Calendar::FieldYear), calendar.get(Calendar::FieldMonth),
                          std::min(calendar.get(Calendar::FieldDayOfMonth), 28), calendar.get(Calendar::FieldHourOfDay),
                          calendar.get(Calendar::FieldMinute), calendar.get(Calendar::FieldSecond)});
    }
    return result;
}

void compose(GregorianCalendar& calendar, const std::vector<Date>& all)
{
    std::int64_t sum = 0;
    for (const Date& d : all) {
        calendar.set(d.year, d.month, d.day, d.hour, d.minute, d.second);
        sum += calendar.getTime();
    }
    bench::keep(sum);
}

void composeByBoost(const std::vector<Date>& all)
{
    const posix::ptime epoch(gregorian::date(1970, 1, 1));
    std::int64_t sum = 0;
    for (const Date& d : all) {
        const gregorian::date date(static_cast<unsigned short>(d.year), static_cast<unsigned short>(d.month + 1),
                                   static_cast<unsigned short>(d.day));
        const posix::ptime instant(date, posix::time_duration(d.hour, d.minute, d.second));
        sum += (instant - epoch).total_milliseconds();
    }
    bench::keep(sum);
}
} // namespace

TEST_CASE("calendar")
{
    GregorianCalendar calendar((tarn::TimeZone()));
    calendar.setFirstDayOfWeek(GregorianCalendar::Monday);
    calendar.setMinimalDaysInFirstWeek(4);
    const auto boostTimes = instants(1401, 8590), platformTimes = instants(1602, 14000),
               allTimes = instants(-4000, 14000);

    bench::Ratios table("Gregorian calendar, 50,000 random instants");
    table.row(
        "instant to fields, 1401 to 9990 / Boost.Date_Time", 0.55, [&] { decompose(calendar, boostTimes); },
        [&] { decomposeByBoost(boostTimes); });
    table.row(
        "instant to fields, 14,000 years / FileTimeToSystemTime", 0.85, [&] { decompose(calendar, platformTimes); },
        [&] { decomposeByPlatform(platformTimes); });
    table.row(
        "reading the week fields too / without", 1.6, [&] { decomposeWithWeeks(calendar, allTimes); },
        [&] { decompose(calendar, allTimes); });

    const std::vector<Date> all = dates(boostTimes);
    calendar.Clear();
    table.row(
        "fields to instant, 1401 to 9990 / Boost.Date_Time", 0.95, [&] { compose(calendar, all); },
        [&] { composeByBoost(all); });
}

TEST_CASE("calendar: growth", "[.growth]")
{
    const bench::Growth growth("Reading the fields of instants", "instants");
    const auto some = [](unsigned size) {
        std::vector<std::int64_t> times;
        while (times.size() < size)
            for (const std::int64_t time : instants(1602, 8000))
                times.push_back(time);
        times.resize(size);
        return times;
    };
    growth.line("library", bench::tens(1, 6), [&](unsigned size) {
        return [times = some(size), calendar = GregorianCalendar((tarn::TimeZone()))]() mutable {
            decompose(calendar, times);
        };
    });
    growth.line("FileTimeToSystemTime", bench::tens(1, 6),
                [&](unsigned size) { return [times = some(size)] { decomposeByPlatform(times); }; });
}
