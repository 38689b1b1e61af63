#pragma once

#include <tarn/Stream.h>

#include <cstddef>
#include <cstring>
#include <tuple>

namespace tarn {
/// Several values that go through a stream together, as fields() makes them. Holds references to them.
template <class... T> struct Fields {
    /// In their order.
    std::tuple<T&...> all;
};

/// Values that are written and read in one go, with the very bytes that each of them has by itself:
///
///     template <class Self> static auto all(Self& self) { return tarn::fields(self.x, self.y, self.name); }
///     void serialize(tarn::OutputStream& out) const override { out << all(*this); }
///     void deserialize(tarn::InputStream& in) override { in >> all(*this); }
///
/// Numbers that stand side by side, and the length of a text behind them, go through the stream as one piece, which
/// is faster than a call for each. Anything that has an operator of its own is allowed between them.
template <class... T> Fields<T...> fields(T&... values) { return {{values...}}; }

namespace detail {
template <class T> using Plain = std::remove_const_t<T>;
template <class T> constexpr bool isFlag = std::is_same_v<Plain<T>, bool>;
template <class T>
concept PlainField = StreamNumber<Plain<T>> || isFlag<T>;
template <class T, class Ch>
concept TextOf = std::derived_from<Plain<T>, std::basic_string<Ch>>;
template <class T>
concept TextField = TextOf<T, char> || TextOf<T, wchar_t>;

// The bytes of a field that can be written with others before it: a number, or the length of a text.
template <class T> constexpr std::size_t headSize = PlainField<T> ? sizeof(T) : TextField<T> ? sizeof(unsigned int) : 0;
static_assert(sizeof(bool) == 1);

/// Gathers numbers, and writes them when something else comes.
template <std::size_t room> class FieldWriter {
public:
    explicit FieldWriter(OutputStream& out) : out_(out) {}

    template <PlainField T> void add(const T& value)
    {
        std::memcpy(bytes_ + used_, &value, sizeof value);
        used_ += sizeof value;
    }
    template <TextField T> void add(const T& text)
    {
        const auto* const characters = text.c_str();
        const auto length = static_cast<unsigned int>(T::traits_type::length(characters));
        add(length);
        pass();
        out_.write(characters, length * static_cast<unsigned int>(sizeof *characters));
    }
    template <class T> void add(const T& value)
    {
        pass();
        out_ << value;
    }
    void pass()
    {
        if (used_ > 0)
            out_.writeFully(bytes_, static_cast<unsigned int>(used_));
        used_ = 0;
    }

private:
    OutputStream& out_;
    char bytes_[room + 1];
    std::size_t used_ = 0;
};

/// Takes numbers out of the bytes that were read for them.
class FieldReader {
public:
    explicit FieldReader(const char* bytes) : next_(bytes) {}

    template <PlainField T> void take(T& value)
    {
        if constexpr (std::same_as<T, bool>)
            value = *next_ != 0;
        else
            std::memcpy(&value, next_, sizeof value);
        next_ += sizeof value;
    }

private:
    const char* next_;
};

// The first field from `at` on that is no number.
template <class... T> constexpr std::size_t endOfNumbers(std::size_t at)
{
    constexpr bool isNumber[] = {PlainField<T>..., false};
    while (isNumber[at])
        ++at;
    return at;
}
// The bytes of the fields from `at` on, before `end`.
template <class... T> constexpr std::size_t sizeOfHeads(std::size_t at, std::size_t end)
{
    constexpr std::size_t sizes[] = {headSize<T>..., 0};
    std::size_t sum = 0;
    for (; at < end; ++at)
        sum += sizes[at];
    return sum;
}

template <std::size_t at, class... T> void readFields(InputStream& in, const std::tuple<T&...>& all)
{
    constexpr std::size_t count = sizeof...(T);
    if constexpr (at < count) {
        constexpr std::size_t end = endOfNumbers<T...>(at);
        constexpr std::size_t behind = std::min(end, count - 1);
        constexpr bool hasText = end < count && TextField<std::tuple_element_t<behind, std::tuple<T...>>>;
        constexpr std::size_t size = sizeOfHeads<T...>(at, hasText ? end + 1 : end);
        char bytes[size + 1];
        if constexpr (size > 0)
            in.readFully(bytes, static_cast<unsigned int>(size));
        else
            bytes[0] = 0; // Nobody reads it, but GCC warns of that.
        FieldReader reader(bytes);
        [&]<std::size_t... i>(std::index_sequence<i...>) { (reader.take(std::get<at + i>(all)), ...); }
        (std::make_index_sequence<end - at>());
        if constexpr (hasText) {
            unsigned int length;
            reader.take(length);
            readCharacters(in, std::get<behind>(all), length);
        } else if constexpr (end < count) {
            in >> std::get<behind>(all);
        }
        readFields<end + 1>(in, all);
    }
}
} // namespace detail

/// Throws as the operators of the values do.
template <class... T> OutputStream& operator<<(OutputStream& out, const Fields<T...>& fields)
{
    detail::FieldWriter<(std::size_t{0} + ... + detail::headSize<T>)> writer(out);
    std::apply([&](auto&... field) { (writer.add(field), ...); }, fields.all);
    writer.pass();
    return out;
}

/// Throws as the operators of the values do; which have been read then is not known.
template <class... T> InputStream& operator>>(InputStream& in, const Fields<T...>& fields)
{
    detail::readFields<0>(in, fields.all);
    return in;
}
} // namespace tarn
