#pragma once

#include <tarn/Export.h>

#include <cstdint>

struct _FILETIME;
struct _SYSTEMTIME;

namespace tarn {
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

    /// Always the epoch, 0: the clock's reading is dropped. Call now() for the present instant.
    static Time current();
    /// The present instant by the system's clock.
    static Time now();

    /// Whole seconds, truncated toward zero, so that -1500 ms give -1; beyond 32 bits (2038) they wrap.
    ///@{
    int toTimeT() const { return static_cast<int>(milliseconds_ / 1000); }
    static Time fromTimeT(int seconds) { return Time(std::int64_t(seconds) * 1000); }
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

private:
    std::int64_t milliseconds_;
};
static_assert(sizeof(Time) == 8);
} // namespace tarn
