#include "Document.h"

#include <tarn/StreamValues.h>

#include <algorithm>
#include <tuple>

namespace planner {
static const tarn::SerializableImpl<Document> documentRegistration;

namespace {
void collect(const AppointmentPtr& appointment, Day first, Day last, const Zone& zone, std::vector<Occurrence>& found)
{
    const Event& event = appointment->event();
    const bool floats = event.allDay || event.zone == Zone::system;
    const Zone own(floats ? Zone::system : event.zone);
    const auto shown = [&](Local local) { return floats ? local : zone.toLocal(own.toTime(local)); };
    // Clocks are at most a day apart, and it may have begun long before.
    const Local from = midnightOf(first - 1) - (event.end - event.start), to = midnightOf(last + 2);
    for (const Local start : event.starts(from, to)) {
        const Occurrence occurrence{appointment, shown(start), shown(start + (event.end - event.start)), start};
        if (occurrence.start < midnightOf(last + 1) &&
            (occurrence.touches(first) || occurrence.start >= midnightOf(first)))
            found.push_back(occurrence);
    }
}
} // namespace

bool Occurrence::touches(Day day) const
{
    const bool beginsThere = dayOf(start) == day;
    return beginsThere || (start < midnightOf(day) && end > midnightOf(day));
}

void Document::serialize(tarn::OutputStream& out) const { out << categories_ << appointments_; }

void Document::deserialize(tarn::InputStream& in)
{
    in >> categories_ >> appointments_;
    buildIndexes();
}

std::vector<Event> Document::events() const
{
    std::vector<Event> events;
    for (const AppointmentPtr& appointment : appointments_)
        events.push_back(appointment->event());
    return events;
}

bool Document::put(const Event& event)
{
    event.validate();
    const AppointmentPtr appointment(new Appointment(event, categoryNamed(event.category)));
    const auto same = byUID_.find(event.uid);
    const bool isNew = same == byUID_.end();
    if (isNew) {
        appointments_.push_back(appointment);
        byUID_.emplace(event.uid, appointments_.size() - 1);
    } else {
        appointments_[same->second] = appointment;
    }
    isModified_ = true;
    return !isNew;
}

void Document::remove(const AppointmentPtr& appointment)
{
    std::erase(appointments_, appointment);
    buildIndexes();
    isModified_ = true;
}

std::vector<Occurrence> Document::occurrences(Day first, Day last, const Zone& zone) const
{
    std::vector<Occurrence> found;
    for (const AppointmentPtr& appointment : appointments_)
        collect(appointment, first, last, zone, found);
    std::ranges::stable_sort(found, {}, [](const Occurrence& occurrence) {
        return std::tuple(dayOf(occurrence.start), !occurrence.event().allDay, occurrence.start);
    });
    return found;
}

CategoryPtr Document::categoryNamed(const std::wstring& name)
{
    if (name.empty())
        return nullptr;
    if (const auto same = byName_.find(name); same != byName_.end())
        return categories_[same->second];
    categories_.push_back(CategoryPtr(new Category(name, static_cast<int>(categories_.size()))));
    byName_.emplace(name, categories_.size() - 1);
    return categories_.back();
}

void Document::buildIndexes()
{
    byUID_.clear();
    byName_.clear();
    for (std::size_t i = 0; i < appointments_.size(); ++i)
        byUID_.emplace(appointments_[i]->event().uid, i);
    for (std::size_t i = 0; i < categories_.size(); ++i)
        byName_.emplace(categories_[i]->name(), i);
}
} // namespace planner
