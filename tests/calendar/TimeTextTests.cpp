#include <catch2/catch.hpp>

#include <tarn/TimeText.h>

#include "Expect.h"
#include "Zones.h"

#include <limits>

using tarn::formatISOTimeA;
using tarn::parseISOTime;

TEST_CASE("TimeText: instants are written by the Gregorian calendar in the zone", "[calendar][text]")
{
    CHECK(formatISOTimeA(0) == "1970-01-01T00:00:00.000Z");
    CHECK(formatISOTimeA(-1) == "1969-12-31T23:59:59.999Z");
    CHECK(formatISOTimeA(-12219292800001) == "1582-10-14T23:59:59.999Z");
    CHECK(formatISOTimeA(-62167219200001) == "-0001-12-31T23:59:59.999Z");
    CHECK(formatISOTimeA(253402300800000) == "+10000-01-01T00:00:00.000Z");
    CHECK(formatISOTimeA(962409600000, zones::north()) == "2000-07-01T02:00:00.000+02:00");
    CHECK(formatISOTimeA(0, zones::withOffset(-12600000)) == "1969-12-31T20:30:00.000-03:30");
    CHECK(tarn::formatISOTimeW(951782400123) == L"2000-02-29T00:00:00.123Z");
}

TEST_CASE("TimeText: what is written is read back to the same instant", "[calendar][text]")
{
    const auto least = std::numeric_limits<std::int64_t>::min(), greatest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t time : {least, least + 86400000, std::int64_t(-62135596800000), std::int64_t(-1),
                                    std::int64_t(951782400123), greatest})
        for (const auto& zone : zones::all())
            CHECK(parseISOTime(formatISOTimeA(time, zone).c_str()) == time);
}

TEST_CASE("TimeText: the parts after the date may be left out", "[calendar][text]")
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

TEST_CASE("TimeText: other texts are refused", "[calendar][text]")
{
    const char* const text = GENERATE(
        "", "2000", "2000-2-29", "1900-02-29", "2000-13-01", "2000-00-01", "2000-01-00", "2000-02-29T",
        "2000-02-29T24:00:01", "2000-02-29T12", "2000-02-29T12:60", "2000-02-29T12:00:60", "2000-02-29T12:00:00.",
        "2000-02-29T12:00+", "2000-02-29T12:00+24", "2000-02-29T12:00Zx", "2000-02-29Z", "20000-01-01",
        "+999999999-01-01", "-292275055-05-16T16:47:04.191Z", "+292278994-08-17T07:12:55.808Z");
    support::expectError<tarn::Exception>([&] { parseISOTime(text); },
                                          std::string("Not an ISO 8601 time: \"") + text + '"');
}
