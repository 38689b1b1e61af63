#pragma once

#include "Event.h"

#include <tarn/Archive.h>

#include <string>

namespace planner {
/// The base of what a document is made of. Its virtual destructor lets a pointer to it destroy any of them.
class Item : public tarn::Serializable {
public:
    virtual ~Item() = default;
};

/// What appointments have in common that belong together; they share the object, and a colour in the sheet.
class Category final : public Item {
public:
    Category() = default;
    Category(std::wstring name, int colour) : name_(std::move(name)), colour_(colour) {}

    void serialize(tarn::OutputStream& out) const override;
    void deserialize(tarn::InputStream& in) override;

    const std::wstring& name() const { return name_; }
    int colour() const { return colour_; } ///< A number for the sheet's palette, from 0.

private:
    std::wstring name_;
    int colour_ = 0;
};
using CategoryPtr = tarn::ref_ptr<Category>;

/// An event in a document.
class Appointment final : public Item {
public:
    Appointment() = default;
    /// An empty category stands for none.
    Appointment(Event event, CategoryPtr category);

    void serialize(tarn::OutputStream& out) const override;
    /// Throws Exception for values that no appointment can have.
    void deserialize(tarn::InputStream& in) override;

    const Event& event() const { return event_; }
    const CategoryPtr& category() const { return category_; }

private:
    Event event_;
    CategoryPtr category_;
};
using AppointmentPtr = tarn::ref_ptr<Appointment>;
} // namespace planner
