#pragma once

#include <tarn/GregorianCalendar.h>

#include "DayNumbers.h"

// Broken-down instants, in arrays of one number for each of Calendar's fields.

namespace tarn {
/// The six fields of a date.
inline void setDate(int* values, const Date& date, int dayOfWeek)
{
    const bool isBC = date.year < 1;
    values[Calendar::FieldEra] = isBC ? GregorianCalendarBase::BC : GregorianCalendarBase::AD;
    values[Calendar::FieldYear] = isBC ? 1 - date.year : date.year;
    values[Calendar::FieldMonth] = date.month;
    values[Calendar::FieldDayOfMonth] = date.day;
    values[Calendar::FieldDayOfWeek] = dayOfWeek;
    values[Calendar::FieldDayOfYear] = date.dayOfYear + 1;
}

/// Two of them, of a near Gregorian day since the epoch.
inline void setDays(int* values, int day)
{
    values[Calendar::FieldDayOfWeek] = weekdayOf(day) + GregorianCalendarBase::Sunday;
    values[Calendar::FieldDayOfYear] = dateOf(true, day).dayOfYear + 1;
}

/// The same of a local day since the epoch.
inline void setDate(int* values, bool gregorian, std::int64_t day)
{
    setDate(values, dateOf(gregorian, day), weekdayOf(day) + GregorianCalendarBase::Sunday);
}

/// Of numbers without a sign fewer steps are needed.
template <class Int> void setTimeOfDay(int* values, Int millisInDay)
{
    const Int seconds = millisInDay / 1000, minutes = seconds / 60, hours = minutes / 60;
    values[Calendar::FieldMillisecond] = static_cast<int>(millisInDay % 1000);
    values[Calendar::FieldSecond] = static_cast<int>(seconds % 60);
    values[Calendar::FieldMinute] = static_cast<int>(minutes % 60);
    values[Calendar::FieldHourOfDay] = static_cast<int>(hours);
    values[Calendar::FieldAmPm] = static_cast<int>(hours / 12);
    values[Calendar::FieldHour] = static_cast<int>(hours % 12);
}
} // namespace tarn
