#include "Appointment.h"

#include <tarn/Fields.h>

namespace planner {
// What it takes to read objects of a class back: their class is found by its name.
static const tarn::SerializableImpl<Category> categoryRegistration;
static const tarn::SerializableImpl<Appointment> appointmentRegistration;

namespace {
// What is written and read alike.
template <class Any> auto plain(Any& event)
{
    return tarn::fields(event.uid, event.subject, event.place, event.note, event.allDay, event.start, event.end,
                        event.zone);
}

void write(tarn::OutputStream& out, const Recurrence& rule)
{
    out << rule.frequency << rule.interval << rule.count << rule.until.has_value() << rule.until.value_or(0)
        << rule.weekdays << rule.weekStart;
}

Recurrence readRecurrence(tarn::InputStream& in)
{
    Recurrence rule;
    bool hasEnd = false;
    Local end = 0;
    in >> rule.frequency >> rule.interval >> rule.count >> hasEnd >> end >> rule.weekdays >> rule.weekStart;
    if (hasEnd)
        rule.until = end;
    return rule;
}
} // namespace

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
    out << plain(event_) << event_.recurrence.has_value();
    if (event_.recurrence)
        write(out, *event_.recurrence);
    out << static_cast<int>(event_.exceptions.size());
    for (const Local exception : event_.exceptions)
        out << exception;
}

void Appointment::deserialize(tarn::InputStream& in)
{
    bool repeats = false;
    tarn::readOptional(in, category_);
    in >> plain(event_) >> repeats;
    event_.category = category_ ? category_->name() : std::wstring();
    if (repeats)
        event_.recurrence = readRecurrence(in);
    // The number may be damaged: room is made only for what is there.
    for (int left = in.readInt32(); left > 0; --left) {
        Local exception;
        in >> exception;
        event_.exceptions.push_back(exception);
    }
    event_.validate();
}
} // namespace planner
