#include <tarn/Time.h>

#include <tarn/GregorianCalendarBase.h>
#include <tarn/Stream.h>
#include <tarn/Windows.h>

#include "../foundation/Check.h"
#include "../foundation/NumericCast.h"
#include "Arithmetic.h"

#include <ctime>

namespace tarn {
namespace {
constexpr std::int64_t unitsPerMillisecond = 10000;
constexpr std::int64_t fileTimeEpoch = -11644473600000; // 1601-01-01

const GregorianCalendarBase defaults;
} // namespace

Time& Time::operator+=(std::int64_t milliseconds) { return *this = wrappingAdd(milliseconds_, milliseconds); }
Time& Time::operator-=(std::int64_t milliseconds) { return *this = wrappingSubtract(milliseconds_, milliseconds); }

Time Time::current()
{
    std::time(nullptr);
    return Time(0);
}

Time Time::now()
{
    FILETIME fileTime;
    GetSystemTimeAsFileTime(&fileTime);
    return fromFileTime(fileTime);
}

std::int64_t Time::scaled(std::int64_t value, std::int64_t factor, std::int64_t divisor)
{
    if (divisor > factor)
        return floorQuotient(value, divisor / factor);
    if (__builtin_mul_overflow(value, factor / divisor, &value))
        throwError(LossOfRange());
    return value;
}

std::uint64_t Time::toXOpen() const
{
    const auto sinceCutover = static_cast<std::uint64_t>(milliseconds_) -
                              static_cast<std::uint64_t>(std::int64_t(defaults.gregorianChange()));
    return sinceCutover * unitsPerMillisecond;
}

Time Time::fromXOpen(std::uint64_t units)
{
    return Time(static_cast<std::int64_t>(units / unitsPerMillisecond) + defaults.gregorianChange());
}

FILETIME Time::toFileTime() const
{
    // The platform takes file times with the highest bit set for something else.
    constexpr std::int64_t last = INT64_MAX / unitsPerMillisecond + fileTimeEpoch;
    if (milliseconds_ < fileTimeEpoch || milliseconds_ > last)
        throwWindowsError(ERROR_INVALID_PARAMETER, "Can't convert time to file time");
    const auto units = static_cast<std::uint64_t>((milliseconds_ - fileTimeEpoch) * unitsPerMillisecond);
    return {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
}

Time Time::fromFileTime(const FILETIME& fileTime)
{
    const auto units = std::uint64_t(fileTime.dwHighDateTime) << 32 | fileTime.dwLowDateTime;
    return Time(static_cast<std::int64_t>(units / unitsPerMillisecond) + fileTimeEpoch);
}

SYSTEMTIME Time::toSystemTime() const
{
    const FILETIME fileTime = toFileTime();
    SYSTEMTIME systemTime;
    ensure(FileTimeToSystemTime(&fileTime, &systemTime), "Can't convert file time to system time");
    return systemTime;
}

Time Time::fromSystemTime(const SYSTEMTIME& systemTime)
{
    FILETIME fileTime;
    ensure(SystemTimeToFileTime(&systemTime, &fileTime), "Can't convert system time to file time");
    return fromFileTime(fileTime);
}

OutputStream& operator<<(OutputStream& out, const Time& time) { return out << time.milliseconds_; }
InputStream& operator>>(InputStream& in, Time& time) { return in >> time.milliseconds_; }
} // namespace tarn
