#pragma once

#include <tarn/Archive.h>
#include <tarn/weak_ref.h>

#include <iosfwd>
#include <string>
#include <vector>

// A document: a tree of sections and paragraphs that know their parents and share their styles.

namespace document {
class Style final : public tarn::Serializable {
public:
    Style() = default;
    Style(const std::string& font, int size) : font_(font), size_(size) {}

    void serialize(tarn::OutputStream& out) const override;
    void deserialize(tarn::InputStream& in) override;

    const std::string& font() const { return font_; }
    int size() const { return size_; }

private:
    std::string font_;
    int size_ = 0;
};

class Element;
using ElementPtr = tarn::ref_ptr<Element>;

/// What sections and paragraphs have in common. With its virtual destructor, the last `ElementPtr` destroys
/// each of them properly.
class Element : public tarn::Serializable {
public:
    virtual ~Element() = default;

    void serialize(tarn::OutputStream& out) const override;
    void deserialize(tarn::InputStream& in) override;

    virtual const char* kind() const = 0;
    const std::string& text() const { return text_; }
    void set(const std::string& text, const tarn::ref_ptr<Style>& style);

    /// Makes `child` the last part of `parent`.
    static void add(const ElementPtr& parent, const ElementPtr& child);
    /// The tree below, with the number of pointers that share each style and whether the parents are right.
    void print(std::ostream& out, int depth = 0) const;

private:
    std::string text_;
    tarn::ref_ptr<Style> style_;
    tarn::weak_ref<Element> parent_; // Elements hold their parts, and do not hold their parents.
    std::vector<ElementPtr> parts_;
};

class Section final : public Element {
public:
    const char* kind() const override { return "section"; }
};

class Paragraph final : public Element {
public:
    const char* kind() const override { return "paragraph"; }
};

template <class T> ElementPtr make(const std::string& text, const tarn::ref_ptr<Style>& style)
{
    ElementPtr element(new T);
    element->set(text, style);
    return element;
}
} // namespace document
