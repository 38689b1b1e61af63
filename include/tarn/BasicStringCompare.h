#pragma once

// How a BasicString is compared and hashed; included by BasicString.h.

#include <tarn/BasicString.h>

#include <compare>

namespace tarn {
/// Compare texts, in both orders, whatever the other one is: a BasicString, a standard string, a view of one, a
/// pointer (null: the empty text) or a literal. Each operator stands for itself, because the standard's function
/// objects would compare pointers where they find but the one that stands for all.
///@{
template <class Ch, class Traits, class Alloc, detail::Viewable<Ch, Traits> Text>
bool operator==(const BasicString<Ch, Traits, Alloc>& a, const Text& b)
{
    return detail::viewOf<Ch, Traits>(a) == detail::viewOf<Ch, Traits>(b);
}

template <class Ch, class Traits, class Alloc, detail::Viewable<Ch, Traits> Text>
auto operator<=>(const BasicString<Ch, Traits, Alloc>& a, const Text& b)
{
    return detail::viewOf<Ch, Traits>(a) <=> detail::viewOf<Ch, Traits>(b);
}
template <class Ch, class Traits, class Alloc, detail::OtherViewable<BasicString<Ch, Traits, Alloc>> Text>
auto operator<=>(const Text& a, const BasicString<Ch, Traits, Alloc>& b)
{
    return detail::viewOf<Ch, Traits>(a) <=> detail::viewOf<Ch, Traits>(b);
}

template <class Ch, class Traits, class Alloc, detail::Viewable<Ch, Traits> Text>
bool operator<(const BasicString<Ch, Traits, Alloc>& a, const Text& b)
{
    return (a <=> b) < 0;
}
template <class Ch, class Traits, class Alloc, detail::OtherViewable<BasicString<Ch, Traits, Alloc>> Text>
bool operator<(const Text& a, const BasicString<Ch, Traits, Alloc>& b)
{
    return (a <=> b) < 0;
}

template <class Ch, class Traits, class Alloc, detail::Viewable<Ch, Traits> Text>
bool operator>(const BasicString<Ch, Traits, Alloc>& a, const Text& b)
{
    return (a <=> b) > 0;
}
template <class Ch, class Traits, class Alloc, detail::OtherViewable<BasicString<Ch, Traits, Alloc>> Text>
bool operator>(const Text& a, const BasicString<Ch, Traits, Alloc>& b)
{
    return (a <=> b) > 0;
}

template <class Ch, class Traits, class Alloc, detail::Viewable<Ch, Traits> Text>
bool operator<=(const BasicString<Ch, Traits, Alloc>& a, const Text& b)
{
    return (a <=> b) <= 0;
}
template <class Ch, class Traits, class Alloc, detail::OtherViewable<BasicString<Ch, Traits, Alloc>> Text>
bool operator<=(const Text& a, const BasicString<Ch, Traits, Alloc>& b)
{
    return (a <=> b) <= 0;
}

template <class Ch, class Traits, class Alloc, detail::Viewable<Ch, Traits> Text>
bool operator>=(const BasicString<Ch, Traits, Alloc>& a, const Text& b)
{
    return (a <=> b) >= 0;
}
template <class Ch, class Traits, class Alloc, detail::OtherViewable<BasicString<Ch, Traits, Alloc>> Text>
bool operator>=(const Text& a, const BasicString<Ch, Traits, Alloc>& b)
{
    return (a <=> b) >= 0;
}
///@}
} // namespace tarn

/// Equal to the hash of a standard string or view of the same text.
template <class Ch, class Alloc> struct std::hash<tarn::BasicString<Ch, std::char_traits<Ch>, Alloc>> {
    /// With `std::equal_to<>` a table finds what is given as a pointer or a view.
    using is_transparent = void;
    /// Takes what makes a view.
    std::size_t operator()(std::basic_string_view<Ch> text) const noexcept
    {
        return std::hash<std::basic_string_view<Ch>>()(text);
    }
};

/// What a string and a pointer have in common is the string, for the standard's algorithms over ranges.
template <class Ch, class Traits, class Alloc, class Pointer>
requires std::same_as<std::remove_const_t<std::remove_pointer_t<Pointer>>, Ch>
struct std::common_type<tarn::BasicString<Ch, Traits, Alloc>, Pointer> {
    /// The string.
    using type = tarn::BasicString<Ch, Traits, Alloc>;
};
/// The same the other way round.
template <class Ch, class Traits, class Alloc, class Pointer>
requires std::same_as<std::remove_const_t<std::remove_pointer_t<Pointer>>, Ch>
struct std::common_type<Pointer, tarn::BasicString<Ch, Traits, Alloc>> {
    /// The string.
    using type = tarn::BasicString<Ch, Traits, Alloc>;
};
