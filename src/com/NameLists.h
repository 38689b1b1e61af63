#pragma once

#include <tarn/GUID.h>

#include "GUIDOrder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <istream>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

// The two lists of names, read whole into memory: the names stay where they lie in the text, and the
// entries, sorted once at the end, point to them. Reading ends at the end of the data or at what is no
// record.

namespace tarn {
namespace detail {
/// The first 32 bits of a key in the order of the keys, and that order itself, to be inlined.
///@{
inline std::uint32_t leadingBits(long key) { return static_cast<std::uint32_t>(key) ^ 0x80000000; }
inline std::uint32_t leadingBits(const GUID& key) { return static_cast<std::uint32_t>(ordinal(key, 0) >> 32); }
inline bool isLess(long a, long b) { return a < b; }
using tarn::isLess;
///@}

/// Sorts, and leaves equal keys in their order. Puts the entries into as many buckets by their leading bits, since
/// these are mostly spread evenly, and sorts what shares one.
template <class Entry> void sortEntries(std::vector<Entry>& entries)
{
    const auto less = [](const Entry& a, const Entry& b) { return isLess(a.key, b.key); };
    if (std::is_sorted(entries.begin(), entries.end(), less))
        return;
    const auto bits = static_cast<int>(std::bit_width(entries.size()));
    const auto bucketOf = [bits](const Entry& entry) { return std::size_t(leadingBits(entry.key) >> (32 - bits)); };
    std::vector<std::uint32_t> ends((std::size_t(1) << bits) + 1);
    for (const Entry& entry : entries)
        ++ends[bucketOf(entry) + 1];
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    std::vector<Entry> sorted(entries.size());
    for (const Entry& entry : entries)
        sorted[ends[bucketOf(entry)]++] = entry;
    for (std::size_t bucket = 0, begin = 0; bucket + 1 < ends.size(); begin = ends[bucket++]) {
        if (ends[bucket] > begin + 1)
            std::stable_sort(sorted.begin() + static_cast<std::ptrdiff_t>(begin),
                             sorted.begin() + static_cast<std::ptrdiff_t>(ends[bucket]), less);
    }
    entries = std::move(sorted);
}
} // namespace detail

/// A table of names that keeps the text which holds them.
template <class Key> class NameList {
public:
    NameList() = default;
    NameList(NameList&&) noexcept = default;
    NameList& operator=(NameList&&) noexcept = default;

    /// Takes a text and, for it, the entries in the order of their records.
    template <class Parse> NameList(std::vector<char> text, Parse parse) : text_(std::move(text))
    {
        parse(std::string_view(text_.data(), text_.size()), entries_);
        detail::sortEntries(entries_);
    }

    /// The name, of several the last; empty when there is none. Allocates nothing.
    std::string_view find(const Key& key) const
    {
        const auto behind =
            std::upper_bound(entries_.begin(), entries_.end(), key,
                             [](const Key& k, const Entry& entry) { return detail::isLess(k, entry.key); });
        return behind == entries_.begin() || detail::isLess(behind[-1].key, key) ? std::string_view() : behind[-1].name;
    }
    std::size_t size() const { return entries_.size(); }

    struct Entry {
        Key key;
        std::string_view name;
    };

private:
    std::vector<char> text_;
    std::vector<Entry> entries_;
};

using HRESULTNames = NameList<long>;
using GUIDNames = NameList<GUID>;

namespace detail {
inline std::vector<char> readAll(std::istream& in)
{
    // As large as the file is said to be, and one more to find its end.
    const std::streamoff size = in.seekg(0, std::ios::end).tellg();
    in.clear();
    if (size > 0)
        in.seekg(0);
    std::vector<char> text(size > 0 ? static_cast<std::size_t>(size) + 1 : 1);
    std::size_t length = 0;
    for (;;) {
        in.read(text.data() + length, static_cast<std::streamsize>(text.size() - length));
        length += static_cast<std::size_t>(in.gcount());
        if (!in)
            break;
        text.resize(text.size() * 2);
    }
    text.resize(length);
    return text;
}

constexpr bool isSpace(char c)
{
    const auto code = static_cast<unsigned char>(c);
    return code <= ' ' && (code == ' ' || (code >= '\t' && code <= '\r')); // Of most characters one comparison tells.
}

inline void skipSpace(std::string_view& text)
{
    const auto begin = std::find_if_not(text.begin(), text.end(), isSpace);
    text.remove_prefix(static_cast<std::size_t>(begin - text.begin()));
}

/// Takes the next token off the text; empty at its end.
inline std::string_view takeToken(std::string_view& text)
{
    skipSpace(text);
    const auto end = std::find_if(text.begin(), text.end(), isSpace);
    const std::string_view token(text.data(), static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(token.size());
    return token;
}

/// Takes a number off the text as a stream reads hexadecimal; false when there is none or it is too large.
inline bool takeHex(std::string_view& text, unsigned long& value)
{
    skipSpace(text);
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc();
}

/// The values of hexadecimal digits, 16 for any other character.
constexpr std::array<unsigned char, 256> digitValues = [] {
    std::array<unsigned char, 256> values;
    values.fill(16);
    for (unsigned i = 0; i < 10; ++i)
        values['0' + i] = static_cast<unsigned char>(i);
    for (unsigned i = 0; i < 6; ++i)
        values['a' + i] = values['A' + i] = static_cast<unsigned char>(10 + i);
    return values;
}();
constexpr unsigned digitValue(char c) { return digitValues[static_cast<unsigned char>(c)]; }

/// Reads two digits for each byte; false when there is any other character.
inline bool readBytes(const char* digits, unsigned char* bytes, std::size_t count)
{
    unsigned all = 0;
    for (std::size_t i = 0; i < count; ++i, digits += 2) {
        const unsigned high = digitValue(digits[0]), low = digitValue(digits[1]);
        all |= high | low;
        bytes[i] = static_cast<unsigned char>(high << 4 | low);
    }
    return all < 16;
}

/// Reads the usual form, 38 characters, of which no other is white space. False for what is not of this form.
inline bool parseGUID(const char* text, GUID& guid)
{
    unsigned char bytes[16];
    if (text[0] != '{' || text[9] != '-' || text[14] != '-' || text[19] != '-' || text[24] != '-' || text[37] != '}' ||
        !readBytes(text + 1, bytes, 4) || !readBytes(text + 10, bytes + 4, 2) || !readBytes(text + 15, bytes + 6, 2) ||
        !readBytes(text + 20, bytes + 8, 2) || !readBytes(text + 25, bytes + 10, 6))
        return false;
    guid.Data1 = static_cast<unsigned long>(bytes[0]) << 24 | static_cast<unsigned long>(bytes[1]) << 16 |
                 static_cast<unsigned long>(bytes[2]) << 8 | bytes[3];
    guid.Data2 = static_cast<unsigned short>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<unsigned short>(bytes[6] << 8 | bytes[7]);
    std::copy_n(bytes + 8, 8, guid.Data4);
    return true;
}

/// Takes an identifier off the text, which has more than white space. What is not of the usual form is left to
/// toGUID, which takes ten times as long, and throws.
inline GUID takeGUID(std::string_view& text)
{
    constexpr std::size_t length = 38;
    GUID guid;
    if (text.size() < length || (text.size() > length && !isSpace(text[length])) || !parseGUID(text.data(), guid))
        return toGUID(std::string(takeToken(text)).c_str());
    text.remove_prefix(length);
    return guid;
}
} // namespace detail

/// Records of a value in hexadecimal, a name and, if that follows, a comment between double quotes.
inline HRESULTNames readHRESULTNames(std::istream& in)
{
    return HRESULTNames(detail::readAll(in), [](std::string_view text, std::vector<HRESULTNames::Entry>& entries) {
        unsigned long value = 0;
        while (detail::takeHex(text, value)) {
            const std::string_view name = detail::takeToken(text);
            if (name.empty())
                break;
            entries.push_back({static_cast<long>(value), name});
            detail::skipSpace(text);
            if (text.starts_with('"'))
                text.remove_prefix(std::min(text.find('"', 1), text.size() - 1) + 1);
        }
    });
}

/// Records of an identifier in braces and a name. Throws COMError for a malformed identifier.
inline GUIDNames readGUIDNames(std::istream& in)
{
    return GUIDNames(detail::readAll(in), [](std::string_view text, std::vector<GUIDNames::Entry>& entries) {
        entries.reserve(text.size() / 64);
        for (detail::skipSpace(text); !text.empty(); detail::skipSpace(text)) {
            const GUID guid = detail::takeGUID(text);
            const std::string_view name = detail::takeToken(text);
            if (name.empty())
                break;
            entries.push_back({guid, name});
        }
    });
}
} // namespace tarn
