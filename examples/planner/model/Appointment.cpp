#include "Appointment.h"

#include <tarn/StreamValues.h>

namespace planner {
// What it takes to read objects of a class back: their class is found by its name.
static const tarn::SerializableImpl<Category> categoryRegistration;
static const tarn::SerializableImpl<Appointment> appointmentRegistration;

// A rule has room for its end whether it has one or not.
static tarn::OutputStream& operator<<(tarn::OutputStream& out, const Recurrence& rule)
{
    return out << rule.frequency << rule.interval << rule.count << rule.until.has_value() << rule.until.value_or(0)
               << rule.weekdays << rule.weekStart;
}

static tarn::InputStream& operator>>(tarn::InputStream& in, Recurrence& rule)
{
    bool hasEnd = false;
    Local end = 0;
    in >> rule.frequency >> rule.interval >> rule.count >> hasEnd >> end >> rule.weekdays >> rule.weekStart;
    if (hasEnd)
        rule.until = end;
    return in;
}

// What is written and read alike; the category's name is that of the object.
template <class AnyEvent> static auto fieldsOf(AnyEvent& event)
{
    return tarn::fields(event.uid, event.subject, event.place, event.note, event.allDay, event.start, event.end,
                        event.zone, event.recurrence, event.exceptions);
}

void Category::serialize(tarn::OutputStream& out) const { out << tarn::fields(name_, colour_); }
void Category::deserialize(tarn::InputStream& in) { in >> tarn::fields(name_, colour_); }

Appointment::Appointment(Event event, CategoryPtr category) : event_(std::move(event)), category_(std::move(category))
{
    event_.category = category_ ? category_->name() : std::wstring();
}

// The archive writes each category once, and a reference where it comes again.
void Appointment::serialize(tarn::OutputStream& out) const
{
    tarn::writeOptional(out, category_);
    out << fieldsOf(event_);
}

void Appointment::deserialize(tarn::InputStream& in)
{
    tarn::readOptional(in, category_);
    in >> fieldsOf(event_);
    event_.category = category_ ? category_->name() : std::wstring();
    event_.validate();
}
} // namespace planner
