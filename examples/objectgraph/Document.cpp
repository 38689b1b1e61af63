#include "Document.h"

#include <tarn/StreamValues.h>

#include <ostream>

namespace document {
// What it takes to read objects of a class back: their class is found by its name.
static const tarn::SerializableImpl<Style> styleRegistration;
static const tarn::SerializableImpl<Section> sectionRegistration;
static const tarn::SerializableImpl<Paragraph> paragraphRegistration;

void Style::serialize(tarn::OutputStream& out) const { out << font_ << size_; }
void Style::deserialize(tarn::InputStream& in) { in >> font_ >> size_; }

// The archive writes each style once, and for the parent, which is being written already, a reference.
void Element::serialize(tarn::OutputStream& out) const { out << text_ << style_ << parent_ << parts_; }

void Element::deserialize(tarn::InputStream& in) { in >> text_ >> style_ >> parent_ >> parts_; }

void Element::set(const std::string& text, const tarn::ref_ptr<Style>& style)
{
    text_ = text;
    style_ = style;
}

void Element::add(const ElementPtr& parent, const ElementPtr& child)
{
    child->parent_ = parent;
    parent->parts_.push_back(child);
}

void Element::print(std::ostream& out, int depth) const
{
    out << std::string(static_cast<std::size_t>(depth) * 2 + 2, ' ') << kind() << " \"" << text_ << "\", "
        << style_->font() << ' ' << style_->size() << " (shared by " << style_.getCount() << ")";
    if (const ElementPtr parent = parent_.lock())
        out << ", in \"" << parent->text() << '"';
    out << '\n';
    for (const ElementPtr& part : parts_)
        part->print(out, depth + 1);
}
} // namespace document
