#include "Event.h"

#include <tarn/Exception.h>
#include <tarn/GUID.h>

#include <objbase.h>

#include <algorithm>

namespace planner {
namespace {
Local latest()
{
    static const Local end = midnightOf(Reckoning().lastOfMonth(lastYear, 11) + 1);
    return end;
}
} // namespace

std::vector<Local> Event::starts(Local from, Local to) const
{
    std::vector<Local> found;
    if (recurrence)
        found = recurrence->starts(start, from, to);
    else if (start >= from && start < to)
        found.push_back(start);
    std::erase_if(found, [this](Local at) { return std::ranges::find(exceptions, at) != exceptions.end(); });
    return found;
}

bool Event::takesPlace() const
{
    const bool hasEnd = recurrence && (recurrence->count != 0 || recurrence->until);
    return !hasEnd || !starts(start, latest()).empty();
}

void Event::validate() const
{
    if (subject.empty())
        throw tarn::Exception("The subject is missing.");
    if (end < start)
        throw tarn::Exception("It ends before it begins.");
    static const Local earliest = midnightOf(Reckoning().firstOfMonth(firstYear, 0));
    if (start < earliest || end > latest())
        throw tarn::Exception("It lies outside of the years that can be shown.");
    if (allDay && (end == start || timeOfDay(start) != 0 || timeOfDay(end) != 0))
        throw tarn::Exception("An all-day appointment lasts whole days.");
    if (!Zone::isKnown(zone))
        throw tarn::Exception("The time zone \"" + zone + "\" is not known");
    if (recurrence && !recurrence->isValid())
        throw tarn::Exception("The rule of repetition is not valid.");
}

std::wstring newUID()
{
    GUID guid;
    tarn::HRESULTHolder::throwOnError(CoCreateGuid(&guid), "Can't create a GUID");
    return tarn::toWString(guid);
}
} // namespace planner
