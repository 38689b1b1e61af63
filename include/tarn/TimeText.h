#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Time.h>
#include <tarn/TimeZone.h>

#include <cstdint>

namespace tarn {
/// An instant as ISO 8601 writes it, "2000-02-29T12:00:00.000Z", in another zone with its offset for the
/// "Z": "2000-02-29T13:00:00.000+01:00".
///
/// ISO 8601 reckons by the Gregorian calendar also before 1582, where the text shows another day than a
/// GregorianCalendar does, and counts years astronomically: 0000 is 1 BC. Years outside 0000 to 9999 have
/// a sign. Offsets are shown in whole minutes; the time before them then agrees with what is shown.
///@{
TARN_API BasicString<char> formatISOTimeA(const Time& time, const TimeZone& zone = TimeZone());
TARN_API BasicString<wchar_t> formatISOTimeW(const Time& time, const TimeZone& zone = TimeZone());
///@}

/// A day as ISO 8601 counts it in weeks that begin on Monday. The week belongs to the year in which its Thursday lies,
/// so that around New Year `year` may be the neighbouring one.
struct ISOWeek {
    /// Astronomical, 0 being 1 BC, and Gregorian also before 1582.
    int year;
    /// 1 to 53.
    int week;
    /// 1, Monday, to 7, Sunday.
    int weekday;
};
/// The day of an instant in the zone.
TARN_API ISOWeek isoWeekOf(const Time& time, const TimeZone& zone = TimeZone());
/// The same as text, "2026-W47-7"; parseISOTime() reads it.
///@{
TARN_API BasicString<char> formatISOWeekA(const Time& time, const TimeZone& zone = TimeZone());
TARN_API BasicString<wchar_t> formatISOWeekW(const Time& time, const TimeZone& zone = TimeZone());
///@}

/// Milliseconds as a duration of ISO 8601, in days of 24 hours, hours, minutes and seconds: "P1DT2H30M", "PT0.250S",
/// "PT0S", "-P1D".
///@{
TARN_API BasicString<char> formatISODurationA(std::int64_t milliseconds);
TARN_API BasicString<wchar_t> formatISODurationW(std::int64_t milliseconds);
///@}
/// Reads weeks, days, hours, minutes and seconds, in this order, each but one of which may be left out: "P2W",
/// "P1DT12H", "PT36H", "-PT1.5S". Digits of a second beyond milliseconds are dropped.
///
/// Throws Exception "Not an ISO 8601 duration of weeks to seconds: " and the text between double quotes for any other
/// text, one with years or months among them, which have no length of their own, and for what 64 bits do not hold.
///@{
TARN_API std::int64_t parseISODuration(const char* text);
TARN_API std::int64_t parseISODuration(const wchar_t* text);
///@}

/// Reads "2000-02-29" or "2000-W09-2", with a time after "T" or a blank "12:00", "12:00:00" or "12:00:00.123", and
/// after that "Z" or an offset "+01:00", "+0100" or "+01". Digits beyond milliseconds are dropped; "24:00" is the end
/// of the day. A text without offset is local time in `zone`.
///
/// Throws Exception "Not an ISO 8601 time: " and the text between double quotes for any other text, for
/// dates that do not exist and for instants that Time cannot hold.
///@{
TARN_API Time parseISOTime(const char* text, const TimeZone& zone = TimeZone());
TARN_API Time parseISOTime(const wchar_t* text, const TimeZone& zone = TimeZone());
///@}
} // namespace tarn
