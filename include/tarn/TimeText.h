#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Time.h>
#include <tarn/TimeZone.h>

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

/// Reads "2000-02-29", with a time after "T" or a blank "12:00", "12:00:00" or "12:00:00.123", and after
/// that "Z" or an offset "+01:00", "+0100" or "+01". Digits beyond milliseconds are dropped; "24:00" is
/// the end of the day. A text without offset is local time in `zone`.
///
/// Throws Exception "Not an ISO 8601 time: " and the text between double quotes for any other text, for
/// dates that do not exist and for instants that Time cannot hold.
///@{
TARN_API Time parseISOTime(const char* text, const TimeZone& zone = TimeZone());
TARN_API Time parseISOTime(const wchar_t* text, const TimeZone& zone = TimeZone());
///@}
} // namespace tarn
