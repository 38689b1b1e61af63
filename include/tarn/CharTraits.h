#pragma once

#include <compare>
#include <cstddef>
#include <string>

namespace tarn {
/// Character traits without regard to case: 'A' to 'Z' equal 'a' to 'z'. No other character is folded,
/// whatever the locale, so that the order of a table does not depend on the machine that reads it.
template <class Ch> struct char_traits_nc : std::char_traits<Ch> {
    /// The lower-case letter for 'A' to 'Z', else `c` itself.
    static constexpr Ch fold(Ch c) { return c >= Ch('A') && c <= Ch('Z') ? static_cast<Ch>(c + 32) : c; }

    /// Equal texts need not be the same ones.
    using comparison_category = std::weak_ordering;

    /// Compare the folded characters.
    ///@{
    static constexpr bool eq(const Ch& a, const Ch& b) { return fold(a) == fold(b); }
    static constexpr bool lt(const Ch& a, const Ch& b) { return std::char_traits<Ch>::lt(fold(a), fold(b)); }

    static constexpr bool eq_int_type(typename std::char_traits<Ch>::int_type a,
                                      typename std::char_traits<Ch>::int_type b)
    {
        using Exact = std::char_traits<Ch>;
        const bool isEnd = Exact::eq_int_type(a, Exact::eof()) || Exact::eq_int_type(b, Exact::eof());
        return isEnd ? Exact::eq_int_type(a, b) : eq(Exact::to_char_type(a), Exact::to_char_type(b));
    }

    static constexpr int compare(const Ch* a, const Ch* b, std::size_t n)
    {
        for (; n; --n, ++a, ++b) {
            if (lt(*a, *b))
                return -1;
            if (lt(*b, *a))
                return 1;
        }
        return 0;
    }
    ///@}

    /// The first of the `n` characters of `s` that equals `c`, or null.
    static constexpr const Ch* find(const Ch* s, std::size_t n, const Ch& c)
    {
        for (; n; --n, ++s)
            if (eq(*s, c))
                return s;
        return nullptr;
    }
};
} // namespace tarn
