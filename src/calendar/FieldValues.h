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

/// The same of a local day since the epoch.
inline void setDate(int* values, bool gregorian, std::int64_t day)
{
    setDate(values, dateOf(gregorian, day), weekdayOf(day) + GregorianCalendarBase::Sunday);
}

inline void setTimeOfDay(int* values, int millisInDay)
{
    const int seconds = millisInDay / 1000;
    const int minutes = seconds / 60;
    const int hours = minutes / 60;
    values[Calendar::FieldMillisecond] = millisInDay % 1000;
    values[Calendar::FieldSecond] = seconds % 60;
    values[Calendar::FieldMinute] = minutes % 60;
    values[Calendar::FieldHourOfDay] = hours;
    values[Calendar::FieldAmPm] = hours / 12;
    values[Calendar::FieldHour] = hours % 12;
}
} // namespace tarn
