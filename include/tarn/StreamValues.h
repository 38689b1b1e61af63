#pragma once

#include <tarn/Fields.h>
#include <tarn/Stream.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

// More values for the operators of streams, beside the numbers and texts of Stream.h: the standard library's
// containers and the like, the platform's small structures, and those of the program's own.

struct _GUID;
struct tagPOINT;
struct tagSIZE;
struct tagRECT;
struct _FILETIME;

namespace tarn {
/// How a structure goes through a stream: the members that its fieldsOf() names, in their order.
///
///     struct Person {
///         template <class Self> static auto fieldsOf(Self& self) { return tarn::fields(self.name, self.born); }
///         std::string name;
///         std::chrono::year_month_day born;
///     };
///
/// For a structure that cannot be changed, specialise this and give it the function of().
template <class T> struct StreamFields {
    /// The members of `self`, which may be const.
    template <class Self>
    requires requires(Self& self) { T::fieldsOf(self); }
    static auto of(Self& self) { return T::fieldsOf(self); }
};

/// The platform's structures, and the library's that derive from them (Point, Size, Rect), have the bytes that they
/// have in memory.
///@{
template <std::derived_from<_GUID> T> struct StreamFields<T> {
    /// Its numbers.
    template <class Self> static auto of(Self& id) { return fields(id.Data1, id.Data2, id.Data3, id.Data4); }
};
template <std::derived_from<tagPOINT> T> struct StreamFields<T> {
    /// Its numbers.
    template <class Self> static auto of(Self& point) { return fields(point.x, point.y); }
};
template <std::derived_from<tagSIZE> T> struct StreamFields<T> {
    /// Its numbers.
    template <class Self> static auto of(Self& size) { return fields(size.cx, size.cy); }
};
template <std::derived_from<tagRECT> T> struct StreamFields<T> {
    /// Its numbers.
    template <class Self> static auto of(Self& rect) { return fields(rect.left, rect.top, rect.right, rect.bottom); }
};
template <std::derived_from<_FILETIME> T> struct StreamFields<T> {
    /// Its numbers.
    template <class Self> static auto of(Self& time) { return fields(time.dwLowDateTime, time.dwHighDateTime); }
};
///@}

/// What has StreamFields. Objects for archives do not, since they are written with the name of their class.
template <class T>
concept StreamStruct = std::is_class_v<T> && !std::derived_from<T, Serializable> && requires(T & value)
{
    StreamFields<T>::of(value);
};

/// A container of the standard library, or one like it: what can be counted, emptied and added to. A text is none.
template <class T>
concept StreamContainer = requires(T& container, const T& constant, typename T::value_type element)
{
    {
        constant.size()
        } -> std::same_as<typename T::size_type>;
    constant.begin() != constant.end();
    container.clear();
    container.insert(container.end(), std::move(element));
    requires !requires { constant.c_str(); };
};

/// A file's name as a std::filesystem::path.
template <class T>
concept StreamPath = requires(const T& path)
{
    path.native();
    path.lexically_normal();
};

/// A length of time, std::chrono::duration.
template <class T>
concept StreamDuration = StreamNumber<typename T::rep> && requires(const T& duration)
{
    typename T::period;
    {
        duration.count()
        } -> std::same_as<typename T::rep>;
};

/// An instant, std::chrono::time_point. Not that of a clock like steady_clock, which counts from another moment after
/// each start of the machine.
template <class T>
concept StreamTimePoint = StreamDuration<typename T::duration> && !T::clock::is_steady && requires(const T& instant)
{
    instant.time_since_epoch();
};

/// A day, std::chrono::year_month_day.
template <class T>
concept StreamDay = requires(const T& day)
{
    day.year().ok() && day.month().ok() && day.day().ok();
};

namespace detail {
[[noreturn]] TARN_API void throwManyElements();
[[noreturn]] TARN_API void throwNoAlternative(unsigned int index);
[[noreturn]] TARN_API void throwNumberTooLarge();

// What a container's elements are while they are read: the keys of a map are const in it.
template <class T> struct ElementOf {
    using Type = typename T::value_type;
};
template <class T>
requires requires { typename T::mapped_type; }
struct ElementOf<T> {
    using Type = std::pair<typename T::key_type, typename T::mapped_type>;
};

template <class T>
concept PlainElements = StreamNumber<typename T::value_type> && std::contiguous_iterator<typename T::iterator>;

// Whole arrays of numbers go in one piece, others one after the other.
template <class T> void writeElements(OutputStream& out, const T* elements, std::size_t count)
{
    constexpr std::size_t most = std::numeric_limits<unsigned int>::max() / sizeof(T);
    if constexpr (StreamNumber<T>) {
        for (std::size_t piece; count > 0; elements += piece, count -= piece) {
            piece = count < most ? count : most;
            out.writeFully(elements, static_cast<unsigned int>(piece * sizeof(T)));
        }
    } else {
        for (; count > 0; --count)
            out << *elements++;
    }
}
template <class T> void readElements(InputStream& in, T* elements, std::size_t count)
{
    if constexpr (StreamNumber<T>) {
        if (count > 0)
            in.readFully(elements, static_cast<unsigned int>(count * sizeof(T)));
    } else {
        for (; count > 0; --count)
            in >> *elements++;
    }
}
} // namespace detail

/// As its fields. Throws as the operators of these do.
///@{
template <StreamStruct T> OutputStream& operator<<(OutputStream& out, const T& value)
{
    return out << StreamFields<T>::of(value);
}
template <StreamStruct T> InputStream& operator>>(InputStream& in, T& value)
{
    return in >> StreamFields<T>::of(value);
}
///@}

/// The number of elements, in 32 bits, and the elements; a map's are pairs. Throws Exception "Too many elements to be
/// written" for what 32 bits do not count.
template <StreamContainer T> OutputStream& operator<<(OutputStream& out, const T& container)
{
    if (container.size() > std::numeric_limits<std::uint32_t>::max())
        detail::throwManyElements();
    out << static_cast<std::uint32_t>(container.size());
    if constexpr (detail::PlainElements<T>) {
        if (!container.empty())
            detail::writeElements(out, &*container.begin(), container.size());
    } else {
        for (const typename T::value_type& element : container)
            out << element;
    }
    return out;
}
/// In place of what the container had. Memory is taken only as elements arrive, whatever number is claimed.
template <StreamContainer T> InputStream& operator>>(InputStream& in, T& container)
{
    constexpr unsigned int piece = 0x1000;
    container.clear();
    unsigned int left = in.readUInt32();
    if constexpr (detail::PlainElements<T> && requires { container.resize(left); }) {
        while (left > 0) {
            const unsigned int count = left < piece ? left : piece;
            const auto start = container.size();
            container.resize(start + count);
            detail::readElements(in, &container[start], count);
            left -= count;
        }
    } else {
        for (; left > 0; --left) {
            typename detail::ElementOf<T>::Type element{};
            in >> element;
            container.insert(container.end(), std::move(element));
        }
    }
    return in;
}

/// The elements one after the other: their number is part of the type. A `char[10]` is no array but a text.
///@{
template <class T, std::size_t count> OutputStream& operator<<(OutputStream& out, const std::array<T, count>& array)
{
    detail::writeElements(out, array.data(), count);
    return out;
}
template <class T, std::size_t count> InputStream& operator>>(InputStream& in, std::array<T, count>& array)
{
    detail::readElements(in, array.data(), count);
    return in;
}
template <class T, std::size_t count>
requires(!std::same_as<T, char> && !std::same_as<T, wchar_t>) OutputStream& operator<<(OutputStream& out,
                                                                                       const T (&array)[count])
{
    detail::writeElements(out, array, count);
    return out;
}
template <class T, std::size_t count>
requires(!std::same_as<T, char> && !std::same_as<T, wchar_t>) InputStream& operator>>(InputStream& in,
                                                                                      T (&array)[count])
{
    detail::readElements(in, array, count);
    return in;
}
///@}

/// The members one after the other.
///@{
template <class A, class B> OutputStream& operator<<(OutputStream& out, const std::pair<A, B>& pair)
{
    return out << fields(pair.first, pair.second);
}
template <class A, class B> InputStream& operator>>(InputStream& in, std::pair<A, B>& pair)
{
    return in >> fields(pair.first, pair.second);
}
template <class... T>
requires(sizeof...(T) > 0) OutputStream& operator<<(OutputStream& out, const std::tuple<T...>& all)
{
    std::apply([&](const T&... each) { out << fields(each...); }, all);
    return out;
}
template <class... T>
requires(sizeof...(T) > 0) InputStream& operator>>(InputStream& in, std::tuple<T...>& all)
{
    std::apply([&](T&... each) { in >> fields(each...); }, all);
    return in;
}
///@}

/// A `bool`, and the value when there is one.
///@{
template <class T> OutputStream& operator<<(OutputStream& out, const std::optional<T>& value)
{
    out << value.has_value();
    return value ? out << *value : out;
}
template <class T> InputStream& operator>>(InputStream& in, std::optional<T>& value)
{
    bool present;
    in >> present;
    if (!present)
        value.reset();
    return present ? in >> value.emplace() : in;
}
///@}

/// The index of the alternative, in 32 bits, and its value; std::monostate has none. Reading throws Exception "A
/// variant has no alternative ..." for another index.
///@{
template <class... T> OutputStream& operator<<(OutputStream& out, const std::variant<T...>& value)
{
    out << static_cast<std::uint32_t>(value.index());
    const auto write = [&out]<class V>(const V& held) {
        if constexpr (!std::same_as<V, std::monostate>)
            out << held;
    };
    std::visit(write, value);
    return out;
}
template <class... T> InputStream& operator>>(InputStream& in, std::variant<T...>& value)
{
    const unsigned int index = in.readUInt32();
    const auto read = [&]<std::size_t i>(std::integral_constant<std::size_t, i>) {
        if (index != i)
            return false;
        auto& held = value.template emplace<i>();
        if constexpr (!std::same_as<std::remove_reference_t<decltype(held)>, std::monostate>)
            in >> held;
        return true;
    };
    const bool found = [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return (read(std::integral_constant<std::size_t, i>()) || ...);
    }
    (std::index_sequence_for<T...>());
    if (!found)
        detail::throwNoAlternative(index);
    return in;
}
///@}

/// As the text that it is, in the platform's encoding: UTF-16 on Windows.
template <StreamPath T> OutputStream& operator<<(OutputStream& out, const T& path) { return out << path.native(); }
/// The same.
template <StreamPath T> InputStream& operator>>(InputStream& in, T& path)
{
    typename T::string_type text;
    in >> text;
    path = std::move(text);
    return in;
}

/// The number of its units, and for an instant that since the clock's beginning. The unit is not written: give both
/// sides the same type, one with a unit of its own (`std::chrono::sys_seconds`), since that of the clock differs
/// between compilers.
template <StreamDuration T> OutputStream& operator<<(OutputStream& out, const T& duration)
{
    return out << duration.count();
}
/// The same.
template <StreamDuration T> InputStream& operator>>(InputStream& in, T& duration)
{
    typename T::rep count;
    in >> count;
    duration = T(count);
    return in;
}
/// The same.
template <StreamTimePoint T> OutputStream& operator<<(OutputStream& out, const T& instant)
{
    return out << instant.time_since_epoch();
}
/// The same.
template <StreamTimePoint T> InputStream& operator>>(InputStream& in, T& instant)
{
    typename T::duration since;
    in >> since;
    instant = T(since);
    return in;
}

/// The year in 16 bits, month and day in 8 each. Whether the day exists is not looked at.
template <StreamDay T> OutputStream& operator<<(OutputStream& out, const T& day)
{
    return out << static_cast<std::int16_t>(static_cast<int>(day.year()))
               << static_cast<std::uint8_t>(static_cast<unsigned int>(day.month()))
               << static_cast<std::uint8_t>(static_cast<unsigned int>(day.day()));
}
/// The same.
template <StreamDay T> InputStream& operator>>(InputStream& in, T& value)
{
    std::int16_t year;
    std::uint8_t month, day;
    in >> fields(year, month, day);
    value = T(decltype(value.year())(year), decltype(value.month())(month), decltype(value.day())(day));
    return in;
}

/// An integer that has 64 bits on the stream whatever its own width is, as fixed64() makes it.
template <std::integral T> struct Fixed64 {
    /// What is written or read.
    T& number;
};
/// For `std::size_t` and its like, so that programs of both editions exchange them: `out <<
/// tarn::fixed64(text.size())`, `in >> tarn::fixed64(size)`. Reading throws Exception "A number is too large for this
/// program" for one that the type does not hold.
///@{
template <std::integral T> Fixed64<T> fixed64(T& number) { return {number}; }
template <std::integral T> Fixed64<const T> fixed64(const T& number) { return {number}; }
///@}

/// As fixed64() says.
///@{
template <class T> OutputStream& operator<<(OutputStream& out, Fixed64<T> fixed)
{
    return out << static_cast<std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>>(fixed.number);
}
template <class T> InputStream& operator>>(InputStream& in, Fixed64<T> fixed)
{
    std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t> wide;
    in >> wide;
    if (!std::in_range<T>(wide))
        detail::throwNumberTooLarge();
    fixed.number = static_cast<T>(wide);
    return in;
}
///@}
} // namespace tarn
