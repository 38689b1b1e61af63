#pragma once

#include <tarn/CharTraits.h>
#include <tarn/ConstString.h>
#include <tarn/Export.h>
#include <tarn/StringHelper.h>
#include <tarn/Windows.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tarn {
/// Narrow text in the given code page (`CP_UTF8`, `CP_OEMCP`, ...) as wide text.
/// Throws WindowsError "Can't convert multi byte string to unicode", and BadAllocation.
///@{
TARN_API BasicString<wchar_t> a2w(const char* s, unsigned codePage);
inline BasicString<wchar_t> a2w(const std::string& s, unsigned codePage);
///@}

namespace detail {
template <class T>
concept Character = std::same_as<T, char> || std::same_as<T, wchar_t>;

template <class T>
concept Number = std::integral<T> && !std::same_as<T, bool> && !Character<T>;

/// What a standard view of such characters can be made of: pointers, standard strings and views, the library's.
template <class T, class Ch, class Traits>
concept Viewable =
    std::convertible_to<const T&, std::basic_string_view<Ch, Traits>> && !std::same_as<T, std::nullptr_t>;

/// The same without the string itself and what is derived from it.
template <class T, class String>
concept OtherViewable =
    Viewable<T, typename String::value_type, typename String::traits_type> && !std::derived_from<T, String>;

/// What gives a pointer to terminated text: a pointer or a string.
template <class T, class Ch, class Traits, class Alloc>
concept TerminatedText =
    std::convertible_to<const T&, const Ch*> || std::derived_from<T, std::basic_string<Ch, Traits, Alloc>>;

/// `std::filesystem::path`, without its header.
template <class T>
concept FilesystemPath = std::same_as<decltype(T::preferred_separator), const typename T::value_type>;

/// A null pointer is the empty text.
template <class Ch, class Traits, Viewable<Ch, Traits> T> std::basic_string_view<Ch, Traits> viewOf(const T& text)
{
    if constexpr (std::is_convertible_v<const T&, const Ch*> && !std::is_class_v<T>) {
        const Ch* const s = text;
        return s ? std::basic_string_view<Ch, Traits>(s) : std::basic_string_view<Ch, Traits>();
    } else {
        return text;
    }
}
} // namespace detail

