#include "Test.h"

#include <tarn/TimeText.h>

#include "Zones.h"

#include <limits>

TEST_CASE("TimeText: instants are written by the Gregorian calendar in the zone")
{
    CHECK(formatISOTimeA(0) == "1970-01-01T00:00:00.000Z");
    CHECK(formatISOTimeA(-1) == "1969-12-31T23:59:59.999Z");
    CHECK(formatISOTimeA(-12219292800001) == "1582-10-14T23:59:59.999Z");
    CHECK(formatISOTimeA(-62167219200001) == "-0001-12-31T23:59:59.999Z");
    CHECK(formatISOTimeA(253402300800000) == "+10000-01-01T00:00:00.000Z");
    CHECK(formatISOTimeA(962409600000, zones::north()) == "2000-07-01T02:00:00.000+02:00");
    CHECK(formatISOTimeA(0, zones::withOffset(-12600000)) == "1969-12-31T20:30:00.000-03:30");
    CHECK(formatISOTimeW(951782400123) == L"2000-02-29T00:00:00.123Z");
    CHECK(formatISOTimeA(0, zones::withOffset(119999)) == "1970-01-01T00:01:00.000+00:01"); // Whole minutes.
    CHECK(formatISOTimeA(0, zones::withOffset(-119999)) == "1969-12-31T23:59:00.000-00:01");
}

TEST_CASE("TimeText: what is written is read back to the same instant")
{
    const auto least = std::numeric_limits<std::int64_t>::min(), greatest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t time : {least, least + 86400000, std::int64_t(-62135596800000), std::int64_t(-1),
                                    std::int64_t(951782400123), greatest})
        for (const auto& zone : zones::all())
            CHECK(parseISOTime(formatISOTimeA(time, zone).c_str()) == time);
}

TEST_CASE("TimeText: what clocks show is read back by the rules of the day, around the cutover and the year 1, too")
{
    const TimeZone zone = TimeZone::named("America/New_York");
    for (const std::int64_t year : {-141427 - 300, -719162 - 300})
        for (std::int64_t day = year; day < year + 600; ++day) {
            const Time noon = day * 86400000 + 17 * 3600000;
            const std::string text = formatISOTimeA(noon, zone);
            if (parseISOTime(text.substr(0, text.size() - 6).c_str(), zone) != noon)
                FAIL(text);
        }
}

TEST_CASE("TimeText: the parts after the date may be left out")
{
    const auto& [text, expected] = GENERATE(table<const char*, std::int64_t>({
        {"2000-02-29", 951782400000},
        {"2000-02-29T12:00", 951825600000},
        {"2000-02-29 12:00:01Z", 951825601000},
        {"2000-02-29T12:00:01.5", 951825601500},
        {"2000-02-29T12:00:01,1239999Z", 951825601123},
        {"2000-02-28T24:00Z", 951782400000},
        {"2000-02-29T12:00+01:00", 951822000000},
        {"2000-02-29T12:00-0330", 951838200000},
        {"2000-02-29T12:00+01", 951822000000},
        {"+2000-02-29", 951782400000},
        {"0000-12-31", -62135683200000},
    }));
    CHECK(parseISOTime(text) == expected);
    CHECK(parseISOTime(L"2000-02-29T12:00", zones::north()) == 951822000000);
    CHECK(parseISOTime("2000-07-01T12:00", zones::north()) == 962445600000);
}

