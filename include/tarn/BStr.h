#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <concepts>
#include <cstddef>
#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tarn {
class BStr;

namespace detail {
/// Wide text of any kind but a BStr: pointers, literals, standard strings and views, the library's strings.
template <class T>
concept WideText = std::convertible_to<const T&, std::wstring_view> && !std::same_as<T, std::nullptr_t>;

/// What compares as text with one BStr or two.
template <class A, class B>
concept BStrPair = (std::same_as<A, BStr> && (std::same_as<B, BStr> || WideText<B>)) ||
                   (WideText<A> && std::same_as<B, BStr>);
} // namespace detail

/// Owns a BSTR, the text type of automation: counted wide text, which may contain zeros. Usable wherever a
/// BSTR is expected; null is the empty text.
///
/// Narrow text is converted in the system's ANSI code page. Throws BadAllocation, and WindowsError when
/// narrow text cannot be converted.
class TARN_API BStr {
public:
    BStr() noexcept = default;
    /// A copy of the text. Null gives a null BSTR, "" an allocated one of no characters.
    ///@{
    BStr(const wchar_t* text);
    BStr(const wchar_t* text, unsigned lengthInChars);
    BStr(const char* text);
    BStr(const BasicString<wchar_t>& text);
    BStr(const BasicString<char>& text);
    BStr(const BStr& other);
    ///@}
    /// Takes the text over and leaves null.
    BStr(BStr&& other) noexcept : text_(other.detach()) {}
    /// Frees the text held before.
    BStr& operator=(BStr other) noexcept
    {
        swap(other);
        return *this;
    }
    ~BStr() { SysFreeString(text_); }

    /// Lent, not given.
    ///@{
    operator BSTR() const noexcept { return text_; }
    BSTR get() const noexcept { return text_; }
    ///@}
    /// A text is no truth value, though a pointer is: ask empty().
    explicit operator bool() const = delete;
    /// It is freed by this object: detach() it first.
    friend void WINAPI SysFreeString(const BStr& text) = delete;
    /// In characters.
    unsigned length() const noexcept { return SysStringLen(text_); }
    /// True for null, too.
    bool empty() const noexcept { return length() == 0; }
    /// Zeros in the text included.
    ///@{
    BasicString<wchar_t> toString() const;
    /// The same, lent.
    std::wstring_view view() const noexcept { return {text_ ? text_ : L"", length()}; }
    BasicString<char> toAString() const;
    ///@}

    /// Equal lengths and equal characters; null equals "". The other one may be narrow, too.
    bool operator==(const BStr& other) const noexcept;

    /// Adds wide text at the end, a BStr's own, too. Throw BadAllocation, the text being as it was then.
    ///@{
    BStr& append(std::wstring_view text);
    BStr& operator+=(std::wstring_view text) { return append(text); }
    BStr& operator+=(const std::wstring& text) { return append(text); }
    BStr& operator+=(const wchar_t* text) { return append(text ? text : std::wstring_view()); }
    BStr& operator+=(const BStr& text) { return append(text.view()); }
    ///@}

    /// Takes ownership of `text`.
    void attach(BSTR text) noexcept;
    /// The caller frees the result.
    BSTR detach() noexcept { return std::exchange(text_, nullptr); }
    /// Frees what it holds; the address is for calls that hand out a BSTR.
    BSTR* put() noexcept;
    /// Exchanges the texts; both stay where they are.
    void swap(BStr& other) noexcept { std::swap(text_, other.text_); }

private:
    BSTR text_ = nullptr;
};
TARN_LAYOUT(BStr, 4, 8); // A BSTR.

namespace detail {
/// A null pointer is the empty text.
template <class T> std::wstring_view wideView(const T& text)
{
    if constexpr (std::same_as<T, BStr>)
        return text.view();
    else if constexpr (std::is_pointer_v<T>)
        return text ? std::wstring_view(text) : std::wstring_view();
    else
        return text;
}
} // namespace detail

/// Compare texts, character by character, in both orders. Each operator stands for itself, because the standard's
/// function objects would compare pointers where they find but the one that stands for all.
///@{
template <class A, class B>
requires detail::BStrPair<A, B>
bool operator==(const A& a, const B& b) { return detail::wideView(a) == detail::wideView(b); }
template <class A, class B>
requires detail::BStrPair<A, B>
auto operator<=>(const A& a, const B& b) { return detail::wideView(a) <=> detail::wideView(b); }
template <class A, class B>
requires detail::BStrPair<A, B>
bool operator<(const A& a, const B& b) { return (a <=> b) < 0; }
template <class A, class B>
requires detail::BStrPair<A, B>
bool operator>(const A& a, const B& b) { return (a <=> b) > 0; }
template <class A, class B>
requires detail::BStrPair<A, B>
bool operator<=(const A& a, const B& b) { return (a <=> b) <= 0; }
template <class A, class B>
requires detail::BStrPair<A, B>
bool operator>=(const A& a, const B& b) { return (a <=> b) >= 0; }
///@}
} // namespace tarn

/// Equal to the hash of a standard string or view of the same text.
template <> struct std::hash<tarn::BStr> {
    /// With `std::equal_to<>` a table finds what is given as a pointer or a view.
    using is_transparent = void;
    /// The hash of any wide text.
    template <class Text> std::size_t operator()(const Text& text) const noexcept
    {
        return std::hash<std::wstring_view>()(tarn::detail::wideView(text));
    }
};

/// What a BStr and a pointer have in common is the BStr, for the standard's algorithms over ranges.
template <class Pointer>
requires std::same_as<std::remove_const_t<std::remove_pointer_t<Pointer>>, wchar_t>
struct std::common_type<tarn::BStr, Pointer> {
    /// The one that owns a text.
    using type = tarn::BStr;
};
/// The same the other way round.
template <class Pointer>
requires std::same_as<std::remove_const_t<std::remove_pointer_t<Pointer>>, wchar_t>
struct std::common_type<Pointer, tarn::BStr> {
    /// The one that owns a text.
    using type = tarn::BStr;
};