/// The library's string: a standard string that converts between narrow and wide text, reads and writes
/// numbers, trims, changes case, takes paths apart and fills in templates.
///
/// It adds no data, so it can be passed and sliced wherever the standard string is expected. Members
/// return new strings and leave the object as it is, unless their name begins with "make". Conversions
/// between the widths throw as StringHelper::convert says.
template <class Ch, class Traits, class Alloc> class BasicString : public std::basic_string<Ch, Traits, Alloc> {
    using Base = std::basic_string<Ch, Traits, Alloc>;
    using View = std::basic_string_view<Ch, Traits>;
    using Helper = StringHelper<Ch>;

public:
    /// The character type of the other width.
    using OtherCh = std::conditional_t<std::is_same_v<Ch, char>, wchar_t, char>;
    using Base::npos;
    using typename Base::size_type;

    BasicString() = default;
    using Base::Base;
    /// Standard strings convert without being asked.
    ///@{
    BasicString(const Base& text) : Base(text) {}
    BasicString(Base&& text) noexcept : Base(std::move(text)) {}
    ///@}
    /// A null `s` is the empty text.
    ///@{
    BasicString(const Ch* s) : BasicString(ConstString<Ch>(s)) {}
    /// `n` characters from `s` on, zeros among them, too.
    BasicString(const Ch* s, size_type n) : Base(s, n) {}
    BasicString(const ConstString<Ch>& text) { assign(text); }
    ///@}
    /// Converts from the other width: narrow from wide in the system's ANSI code page, wide from narrow
    /// in the runtime library's current locale.
    ///@{
    BasicString(const OtherCh* s) : Base(converted(Helper::convert(s))) {}
    BasicString(const OtherCh* s, size_type n) : Base(converted(Helper::convert(s, static_cast<unsigned>(n)))) {}
    explicit BasicString(const std::basic_string<OtherCh>& s) : BasicString(s.data(), s.size()) {}
    explicit BasicString(std::basic_string_view<OtherCh> s) : BasicString(s.data(), s.size()) {}
    ///@}
    /// As fromInt().
    ///@{
    BasicString(int value, int radix) { makeInt(value, radix); }
    template <detail::Number Value, detail::Number Radix> BasicString(Value value, Radix radix)
    {
        makeNumber(value, static_cast<int>(radix));
    }
    ///@}
    /// `n` times the character `c`, which may be one of the other width.
    template <std::integral Count, detail::Character C> BasicString(Count n, C c)
    {
        repeat(static_cast<size_type>(n), c);
    }
    /// The count comes first.
    template <detail::Character C, std::integral Count> BasicString(C c, Count n) = delete;

    using Base::operator=;
    /// As the constructors, and assign().
    ///@{
    BasicString& operator=(const ConstString<Ch>& text) { return assign(text); }
    BasicString& operator=(const Ch* s) { return assign(s); }
    BasicString& operator=(const OtherCh* s) { return *this = BasicString(s); }
    BasicString& operator=(const std::basic_string<OtherCh>& s) { return *this = BasicString(s); }
    template <std::same_as<std::basic_string_view<OtherCh>> Other> BasicString& operator=(Other s)
    {
        return *this = BasicString(s);
    }
    ///@}

    using Base::assign;
    /// A null text is the empty text.
    ///@{
    BasicString& assign(const Ch* s) { return assign(ConstString<Ch>(s)); }
    /// `n` characters from `s` on, zeros among them, too.
    BasicString& assign(const Ch* s, size_type n)
    {
        Base::assign(s, n);
        return *this;
    }
    BasicString& assign(const ConstString<Ch>& text)
    {
        Base::assign(text.data() ? text.data() : Helper::Device(), text.length());
        return *this;
    }
    ///@}

    /// c_str(): valid until the string changes.
    operator const Ch*() const { return this->c_str(); }
    /// A text is no truth value, though a pointer is: ask empty().
    ///@{
    explicit operator bool() const = delete;
    bool operator==(std::nullptr_t) const = delete;
    ///@}
    /// For `std::filesystem::path(text)`; narrow text is read in the system's ANSI code page, as by the library's
    /// members that take names of files.
    template <detail::FilesystemPath Path> explicit operator Path() const
    {
        if constexpr (std::is_same_v<Ch, char>)
            return Path(typename Path::string_type(a2w(this->c_str(), 0)));
        else
            return Path(typename Path::string_type(this->data(), this->size()));
    }

    /// No index is checked. A template, because with the conversion above an index of any other type than size_type
    /// would be ambiguous.
    ///@{
    template <std::integral Index> typename Base::reference operator[](Index i)
    {
        return Base::operator[](static_cast<size_type>(i));
    }
    template <std::integral Index> typename Base::const_reference operator[](Index i) const
    {
        return Base::operator[](static_cast<size_type>(i));
    }
    ///@}

    /// A new string of both texts. A null text is the empty one.
    ///@{
    BasicString operator+(const BasicString& s) const { return joined(s.data(), s.size()); }
    BasicString operator+(const Base& s) const { return joined(s.data(), s.size()); }
    BasicString operator+(Base&& s) const { return joined(s.data(), s.size()); }
    BasicString operator+(const Ch* s) const { return joined(s, s ? Traits::length(s) : 0); }
    BasicString operator+(Ch c) const { return joined(&c, 1); }
    friend BasicString operator+(const Ch* a, const BasicString& b) { return BasicString(a).append(b); }
    friend BasicString operator+(Ch a, const BasicString& b) { return BasicString(1, a).append(b); }
    friend BasicString operator+(const Base& a, const BasicString& b) { return BasicString(a).append(b); }
    friend BasicString operator+(Base&& a, const BasicString& b) { return BasicString(std::move(a)).append(b); }
    ///@}
    using Base::operator+=;
    /// Appends; a null text is the empty one.
    BasicString& operator+=(const Ch* s)
    {
        this->append(s, s ? Traits::length(s) : 0);
        return *this;
    }

    /// The first or last `n` characters, all of them when there are fewer.
    ///@{
    BasicString left(unsigned n) const { return BasicString(this->substr(0, n)); }
    BasicString right(unsigned n) const
    {
        return BasicString(this->substr(this->size() - std::min<size_type>(n, this->size())));
    }
    ///@}
    /// Throws `std::out_of_range` when `start` lies behind the end.
    BasicString mid(unsigned start, unsigned n = static_cast<unsigned>(npos)) const
    {
        return BasicString(this->substr(start, n));
    }

    /// The `index`-th piece (from 0) of the text split at each `delimiter`; empty when there are fewer, and for an
    /// empty delimiter.
    ///@{
    BasicString substring(const Ch* delimiter, int index) const;
    BasicString substring(const Base& delimiter, int index) const { return substring(delimiter.c_str(), index); }
    ///@}
    /// The position of the first character from `start` on that is in `set`; `npos` when there is none.
    ///@{
    size_type findOneOf(const Ch* set, unsigned start = 0) const { return this->find_first_of(viewOf(set), start); }
    size_type findOneOf(const Base& set, unsigned start = 0) const { return findOneOf(set.c_str(), start); }
    ///@}
    /// Compare character by character; the empty text is found everywhere.
    ///@{
    bool contains(const Ch* s) const { return this->find(viewOf(s)) != npos; }
    bool startsWith(const Ch* s) const { return this->starts_with(viewOf(s)); }
    bool endsWith(const Ch* s) const { return this->ends_with(viewOf(s)); }
    bool contains(Ch c) const { return this->find(c) != npos; }
    bool startsWith(Ch c) const { return this->starts_with(c); }
    bool endsWith(Ch c) const { return this->ends_with(c); }
    template <detail::Viewable<Ch, Traits> Text> bool contains(const Text& s) const
    {
        return this->find(viewOf(s)) != npos;
    }
    template <detail::Viewable<Ch, Traits> Text> bool startsWith(const Text& s) const
    {
        return this->starts_with(viewOf(s));
    }
    template <detail::Viewable<Ch, Traits> Text> bool endsWith(const Text& s) const
    {
        return this->ends_with(viewOf(s));
    }
    ///@}
    /// Goes on behind the inserted text, so `to` may contain `from`. An empty `from` replaces nothing.
    ///@{
    BasicString replaceAll(const Ch* from, const Ch* to) const;
    template <detail::TerminatedText<Ch, Traits, Alloc> From, detail::TerminatedText<Ch, Traits, Alloc> To>
    BasicString replaceAll(const From& from, const To& to) const
    {
        return replaceAll(pointerTo(from), pointerTo(to));
    }
    ///@}

    /// White space is what the global locale's character classification calls space.
    ///@{
    BasicString trimLeft() const;
    BasicString trimRight() const;
    BasicString trim() const;
    ///@}

    /// Each character through the runtime library, so only 'A' to 'Z' change in the "C" locale.
    ///@{
    BasicString toLower() const { return BasicString(*this).makeLower(); }
    BasicString toUpper() const { return BasicString(*this).makeUpper(); }
    BasicString& makeLower();
    BasicString& makeUpper();
    ///@}

    /// 0 when the text does not begin with a number.
    int toInt() const { return Helper::atoi(this->c_str()); }
    /// Negative values have a minus sign in radix 10 only, as `_itoa` writes them. Throws
    /// `std::invalid_argument` for a radix outside 2 to 36.
    ///@{
    static BasicString fromInt(int value, int radix = 10) { return BasicString(value, radix); }
    template <detail::Number Value> static BasicString fromInt(Value value, int radix = 10)
    {
        return BasicString(value, radix);
    }
    ///@}

    /// The local time as hh:mm:ss.
    static BasicString Time();
    /// The local date as mm/dd/yy.
    static BasicString Date();
    /// As `printf` of the platform's runtime library; longer output is cut at 2000 characters.
    static BasicString fromFormat(const Ch* format, ...);
    /// Entry `id` of a module's string table (null: the program's); empty when there is none.
    static BasicString fromResource(unsigned id, HINSTANCE module);

    /// One element of a path: from the front for 0, 1, 2, ... and from the back for -1, -2, ...; a
    /// leading separator is an element of its own, and a device is given as its root ("C:\"). Counting
    /// from the front past the last element gives the empty text, from the back the first element, or the
    /// empty text when the path begins with a separator.
    BasicString getPathElement(int index) const;
    /// The path without its last element and the separator before it ("C:" for a file in a root).
    BasicString getDirectory() const;
    /// `relative` as seen from the folder `base`: each leading ".." drops one element of `base`, though
    /// never its device; leading "." are dropped. An absolute `relative` (one that begins with a separator or a device)
    /// is the result itself, and for an empty argument the result is the other one.
    static BasicString mergePath(BasicString base, BasicString relative);

    /// Fills in the text as a template: "%1" to "%9" stand for the arguments (null: nothing), "%%" for
    /// one "%"; any other "%" stays as it is. A zero ends an argument.
    ///@{
    BasicString format(const Ch* a1 = nullptr, const Ch* a2 = nullptr, const Ch* a3 = nullptr, const Ch* a4 = nullptr,
                       const Ch* a5 = nullptr, const Ch* a6 = nullptr, const Ch* a7 = nullptr, const Ch* a8 = nullptr,
                       const Ch* a9 = nullptr) const;
    template <detail::TerminatedText<Ch, Traits, Alloc>... Texts> BasicString format(const Texts&... texts) const
    {
        static_assert(sizeof...(Texts) <= 9, "there are nine places, %1 to %9");
        return format(pointerTo(texts)...);
    }
    ///@}

private:
    // With other traits the text is copied by its length: the conversion to a pointer would stop at a zero.
    static Base converted(BasicString<Ch>&& text)
    {
        if constexpr (std::is_same_v<Base, std::basic_string<Ch>>)
            return std::move(text);
        else
            return Base(text.data(), text.size());
    }
    BasicString joined(const Ch* s, size_type n) const;
    void makeInt(int value, int radix);
    template <class Value> void makeNumber(Value value, int radix);
    void makeNumber(unsigned long long digits, bool isNegative, int radix);
    static void checkRadix(int radix);
    template <class C> void repeat(size_type n, C c);
    size_type firstNonSpace() const;
    size_type endOfText() const;
    static bool isAbsolute(const BasicString& path);
    bool endsAtRoot() const;
    template <class Text> static View viewOf(const Text& s) { return detail::viewOf<Ch, Traits>(s); }
    static const Ch* pointerTo(const Ch* s) { return s; }
    static const Ch* pointerTo(const Base& s) { return s.c_str(); }
    template <class Take> void expand(const View* arguments, Take take) const;
};

/// Wide text in the given code page. What the code page lacks becomes its default character, which UTF-8 needs for
/// nothing but halves of surrogate pairs. A null text is the empty one. Throws as StringHelper<char>::convert().
///@{
TARN_API BasicString<char> w2a(const wchar_t* s, unsigned codePage);
inline BasicString<char> w2a(const std::wstring& s, unsigned codePage) { return w2a(s.c_str(), codePage); }
///@}
inline BasicString<wchar_t> a2w(const std::string& s, unsigned codePage) { return a2w(s.c_str(), codePage); }
} // namespace tarn

#include <tarn/BasicStringCompare.h>
#include <tarn/BasicStringImpl.h>
