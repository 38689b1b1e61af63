#include "Zone.h"

#include <tarn/Exception.h>

#include <algorithm>
#include <iterator>

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

int yearOf(Local local) { return Reckoning().dateOf(dayOf(local)).year; }
} // namespace

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
    zone.SetStartRuleByWeekday(daylight_->startMonth, daylight_->startWeek, GregorianCalendar::Sunday,
                               daylight_->startMinutes * minute);
    zone.SetEndRuleByWeekday(daylight_->endMonth, daylight_->endWeek, GregorianCalendar::Sunday,
                             daylight_->endMinutes * minute);
    return zone;
}

tarn::Time Zone::toTime(Local local) const
{
    const tarn::TimeZone::Instants instants = forYear(yearOf(local)).instantsOf(local);
    return instants.count == 0 ? instants.earlier : instants.later;
}

Local Zone::toLocal(const tarn::Time& time) const
{
    const tarn::TimeZone zone = forYear(yearOf(time));
    return time + zone.GetStandardOffset() + (zone.InDaylightTime(time) ? zone.GetDSTOffset() : 0);
}
} // namespace planner
