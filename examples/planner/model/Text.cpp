#include "Text.h"

#include <tarn/BasicString.h>
#include <tarn/Exception.h>

namespace planner {
std::string narrow(const std::wstring& text) { return tarn::BasicString<char>(text); }

// By the code page, and not by the runtime library's locale, which is all that the string's own conversion knows.
std::wstring widened(const std::string& text) { return tarn::a2w(text.c_str(), CP_ACP); }

std::string toUTF8(const std::wstring& text) { return tarn::w2a(text, CP_UTF8); }

// The conversion replaces what it cannot read, so only UTF-8 comes back as it was.
std::wstring fromUTF8(const std::string& text)
{
    const std::wstring wide = tarn::a2w(text.c_str(), CP_UTF8);
    if (toUTF8(wide) != text)
        throw tarn::Exception("The text is not UTF-8");
    return wide;
}

std::wstring trimmed(const std::wstring& text) { return tarn::BasicString<wchar_t>(text).trim(); }

std::wstring shortened(const std::wstring& text, std::size_t length)
{
    return text.size() <= length ? text : text.substr(0, length) + L"...";
}
} // namespace planner
