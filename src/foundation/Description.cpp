#include "Description.h"

#include <tarn/Windows.h>

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
} // namespace tarn
