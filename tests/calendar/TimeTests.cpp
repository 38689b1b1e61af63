#include "Test.h"

#include <tarn/MemoryStream.h>
#include <tarn/Time.h>

#include "foundation/NumericCast.h"

#include <chrono>

TEST_CASE("Time: seconds truncate toward zero and only whole days are dates")
{
    CHECK(Time::fromTimeT(-1) == -1000);
    CHECK(Time::fromTimeT(INT_MAX) == 2147483647000);
    CHECK(Time(-1500).toTimeT() == -1);
    CHECK(Time(1999).toTimeT() == 1);
    CHECK(Time(-86400000).isDate());
    CHECK_FALSE(Time(1).isDate());
    CHECK_FALSE(Time(-86399999).isDate());
}

TEST_CASE("Time: moves by milliseconds and goes through the library's streams as its number")
{
    Time time = 1000;
    CHECK((time += 500) == 1500);
    CHECK((time -= Time(1501)) == -1);
    MemoryOutputStream out;
    out << time << Time(0x0102030405060708);
    CHECK(std::string(static_cast<const char*>(out.getData()), 16) ==
          std::string("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x8\x7\x6\x5\x4\x3\x2\x1"));
    MemoryInputStream in(out.getData(), 16);
    Time second;
    in >> time >> second;
    CHECK((time == -1 && second == 0x0102030405060708));
    CHECK((Time(INT64_MAX) += 1) == INT64_MIN);
}

TEST_CASE("Time: instants of the standard library and 64-bit seconds, as far as they reach")
{
    using namespace std::chrono;
    const Time leapDay(951782400123);
    CHECK(system_clock::time_point(leapDay) == sys_days(2000y / February / 29) + 123ms);
    CHECK(sys_seconds(Time(-1)) == sys_seconds(-1s));
    CHECK(sys_time<milliseconds>(Time(INT64_MIN)).time_since_epoch().count() == INT64_MIN);
    CHECK(Time(system_clock::time_point(leapDay) + 999us) == leapDay);
    CHECK(Time(sys_time<microseconds>(-1us)) == -1);
    CHECK(Time(sys_days(2000y / February / 29)) == 951782400000);
    CHECK(Time::fromTimeT64(Time(253402300799999).toTimeT64()) == 253402300799000);

    const std::string lossOfRange = "bad numeric cast: loss of range in numeric_cast";
    expectError<LossOfRange>([] { (void)system_clock::time_point(Time(INT64_MAX)); }, lossOfRange);
    expectError<LossOfRange>([] { Time(sys_days(days(INT64_MAX / 1000))); }, lossOfRange);
    expectError<LossOfRange>([] { Time::fromTimeT64(INT64_MIN); }, lossOfRange);
}

TEST_CASE("Time: X/Open units count from the cutover, in 64 bits without a sign")
{
    CHECK(Time(-12219292800000).toXOpen() == 0);
    CHECK(Time(0).toXOpen() == 122192928000000000u);
    CHECK(Time::fromXOpen(10000) == -12219292799999);
    CHECK(Time::fromXOpen(UINT64_MAX) == 1844674407370955 - 12219292800000);
}

TEST_CASE("Time: current() is the epoch and now() is the clock's")
{
    CHECK(Time::current() == 0);
    FILETIME before, after;
    GetSystemTimeAsFileTime(&before);
    const Time now = Time::now();
    GetSystemTimeAsFileTime(&after);
    CHECK(now >= Time::fromFileTime(before));
    CHECK(now <= Time::fromFileTime(after));
}

TEST_CASE("Time: converts from and to the platform's times")
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

TEST_CASE("Time: what the platform cannot hold is an error")
{
    const char* const tooEarly = "Can't convert time to file time";
    CHECK(Time(-11644473600000).toFileTime().dwHighDateTime == 0);
    CHECK(Time(910692730085477).toFileTime().dwHighDateTime == 0x7FFFFFFF);
    expectWindowsError([] { Time(910692730085478).toFileTime(); }, ERROR_INVALID_PARAMETER, tooEarly);
    expectWindowsError([] { Time(-11644473600001).toFileTime(); }, ERROR_INVALID_PARAMETER, tooEarly);
    expectWindowsError([] { Time(INT64_MAX).toSystemTime(); }, ERROR_INVALID_PARAMETER, tooEarly);
    const SYSTEMTIME february30 = {2000, 2, 0, 30, 0, 0, 0, 0};
    expectWindowsError([&] { Time::fromSystemTime(february30); }, ERROR_INVALID_PARAMETER,
                       "Can't convert system time to file time");
}
