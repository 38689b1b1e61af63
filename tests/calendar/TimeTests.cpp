#include <catch2/catch.hpp>

#include <tarn/Time.h>
#include <tarn/Windows.h>

#include "Expect.h"

using tarn::Time;

TEST_CASE("Time: seconds truncate toward zero and only whole days are dates", "[calendar][time]")
{
    CHECK(Time::fromTimeT(-1) == -1000);
    CHECK(Time::fromTimeT(INT_MAX) == 2147483647000);
    CHECK(Time(-1500).toTimeT() == -1);
    CHECK(Time(1999).toTimeT() == 1);
    CHECK(Time(-86400000).isDate());
    CHECK_FALSE(Time(1).isDate());
    CHECK_FALSE(Time(-86399999).isDate());
}

TEST_CASE("Time: X/Open units count from the cutover, in 64 bits without a sign", "[calendar][time]")
{
    CHECK(Time(-12219292800000).toXOpen() == 0);
    CHECK(Time(0).toXOpen() == 122192928000000000u);
    CHECK(Time::fromXOpen(10000) == -12219292799999);
    CHECK(Time::fromXOpen(UINT64_MAX) == 1844674407370955 - 12219292800000);
}

TEST_CASE("Time: current() is the epoch and now() is the clock's", "[calendar][time]")
{
    CHECK(Time::current() == 0);
    FILETIME before, after;
    GetSystemTimeAsFileTime(&before);
    const Time now = Time::now();
    GetSystemTimeAsFileTime(&after);
    CHECK(now >= Time::fromFileTime(before));
    CHECK(now <= Time::fromFileTime(after));
}

TEST_CASE("Time: converts from and to the platform's times", "[calendar][time]")
{
    const FILETIME units = Time(0).toFileTime(); // They count from 1601.
    CHECK(units.dwHighDateTime == 0x019DB1DE);
    CHECK(units.dwLowDateTime == 0xD53E8000);
    CHECK(Time::fromFileTime(units) == 0);
    CHECK(Time::fromFileTime({19999, 0}) == -11644473599999);

    const SYSTEMTIME fields = Time(951782400123).toSystemTime();
    CHECK((fields.wYear == 2000 && fields.wMonth == 2 && fields.wDay == 29 && fields.wMilliseconds == 123));
    CHECK(Time::fromSystemTime(fields) == 951782400123);
}

TEST_CASE("Time: what the platform cannot hold is an error", "[calendar][time]")
{
    const char* const tooEarly = "Can't convert time to file time";
    CHECK(Time(-11644473600000).toFileTime().dwHighDateTime == 0);
    support::expectWindowsError([] { Time(-11644473600001).toFileTime(); }, ERROR_INVALID_PARAMETER, tooEarly);
    support::expectWindowsError([] { Time(INT64_MAX).toSystemTime(); }, ERROR_INVALID_PARAMETER, tooEarly);
    const SYSTEMTIME february30 = {2000, 2, 0, 30, 0, 0, 0, 0};
    support::expectWindowsError([&] { Time::fromSystemTime(february30); }, ERROR_INVALID_PARAMETER,
                                "Can't convert system time to file time");
}
