#include "Zone.h"

#include "ContentLines.h"

#include <tarn/Exception.h>
#include <tarn/Lock.h>

#include <algorithm>
#include <map>
#include <utility>

namespace planner {
namespace {
constexpr int firstYearWithDaylight = 1970; // Whatever the tables say.

// Asking the system takes long. An import asks from a thread of its own.
tarn::TimeZone zoneNamed(const std::string& name, int year)
{
    static std::map<std::pair<std::string, int>, tarn::TimeZone> asked;
    static tarn::CriticalSection section;
    const tarn::AutoLock lock(section);
    const std::pair key(name, year);
    const auto found = asked.find(key);
    return found != asked.end() ? found->second
                                : asked.emplace(key, tarn::TimeZone::named(name.c_str(), year)).first->second;
}

int yearOf(Local local) { return Reckoning().dateOf(dayOf(local)).year; }
} // namespace

const char* const Zone::system = "";

Zone::Zone(const std::string& name) : name_(name)
{
    if (!isKnown(name))
        throw tarn::Exception("The time zone \"" + name + "\" is not known");
}

bool Zone::isKnown(const std::string& name)
{
    if (name == system || name == "UTC")
        return true;
    try {
        zoneNamed(name, firstYearWithDaylight);
        return true;
    } catch (const tarn::WindowsError&) {
        return false;
    }
}

std::vector<std::string> Zone::names()
{
    return split(
        "UTC Europe/London Europe/Dublin Europe/Lisbon Europe/Amsterdam Europe/Berlin Europe/Madrid Europe/Paris "
        "Europe/Rome Europe/Stockholm Europe/Vienna Europe/Warsaw Europe/Zurich Europe/Athens Europe/Helsinki "
        "America/New_York America/Chicago America/Denver America/Los_Angeles Asia/Dubai Asia/Kolkata "
        "Asia/Shanghai Asia/Tokyo",
        ' ');
}

tarn::TimeZone Zone::forYear(int year) const
{
    if (name_ == system)
        return tarn::TimeZone::currentForYear(year);
    if (name_ == "UTC")
        return tarn::TimeZone();
    tarn::TimeZone zone = zoneNamed(name_, std::max(year, firstYearWithDaylight));
    if (year < firstYearWithDaylight)
        zone.SetDSTOffset(0);
    return zone;
}

tarn::Time Zone::toTime(Local local) const
{
    const tarn::TimeZone::Instants instants = forYear(yearOf(local)).instantsOf(local);
    return instants.count == 0 ? instants.later : instants.earlier;
}

Local Zone::toLocal(const tarn::Time& time) const
{
    const tarn::TimeZone zone = forYear(yearOf(time));
    return time + zone.GetStandardOffset() + (zone.InDaylightTime(time) ? zone.GetDSTOffset() : 0);
}
} // namespace planner
