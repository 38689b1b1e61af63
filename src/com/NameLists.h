#pragma once

#include <tarn/GUID.h>

#include <algorithm>
#include <charconv>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

// The two lists of names, read whole into memory: the names stay where they lie in the text, and the
// entries, sorted once at the end, point to them. Reading ends at the end of the data or at what is no
// record.

namespace tarn {
/// A table of names that keeps the text which holds them.
template <class Key> class NameList {
public:
    NameList() = default;
    NameList(NameList&&) = default;
    NameList& operator=(NameList&&) = default;

    /// Takes a text and, for it, the entries in the order of their records.
    template <class Parse> NameList(std::vector<char> text, Parse parse) : text_(std::move(text))
    {
        parse(std::string_view(text_.data(), text_.size()), entries_);
        const auto less = [](const Entry& a, const Entry& b) { return a.key < b.key; };
        if (!std::is_sorted(entries_.begin(), entries_.end(), less))
            std::stable_sort(entries_.begin(), entries_.end(), less);
    }

    /// The name, of several the last; empty when there is none. Allocates nothing.
    std::string_view find(const Key& key) const
    {
        const auto behind = std::upper_bound(entries_.begin(), entries_.end(), key,
                                             [](const Key& k, const Entry& entry) { return k < entry.key; });
        return behind == entries_.begin() || behind[-1].key < key ? std::string_view() : behind[-1].name;
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
    constexpr std::size_t step = 1 << 16;
    std::vector<char> text;
    do {
        text.resize(text.size() + step);
        in.read(text.data() + text.size() - step, step);
    } while (in);
    text.resize(text.size() - step + static_cast<std::size_t>(in.gcount()));
    return text;
}

constexpr bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

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

/// The value of a hexadecimal digit, 16 for any other character.
constexpr unsigned digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return static_cast<unsigned>(c - '0');
    const int letter = c | 0x20;
    return letter >= 'a' && letter <= 'f' ? static_cast<unsigned>(letter - 'a' + 10) : 16;
}

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

/// As toGUID, which is left with whatever is not of the usual form: it takes ten times as long.
inline GUID parseGUID(std::string_view token)
{
    unsigned char bytes[16];
    if (token.size() != 38 || token[0] != '{' || token[9] != '-' || token[14] != '-' || token[19] != '-' ||
        token[24] != '-' || token[37] != '}' || !readBytes(&token[1], bytes, 4) ||
        !readBytes(&token[10], bytes + 4, 2) || !readBytes(&token[15], bytes + 6, 2) ||
        !readBytes(&token[20], bytes + 8, 2) || !readBytes(&token[25], bytes + 10, 6))
        return toGUID(std::string(token).c_str());
    GUID guid;
    guid.Data1 = static_cast<unsigned long>(bytes[0]) << 24 | static_cast<unsigned long>(bytes[1]) << 16 |
                 static_cast<unsigned long>(bytes[2]) << 8 | bytes[3];
    guid.Data2 = static_cast<unsigned short>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<unsigned short>(bytes[6] << 8 | bytes[7]);
    std::copy_n(bytes + 8, 8, guid.Data4);
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
        for (std::string_view token; !(token = detail::takeToken(text)).empty();) {
            const GUID guid = detail::parseGUID(token);
            const std::string_view name = detail::takeToken(text);
            if (name.empty())
                break;
            entries.push_back({guid, name});
        }
    });
}
} // namespace tarn
