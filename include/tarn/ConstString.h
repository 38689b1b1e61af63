#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarn {
/// A view of text: a pointer and a length. Owns nothing and is valid as long as the text it points to.
///
/// It is what StringHelper::convert returns when nothing has to be converted, so that code written for
/// both character types can call convert for either.
template <class Ch, class Traits = std::char_traits<Ch>> class ConstString {
public:
    /// As a length: up to the terminating zero.
    static constexpr unsigned wholeText = ~0u;

    constexpr ConstString() = default;
    /// A null `text` is the empty text.
    constexpr ConstString(const Ch* text) : text_(text), length_(text ? wholeText : 0) {}
    /// The first `length` characters of `text`, or with `wholeText` all of it.
    constexpr ConstString(const Ch* text, unsigned length) : text_(text), length_(length) {}

    /// Null for a null text; need not be terminated.
    constexpr const Ch* data() const { return text_; }
    /// The length in characters as it was given: may be `wholeText`.
    constexpr unsigned storedLength() const { return length_; }
    /// The length in characters, counted when it was given as `wholeText`; 0 for a null text.
    constexpr unsigned length() const
    {
        if (!text_)
            return 0;
        return length_ != wholeText ? length_ : static_cast<unsigned>(Traits::length(text_));
    }

    /// The text, as the standard's view.
    constexpr operator std::basic_string_view<Ch, Traits>() const
    {
        return std::basic_string_view<Ch, Traits>(text_ ? text_ : &none, length());
    }

private:
    static constexpr Ch none = Ch();

    const Ch* text_ = nullptr;
    unsigned length_ = 0;
};
} // namespace tarn
