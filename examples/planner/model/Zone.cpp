#include "Zone.h"

#include <tarn/Exception.h>

#include <algorithm>
#include <iterator>

using tarn::Calendar;
using tarn::GregorianCalendar;

namespace planner {
namespace {
// The European rule holds since 1996 and the American one since 2007.
constexpr DaylightRule european(int standardMinutes)
{
    return {GregorianCalendar::March, -1, GregorianCalendar::October, -1, standardMinutes + 60, standardMinutes + 60};
}
constexpr DaylightRule western = european(0), central = european(60), eastern = european(120);
constexpr DaylightRule american{GregorianCalendar::March, 2, GregorianCalendar::November, 1, 120, 60};
constexpr int firstYearWithDaylight = 1970;

struct Known {
    const char* name;
    int standardMinutes;
    const DaylightRule* daylight;
};
constexpr Known known[] = {
    {"UTC", 0, nullptr},
    {"Europe/London", 0, &western},
    {"Europe/Dublin", 0, &western},
    {"Europe/Lisbon", 0, &western},
    {"Europe/Amsterdam", 60, &central},
    {"Europe/Berlin", 60, &central},
    {"Europe/Madrid", 60, &central},
    {"Europe/Paris", 60, &central},
    {"Europe/Rome", 60, &central},
    {"Europe/Stockholm", 60, &central},
    {"Europe/Vienna", 60, &central},
    {"Europe/Warsaw", 60, &central},
    {"Europe/Zurich", 60, &central},
    {"Europe/Athens", 120, &eastern},
    {"Europe/Helsinki", 120, &eastern},
    {"America/New_York", -300, &american},
    {"America/Chicago", -360, &american},
    {"America/Denver", -420, &american},
    {"America/Los_Angeles", -480, &american},
    {"Asia/Dubai", 240, nullptr},
    {"Asia/Kolkata", 330, nullptr},
    {"Asia/Shanghai", 480, nullptr},
    {"Asia/Tokyo", 540, nullptr},
};

const Known* find(const std::string& name)
{
    const auto found = std::ranges::find_if(known, [&](const Known& zone) { return name == zone.name; });
    return found == std::end(known) ? nullptr : found;
}

int yearOf(Local local)
{
    GregorianCalendar calendar((tarn::TimeZone()));
    calendar.setTime(local);
    return calendar.get(Calendar::FieldEra) == GregorianCalendar::AD ? calendar.get(Calendar::FieldYear) : 0;
}
} // namespace

int sundayOf(int year, int month, int week)
{
    GregorianCalendar calendar((tarn::TimeZone()));
    calendar.Clear();
    calendar.set(Calendar::FieldYear, year);
    calendar.set(Calendar::FieldMonth, month);
    calendar.set(Calendar::FieldDayOfWeek, GregorianCalendar::Sunday);
    calendar.set(Calendar::FieldDayOfWeekInMonth, week);
    return calendar.get(Calendar::FieldDayOfMonth);
}

const char* const Zone::system = "";

Zone::Zone(const std::string& name) : name_(name)
{
    if (name == system)
        return;
    const Known* const zone = find(name);
    if (!zone)
        throw tarn::Exception("The time zone \"" + name + "\" is not known");
    standardMinutes_ = zone->standardMinutes;
    daylight_ = zone->daylight;
}

bool Zone::isKnown(const std::string& name) { return name == system || find(name); }

std::vector<std::string> Zone::names()
{
    std::vector<std::string> names;
    for (const Known& zone : known)
        names.emplace_back(zone.name);
    return names;
}

int Zone::standardMinutes(int year) const
{
    return name_ == system ? forYear(year).GetStandardOffset() / static_cast<int>(minuteLength) : standardMinutes_;
}

// Rules by date: those by weekday cannot count from the beginning of a month.
tarn::TimeZone Zone::forYear(int year) const
{
    if (name_ == system)
        return tarn::TimeZone::currentForYear(year);
    constexpr int minute = minuteLength;
    tarn::TimeZone zone;
    zone.SetStandardOffset(standardMinutes_ * minute);
    if (!daylight_ || year < firstYearWithDaylight)
        return zone;
    zone.SetDSTOffset(hourLength);
    zone.SetStartRule(static_cast<tarn::TimeZone::Month>(daylight_->startMonth),
                      sundayOf(year, daylight_->startMonth, daylight_->startWeek), daylight_->startMinutes * minute);
    zone.SetEndRule(static_cast<tarn::TimeZone::Month>(daylight_->endMonth),
                    sundayOf(year, daylight_->endMonth, daylight_->endWeek), daylight_->endMinutes * minute);
    return zone;
}

tarn::Time Zone::toTime(Local local) const
{
    GregorianCalendar wall((tarn::TimeZone()));
    wall.setTime(local);
    GregorianCalendar calendar(forYear(yearOf(local)));
    calendar.Clear();
    for (const unsigned field :
         {Calendar::FieldEra, Calendar::FieldYear, Calendar::FieldMonth, Calendar::FieldDayOfMonth,
          Calendar::FieldHourOfDay, Calendar::FieldMinute, Calendar::FieldSecond, Calendar::FieldMillisecond})
        calendar.set(field, wall.get(field));
    return calendar.getTime();
}

Local Zone::toLocal(const tarn::Time& time) const
{
    GregorianCalendar calendar(forYear(yearOf(time)));
    calendar.setTime(time);
    return time + calendar.get(Calendar::FieldZoneOffset) + calendar.get(Calendar::FieldDstOffset);
}
} // namespace planner
