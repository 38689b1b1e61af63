#include "Tour.h"

#include <tarn/GregorianCalendar.h>
#include <tarn/RecurrenceSet.h>
#include <tarn/TimeText.h>

#include <iostream>

using tarn::Calendar;
using tarn::GregorianCalendar;

namespace {
const char* const weekdays[] = {"", "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

std::string dateOf(const GregorianCalendar& calendar)
{
    return std::string(weekdays[calendar.get(Calendar::FieldDayOfWeek)]) + ", " +
           std::to_string(calendar.get(Calendar::FieldDayOfMonth)) + "." +
           std::to_string(calendar.get(Calendar::FieldMonth) + 1) + "." +
           std::to_string(calendar.get(Calendar::FieldYear)) +
           (calendar.get(Calendar::FieldEra) == GregorianCalendar::BC ? " BC" : "");
}

void show()
{
    std::cout << "Now, in UTC:            " << tarn::formatISOTimeA(tarn::Time::now()) << '\n';

    GregorianCalendar calendar((tarn::TimeZone()));
    calendar.Clear();
    calendar.set(1582, GregorianCalendar::October, 4);
    std::cout << "The last Julian day:    " << dateOf(calendar) << '\n';
    calendar.add(Calendar::FieldDayOfMonth, 1);
    std::cout << "and the day after:      " << dateOf(calendar) << '\n';

    calendar.set(44, GregorianCalendar::March, 15);
    calendar.set(Calendar::FieldEra, GregorianCalendar::BC);
    std::cout << "The Ides of March:      " << dateOf(calendar) << ", "
              << (tarn::Time::now() - calendar.getTime()) / 86400000 << " days ago\n";

    calendar.Clear();
    calendar.set(2000, GregorianCalendar::January, 31);
    calendar.add(Calendar::FieldMonth, 1);
    std::cout << "31.1.2000 and a month:  " << dateOf(calendar) << '\n';
    calendar.roll(Calendar::FieldDayOfMonth, 1);
    std::cout << "rolled by a day:        " << dateOf(calendar) << " (the month stays)\n";

    GregorianCalendar local(tarn::TimeZone::named("Europe/Berlin"));
    local.Clear();
    local.set(2000, GregorianCalendar::March, 25, 12, 0);
    std::cout << "Before summer time:     " << tarn::formatISOTimeA(local.getTime(), local.GetTimeZone()) << '\n';
    local.add(Calendar::FieldDayOfMonth, 1);
    std::cout << "a day on, same clock:   " << tarn::formatISOTimeA(local.getTime(), local.GetTimeZone()) << '\n';

    tarn::RecurrenceSet paydays(tarn::parseISOTime("2026-01-30T12:00", local.GetTimeZone()), local.GetTimeZone());
    paydays.setRule(tarn::parseRecurrenceRule("FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1;COUNT=4"));
    std::cout << "Last workdays at noon: ";
    for (const tarn::Time& payday : paydays)
        std::cout << ' ' << tarn::formatISOTimeA(payday, local.GetTimeZone());
    std::cout << '\n';

    const tarn::TimeZone moscow = tarn::TimeZone::named("Europe/Moscow"); // Changed its standard time.
    std::cout << "In Moscow:             ";
    for (const char* time : {"2010-07-01", "2012-01-01", "2016-07-01"})
        std::cout << ' ' << tarn::formatISOTimeA(tarn::parseISOTime(time), moscow);
    std::cout << '\n';
}

const tour::Section section(30, "Calendar and time", show);
} // namespace
