#include <tarn/TextLines.h>

#include <tarn/Exception.h>

#include "../foundation/Check.h"
#include "../foundation/Memory.h"
#include "../foundation/NumericCast.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tarn {
namespace {
constexpr const char* notConverted = "Can't convert text";
constexpr wchar_t replacement = 0xFFFD;

struct Mark {
    std::string_view bytes;
    unsigned encoding;
};
constexpr Mark marks[] = {{"\xEF\xBB\xBF", utf8}, {"\xFF\xFE", utf16}, {"\xFE\xFF", utf16BigEndian}};

bool isUtf16(unsigned encoding) { return encoding == utf16 || encoding == utf16BigEndian; }

wchar_t swapped(wchar_t c) { return static_cast<wchar_t>((c & 0xFF) << 8 | (c >> 8 & 0xFF)); }

/// Replaces halves of surrogate pairs that stand alone; false when there are any.
bool pairUp(BasicString<wchar_t>& text)
{
    bool isGood = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isHigh = IS_HIGH_SURROGATE(text[i]);
        if (isHigh && i + 1 < text.size() && IS_LOW_SURROGATE(text[i + 1])) {
            ++i;
        } else if (isHigh || IS_LOW_SURROGATE(text[i])) {
            text[i] = replacement;
            isGood = false;
        }
    }
    return isGood;
}

/// False when the bytes are no text; `text` has replacements then.
bool decode(std::string_view bytes, unsigned encoding, BasicString<wchar_t>& text)
{
    if (isUtf16(encoding)) {
        text.assign(bytes.size() / 2, L' ');
        bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * 2);
        if (encoding == utf16BigEndian)
            std::ranges::transform(text, text.begin(), swapped);
        if (bytes.size() % 2)
            text += replacement;
        return pairUp(text) && bytes.size() % 2 == 0;
    }
    text.clear();
    if (bytes.empty())
        return true;
    const auto convert = [&](DWORD flags) {
        return MultiByteToWideChar(encoding, flags, bytes.data(), numericCast<int>(bytes.size()), text.data(),
                                   numericCast<int>(text.size()));
    };
    int length = convert(MB_ERR_INVALID_CHARS);
    // Some code pages take no flags, because they know no bad bytes.
    const bool isGood = length != 0 || GetLastError() == ERROR_INVALID_FLAGS;
    if (length == 0 && !isGood && GetLastError() != ERROR_NO_UNICODE_TRANSLATION)
        throwLastError(notConverted);
    if (length == 0)
        length = ensure(convert(0), notConverted);
    resizeOrThrow(text, static_cast<std::size_t>(length));
    ensure(convert(0), notConverted);
    return isGood;
}

/// False when the encoding lacks characters; `bytes` have replacements then.
bool encode(BasicString<wchar_t> text, unsigned encoding, std::string& bytes)
{
    bool isGood = pairUp(text);
    if (isUtf16(encoding)) {
        if (encoding == utf16BigEndian)
            std::ranges::transform(text, text.begin(), swapped);
        bytes.assign(reinterpret_cast<const char*>(text.data()), text.size() * 2);
        return isGood;
    }
    bytes.clear();
    if (text.empty())
        return isGood;
    DWORD flags = encoding == utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const auto convert = [&] {
        return WideCharToMultiByte(encoding, flags, text.data(), numericCast<int>(text.size()), bytes.data(),
                                   numericCast<int>(bytes.size()), nullptr, nullptr);
    };
    int length = convert();
    if (length == 0 && GetLastError() == ERROR_INVALID_FLAGS) {
        flags = 0;
        length = convert();
    }
    resizeOrThrow(bytes, static_cast<std::size_t>(ensure(length, notConverted)));
    ensure(convert(), notConverted);
    if (encoding == utf8) // Which lacks none.
        return isGood;
    BasicString<wchar_t> back; // Not all code pages tell what they lack.
    return decode(bytes, encoding, back) && back == text && isGood;
}
} // namespace

bool LineReader::fill()
{
    bytes_.erase(0, std::exchange(begin_, 0));
    char piece[4096];
    const unsigned count = source_.read(piece, sizeof piece);
    bytes_.append(piece, count);
    return count != 0;
}

// Waits for no more bytes than it needs to know: who writes a first short line may be waiting for an answer.
void LineReader::skipMark()
{
    const auto mayBecomeMark = [this] {
        return std::ranges::any_of(marks, [this](const Mark& mark) {
            return bytes_.size() < mark.bytes.size() && mark.bytes.starts_with(bytes_);
        });
    };
    while (mayBecomeMark() && fill()) {
    }
    for (const Mark& mark : marks)
        if (std::string_view(bytes_).starts_with(mark.bytes)) {
            encoding_ = mark.encoding;
            begin_ = mark.bytes.size();
        }
}

std::size_t LineReader::findEnd(std::size_t from) const
{
    if (!isUtf16(encoding_))
        return bytes_.find('\n', from);
    const std::string_view end = encoding_ == utf16 ? std::string_view("\n\0", 2) : std::string_view("\0\n", 2);
    for (; from + 1 < bytes_.size(); from += 2)
        if (bytes_.compare(from, 2, end) == 0)
            return from;
    return bytes_.npos;
}

bool LineReader::readLine(BasicString<wchar_t>& line)
{
    if (number_ == 0)
        skipMark();
    const std::size_t unit = isUtf16(encoding_) ? 2 : 1;
    std::size_t end = findEnd(begin_);
    const bool hasEnd = [&] {
        while (end == bytes_.npos) {
            const std::size_t searched = (bytes_.size() - begin_) / unit * unit;
            if (!fill())
                return false;
            end = findEnd(searched);
        }
        return true;
    }();
    if (!hasEnd && bytes_.empty())
        return false;
    ++number_;
    const std::string_view bytes = std::string_view(bytes_).substr(begin_, end - begin_);
    begin_ = hasEnd ? end + unit : bytes_.size();
    const bool isGood = decode(bytes, encoding_, line);
    if (hasEnd && line.endsWith(L'\r'))
        line.pop_back();
    if (!isGood && badText_ == BadText::refuse)
        throwError(
            Exception("Line " + std::to_string(number_) + " is no text in code page " + std::to_string(encoding_)));
    return true;
}

void LineWriter::write(std::wstring_view text)
{
    std::string bytes;
    if (!encode(BasicString<wchar_t>(text), options_.encoding, bytes) && options_.badText == BadText::refuse)
        throwError(Exception("Line " + std::to_string(number_) + " has characters that code page " +
                             std::to_string(options_.encoding) + " lacks"));
    if (!hasBegun_ && options_.byteOrderMark)
        for (const Mark& mark : marks)
            if (mark.encoding == options_.encoding)
                bytes.insert(0, mark.bytes);
    hasBegun_ = true;
    number_ += static_cast<unsigned long long>(std::ranges::count(text, L'\n'));
    target_.writeFully(bytes.data(), numericCast<unsigned>(bytes.size()));
}

void LineWriter::writeLine(std::wstring_view text)
{
    write(std::wstring(text).append(options_.lineEnd == LineEnd::lf ? L"\n" : L"\r\n"));
}
} // namespace tarn
