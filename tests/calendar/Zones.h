#pragma once

#include <tarn/GregorianCalendar.h>
#include <tarn/TimeZone.h>

#include <string>
#include <vector>

namespace zones {
using Base = tarn::GregorianCalendarBase;

constexpr int hour = 3600000;

inline tarn::TimeZone withOffset(int milliseconds, int daylight = 0)
{
    tarn::TimeZone zone;
    zone.SetStandardOffset(milliseconds);
    zone.SetDSTOffset(daylight);
    return zone;
}

/// UTC+1 with daylight time from the last Sunday of March to the last Sunday of October.
inline tarn::TimeZone north()
{
    tarn::TimeZone zone = withOffset(hour, hour);
    zone.SetStartRule(Base::March, -1, Base::Sunday, 2 * hour);
    zone.SetEndRule(Base::October, -1, Base::Sunday, 2 * hour);
    return zone;
}

/// UTC+10 with daylight time from the last Sunday of October to the last Sunday of March.
inline tarn::TimeZone south()
{
    tarn::TimeZone zone = withOffset(10 * hour, hour);
    zone.SetStartRule(Base::October, -1, Base::Sunday, 2 * hour);
    zone.SetEndRule(Base::March, -1, Base::Sunday, 2 * hour);
    return zone;
}

/// The same by dates: UTC-5 from 10 April to 20 October, and UTC+9:30 from 20 October to 10 April.
inline tarn::TimeZone northByDate()
{
    tarn::TimeZone zone = withOffset(-5 * hour, hour);
    zone.SetStartRule(Base::April, 10, 2 * hour);
    zone.SetEndRule(Base::October, 20, hour);
    return zone;
}
inline tarn::TimeZone southByDate()
{
    tarn::TimeZone zone = withOffset(9 * hour + hour / 2, hour / 2);
    zone.SetStartRule(Base::October, 20, 2 * hour);
    zone.SetEndRule(Base::April, 10, hour + hour / 2);
    return zone;
}

inline std::vector<tarn::TimeZone> all()
{
    return {tarn::TimeZone(), withOffset(-12 * hour), north(), south(), northByDate(), southByDate()};
}

/// A calendar with the instant, in UTC unless told otherwise.
inline tarn::GregorianCalendar at(std::int64_t millis, const tarn::TimeZone& zone = tarn::TimeZone())
{
    tarn::GregorianCalendar calendar(zone);
    calendar.setTime(millis);
    return calendar;
}

/// A calendar at a date and time of its own zone.
inline tarn::GregorianCalendar on(int year, int month, int day, int hourOfDay = 0, int minute = 0,
                                  const tarn::TimeZone& zone = tarn::TimeZone())
{
    tarn::GregorianCalendar calendar(zone);
    calendar.Clear();
    calendar.set(year, month, day, hourOfDay, minute);
    calendar.getTime();
    return calendar;
}

/// The calendar with other weeks.
inline tarn::GregorianCalendar withWeeks(tarn::GregorianCalendar calendar, int firstDay, int minimalDays)
{
    calendar.setFirstDayOfWeek(firstDay);
    calendar.setMinimalDaysInFirstWeek(minimalDays);
    calendar.setTime(calendar.getTime());
    return calendar;
}

/// "1582-10-04 AD 23:59:59.999".
inline std::string text(const tarn::GregorianCalendar& calendar)
{
    using C = tarn::Calendar;
    char buffer[80];
    std::snprintf(buffer, sizeof buffer, "%d-%02d-%02d %s %02d:%02d:%02d.%03d", calendar.get(C::FieldYear),
                  calendar.get(C::FieldMonth) + 1, calendar.get(C::FieldDayOfMonth),
                  calendar.get(C::FieldEra) == Base::BC ? "BC" : "AD", calendar.get(C::FieldHourOfDay),
                  calendar.get(C::FieldMinute), calendar.get(C::FieldSecond), calendar.get(C::FieldMillisecond));
    return buffer;
}
} // namespace zones
