#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

// Integer arithmetic that is defined for every value: calendars accept any number as a field and any
// 64-bit number as an instant.

namespace tarn {
constexpr int millisPerMinute = 60000;
constexpr std::int64_t millisPerHour = 3600000;
constexpr std::int64_t millisPerDay = 86400000;

/// The sum, wrapping round where it does not fit.
template <std::signed_integral T> constexpr T wrappingAdd(T a, std::type_identity_t<T> b)
{
    using Unsigned = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<Unsigned>(a) + static_cast<Unsigned>(b));
}

template <std::signed_integral T> constexpr T wrappingSubtract(T a, std::type_identity_t<T> b)
{
    using Unsigned = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<Unsigned>(a) - static_cast<Unsigned>(b));
}

template <std::signed_integral T> constexpr T wrappingMultiply(T a, std::type_identity_t<T> b)
{
    using Unsigned = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<Unsigned>(a) * static_cast<Unsigned>(b));
}

/// The sum of an instant and an offset, or the epoch when it does not fit: instants within an offset of the
/// ends of time read as 1970-01-01.
inline std::int64_t addOrEpoch(std::int64_t millis, int offset)
{
    std::int64_t sum = 0;
    return __builtin_add_overflow(millis, offset, &sum) ? 0 : sum;
}

/// The quotient rounded toward negative infinity, for positive divisors.
template <std::signed_integral T> constexpr T floorQuotient(T numerator, std::type_identity_t<T> divisor)
{
    return numerator >= 0 ? numerator / divisor : (numerator + 1) / divisor - 1;
}

constexpr int floorQuotient(int numerator, int divisor, int& remainder)
{
    const int quotient = floorQuotient(numerator, divisor);
    remainder = wrappingSubtract(numerator, wrappingMultiply(quotient, divisor));
    return quotient;
}

constexpr int floorQuotient(std::int64_t numerator, int divisor, int& remainder)
{
    // Dividing 64 bits is slow on a 32-bit processor, and day numbers hardly ever need them.
    if (numerator == static_cast<int>(numerator))
        return floorQuotient(static_cast<int>(numerator), divisor, remainder);
    const std::int64_t quotient = floorQuotient(numerator, divisor);
    remainder = static_cast<int>(wrappingSubtract(numerator, wrappingMultiply(quotient, divisor)));
    return static_cast<int>(quotient);
}

/// The non-negative remainder.
constexpr int floorRemainder(int numerator, int divisor)
{
    const int remainder = numerator % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}

/// Instants are near within this many days of the epoch, whole cycles of 400 years and of weeks: 1.1 million years.
/// Their days fit 32 bits, counted from the first near one.
constexpr int nearCycles = 2800;
constexpr int nearDays = nearCycles * 146097;
static_assert(nearDays % 7 == 0);

constexpr bool isNear(std::int64_t epochDay) { return epochDay >= -nearDays && epochDay < nearDays; }

struct NearDay {
    std::uint32_t day; ///< Since the first near one.
    std::uint32_t millisInDay;
};

/// Splits an instant that is near; `false` for others.
inline bool splitNear(std::int64_t millis, NearDay& result)
{
    constexpr std::int64_t range = nearDays * millisPerDay;
    if (millis < -range || millis >= range)
        return false;
    constexpr auto day = static_cast<std::uint32_t>(millisPerDay);
    if (sizeof(void*) == 4) {
        // A 64-bit division costs a 32-bit processor more than the rest of a date. The upper 29 bits times
        // a reciprocal are at most two days too early once one is taken off.
        constexpr std::int64_t reciprocal = (std::int64_t(1) << 57) / millisPerDay;
        const auto estimate =
            static_cast<std::int32_t>((static_cast<std::int32_t>(millis >> 26) * reciprocal) >> 31) - 1;
        const std::uint32_t rest = static_cast<std::uint32_t>(millis) - static_cast<std::uint32_t>(estimate) * day;
        result = {static_cast<std::uint32_t>(estimate) + nearDays + rest / day, rest % day};
    } else {
        const auto sinceFirst = static_cast<std::uint64_t>(millis + range);
        result.day = static_cast<std::uint32_t>(sinceFirst / day);
        result.millisInDay = static_cast<std::uint32_t>(sinceFirst) - result.day * day;
    }
    return true;
}

/// The day since the epoch that an instant lies in, and the milliseconds since that day's midnight.
inline std::int64_t splitDay(std::int64_t millis, int& millisInDay)
{
    if (NearDay nearDay; splitNear(millis, nearDay)) {
        millisInDay = static_cast<int>(nearDay.millisInDay);
        return static_cast<int>(nearDay.day - nearDays);
    }
    const std::int64_t day = floorQuotient(millis, millisPerDay);
    millisInDay = static_cast<int>(wrappingSubtract(millis, wrappingMultiply(day, millisPerDay)));
    return day;
}
} // namespace tarn
