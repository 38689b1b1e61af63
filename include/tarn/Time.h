#pragma once

#include <tarn/Export.h>
#include <tarn/Layout.h>

#include <concepts>
#include <cstdint>

struct _FILETIME;
struct _SYSTEMTIME;

namespace tarn {
class InputStream;
class OutputStream;

namespace detail {
/// An instant of std::chrono::system_clock in any unit, told without <chrono>, which takes long to compile.
template <class T>
concept SystemTimePoint = requires
{
    T::clock::from_time_t(0);
    T::period::den;
    requires std::integral<typename T::rep> && sizeof(typename T::rep) == 8;
};
} // namespace detail

/// An instant: milliseconds since 1970-01-01 00:00:00 UTC, negative before.
///
/// A value, converting to and from its number, so that instants are compared, subtracted and moved by
/// milliseconds as numbers are. A GregorianCalendar turns one into year, month, day and time of day;
/// TimeText.h writes and reads one as text.
class TARN_API Time {
public:
    /// Milliseconds since 1970-01-01 00:00:00 UTC.
    ///@{
    Time(std::int64_t milliseconds = 0) : milliseconds_(milliseconds) {}
    Time& operator=(std::int64_t milliseconds)
    {
        milliseconds_ = milliseconds;
        return *this;
    }
    operator std::int64_t() const { return milliseconds_; }
    ///@}

    /// Moves by milliseconds; beyond the ends of time it wraps round.
    ///@{
    Time& operator+=(std::int64_t milliseconds);
    Time& operator-=(std::int64_t milliseconds);
    ///@}

    /// Always the epoch, 0: the clock's reading is dropped. Call now() for the present instant.
    static Time current();
    /// The present instant by the system's clock.
    static Time now();

    /// Whole seconds, truncated toward zero, so that -1500 ms give -1; beyond 32 bits (2038) they wrap.
    ///@{
    int toTimeT() const { return static_cast<int>(milliseconds_ / 1000); }
    static Time fromTimeT(int seconds) { return Time(std::int64_t(seconds) * 1000); }
    ///@}
    /// The same in 64 bits, which do not end in 2038. fromTimeT64() throws boost::bad_numeric_cast for seconds
    /// that Time does not reach.
    ///@{
    std::int64_t toTimeT64() const { return milliseconds_ / 1000; }
    static Time fromTimeT64(std::int64_t seconds) { return Time(scaled(seconds, 1000, 1)); }
    ///@}

    /// From and to the instants of the standard library, `Time(std::chrono::system_clock::now())` and
    /// `std::chrono::system_clock::time_point(time)`, in any unit that fits milliseconds. What the target's unit
    /// cannot show is dropped, toward the past. Throws boost::bad_numeric_cast for instants that the target does
    /// not reach: system_clock::time_point itself holds the years 1678 to 2261, std::chrono::sys_time of
    /// milliseconds holds every Time.
    ///@{
    template <detail::SystemTimePoint T>
    explicit Time(const T& point)
        : Time(scaled(point.time_since_epoch().count(), T::period::num * 1000, T::period::den))
    {
    }
    template <detail::SystemTimePoint T> explicit operator T() const
    {
        return T(typename T::duration(scaled(milliseconds_, T::period::den, T::period::num * 1000)));
    }
    ///@}

    /// Whether this is midnight UTC.
    bool isDate() const { return milliseconds_ % 86400000 == 0; }

    /// Units of 100 nanoseconds since 1582-10-15 00:00:00 UTC, as in time-based UUIDs.
    ///@{
    std::uint64_t toXOpen() const;
    static Time fromXOpen(std::uint64_t units);
    ///@}

    /// The platform's units of 100 nanoseconds since 1601. Throws WindowsError "Can't convert time to file
    /// time" for instants that it does not reach: before 1601 and after 30828-09-14.
    _FILETIME toFileTime() const;
    /// Fractions of a millisecond are dropped.
    static Time fromFileTime(const _FILETIME& fileTime);

    /// The platform's fields, in UTC. Throws as toFileTime() and "Can't convert file time to system time".
    _SYSTEMTIME toSystemTime() const;
    /// Takes the fields as UTC; the day of the week is ignored. Throws WindowsError "Can't convert system
    /// time to file time" for fields that name no instant.
    static Time fromSystemTime(const _SYSTEMTIME& systemTime);

    /// On the library's streams an instant is its number, in 64 bits. Throws as they do for numbers.
    ///@{
    friend TARN_API OutputStream& operator<<(OutputStream& out, const Time& time);
    friend TARN_API InputStream& operator>>(InputStream& in, Time& time);
    ///@}

private:
    /// `value * factor / divisor` rounded down, one of the two dividing the other.
    static std::int64_t scaled(std::int64_t value, std::int64_t factor, std::int64_t divisor);

    std::int64_t milliseconds_;
};
TARN_LAYOUT(Time, 8, 8);
} // namespace tarn
