#pragma once

#include "Appointment.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace planner {
/// One time that an appointment takes place, by the clock of the planner's zone.
struct Occurrence {
    AppointmentPtr appointment;
    Local start, end;
    Local original; ///< The start by the appointment's own clock.

    const Event& event() const { return appointment->event(); }
    bool touches(Day day) const;
};

/// The appointments of a file and their categories. No two appointments have the same UID.
class Document final : public Item {
public:
    void serialize(tarn::OutputStream& out) const override;
    void deserialize(tarn::InputStream& in) override;

    const std::vector<AppointmentPtr>& appointments() const { return appointments_; }
    const std::vector<CategoryPtr>& categories() const { return categories_; }
    std::vector<Event> events() const;

    /// Adds an event, or replaces the appointment that has its UID; true when it replaced one. Throws
    /// Exception with a sentence for the user when the event is not valid.
    bool put(const Event& event);
    void remove(const AppointmentPtr& appointment);

    /// What touches the days, in the order of the days; all-day ones come first.
    std::vector<Occurrence> occurrences(Day first, Day last, const Zone& zone) const;

    bool isModified() const { return isModified_; }
    void setModified(bool isModified) { isModified_ = isModified; }

private:
    using Index = std::unordered_map<std::wstring, std::size_t>;

    CategoryPtr categoryNamed(const std::wstring& name);
    void buildIndexes();

    std::vector<AppointmentPtr> appointments_;
    std::vector<CategoryPtr> categories_;
    Index byUID_, byName_; // Where each stands: a search through all would make an import's time grow as its square.
    bool isModified_ = false;
};
using DocumentPtr = tarn::ref_ptr<Document>;
} // namespace planner
