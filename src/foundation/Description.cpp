#include "Description.h"

#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include "LastErrorKept.h"

#include <cstring>

namespace tarn {
namespace {
constexpr char mark[] = "\0\xEF\xBB\xBF"; // A zero, and the byte order mark.
constexpr std::size_t markSize = sizeof mark - 1;
} // namespace

Description::operator std::string() const
{
    if (a2w(narrow_, CP_ACP) == whole_)
        return narrow_;
    return narrow_ + std::string(mark, markSize) + w2a(whole_, CP_UTF8);
}

std::string tailOf(const std::string& description)
{
    const std::size_t begin = std::strlen(description.c_str());
    return description.compare(begin, markSize, mark, markSize) == 0 ? description.substr(begin) : std::string();
}

BasicString<wchar_t> wholeOf(const char* narrow, const std::string& tail)
{
    return tail.empty() ? a2w(narrow, CP_ACP) : a2w(tail.c_str() + markSize, CP_UTF8);
}

namespace {
[[gnu::noinline, gnu::cold]] void appendTail(std::string& text, const std::string& description, const char* reason)
{
    if (const std::string tail = tailOf(description); !tail.empty())
        text += tail + ": " + w2a(a2w(reason, CP_ACP), CP_UTF8);
}
} // namespace

std::string textWithReason(const std::string& description, const char* reason)
{
    const std::size_t length = std::strlen(description.c_str()), reasonLength = std::strlen(reason);
    std::string text;
    text.reserve(length + reasonLength + 3);
    text.append(description, 0, length).append(": ", 2).append(reason, reasonLength);
    if (length < description.size())
        appendTail(text, description, reason);
    return text += '\0';
}

BasicString<wchar_t> wholeOfKept(const char* text)
{
    const std::string narrow = text;
    return wholeOf(text, tailOf(narrow + '\0' + (text + narrow.size() + 1)));
}

std::string errorText(const wchar_t* whole)
{
    const LastErrorKept kept;
    return Description(whole);
}
} // namespace tarn