TEST_CASE("TimeText: weeks belong to the year of their Thursday, and are read back")
{
    const auto& [day, week] = GENERATE(table<const char*, const char*>({
        {"2005-01-01", "2004-W53-6"},
        {"2005-01-02", "2004-W53-7"},
        {"2005-12-31", "2005-W52-6"},
        {"2007-01-01", "2007-W01-1"},
        {"2008-12-28", "2008-W52-7"},
        {"2008-12-29", "2009-W01-1"},
        {"2010-01-03", "2009-W53-7"},
        {"2026-11-22", "2026-W47-7"},
        {"-0001-01-01", "-0002-W53-5"},
        {"+12000-01-01", "+11999-W52-6"},
    }));
    CHECK(formatISOWeekA(parseISOTime(day)) == week);
    CHECK(parseISOTime(week) == parseISOTime(day));
    CHECK(parseISOTime(L"2026-W47T12:00") == parseISOTime("2026-11-16T12:00"));
    CHECK(formatISOWeekW(962409600000 - 1, zones::north()) == L"2000-W26-6");
    CHECK(isoWeekOf(0).weekday == 4);
}

TEST_CASE("TimeText: every day of 400 years has one week, and days follow each other")
{
    ISOWeek before = isoWeekOf(Time(-86400000));
    int mistakes = 0;
    for (std::int64_t day = 0; day < 146097; ++day) {
        const ISOWeek now = isoWeekOf(Time(day * 86400000));
        const bool isNewWeek = before.weekday == 7, isNewYear = now.year != before.year;
        mistakes += now.weekday != (isNewWeek ? 1 : before.weekday + 1);
        mistakes += isNewYear ? !isNewWeek || now.week != 1 || before.week < 52 || now.year != before.year + 1
                              : now.week != before.week + isNewWeek || now.week > 53;
        before = now;
    }
    CHECK(mistakes == 0);
}

TEST_CASE("TimeText: durations are written, and read back")
{
    const auto least = std::numeric_limits<std::int64_t>::min(), greatest = std::numeric_limits<std::int64_t>::max();
    const std::pair<std::int64_t, const char*> rows[] = {{0, "PT0S"},
                                                         {-1, "-PT0.001S"},
                                                         {90061250, "P1DT1H1M1.250S"},
                                                         {1209600000, "P14D"},
                                                         {5400000, "PT1H30M"},
                                                         {least, "-P106751991167DT7H12M55.808S"},
                                                         {greatest, "P106751991167DT7H12M55.807S"}};
    for (const auto& [millis, text] : rows) {
        CHECK(formatISODurationA(millis) == text);
        CHECK(parseISODuration(text) == millis);
    }
    CHECK(formatISODurationW(1000) == L"PT1S");
    CHECK(parseISODuration(L"+P2W") == 1209600000);
    CHECK(parseISODuration("P1W1DT36H") == 820800000);
    CHECK(parseISODuration("-PT1,5009S") == -1500);

    const std::string text =
        GENERATE("", "P", "PT", "P1DT", "1D", "P1Y", "P1M", "P1D1W", "PT1S1M", "P1.5D", "PT1.S", "P-1D", "PT1H ",
                 "P106751991168D", "PT9223372036854775808S", "P1D1D", "P106751991167DT7H12M55.808S");
    expectError<Exception>([&] { parseISODuration(text.c_str()); },
                           "Not an ISO 8601 duration of weeks to seconds: \"" + text + '"');
}

TEST_CASE("TimeText: other texts are refused")
{
    const char* const text = GENERATE(
        "", "2000", "2000-2-29", "1900-02-29", "2000-13-01", "2000-00-01", "2000-01-00", "2000-02-29T",
        "2000-02-29T24:00:01", "2000-02-29T12", "2000-02-29T12:60", "2000-02-29T12:00:60", "2000-02-29T12:00:00.",
        "2000-02-29T12:00+", "2008-W53-1", "2009-W54", "2009-W00-1", "2009-W01-0", "2009-W01-8", "2009-W1-1",
        "2009-W01-", "2000-02-29T12:00+24", "2000-02-29T12:00+01:60", "2000-02-29T12:00Zx", "2000-02-29Z",
        "20000-01-01", "+999999999-01-01", "-292275055-05-16T16:47:04.191Z", "+292278994-08-17T07:12:55.808Z");
    expectError<Exception>([&] { parseISOTime(text); }, std::string("Not an ISO 8601 time: \"") + text + '"');
}
