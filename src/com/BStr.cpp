#include <tarn/BStr.h>

#include <tarn/Exception.h>

#include "../foundation/Throw.h"
#include "../foundation/NumericCast.h"

#include <string_view>

namespace tarn {
namespace {
BSTR allocate(const wchar_t* text, unsigned length)
{
    const BSTR copy = SysAllocStringLen(text, length);
    if (!copy)
        throwError(BadAllocation());
    return copy;
}

BSTR allocate(const BasicString<wchar_t>& text) { return allocate(text.data(), numericCast<unsigned>(text.size())); }

// Not the string's own conversion, which knows no code page but the runtime library's locale and ends at
// a zero. A conversion of nothing is an error for the platform.
BasicString<wchar_t> widened(const BasicString<char>& text)
{
    BasicString<wchar_t> wide;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\0', start), text.size());
        if (start)
            wide += L'\0';
        wide += a2w(text.c_str() + start, CP_ACP);
        start = end + 1;
    }
    return wide;
}
} // namespace

BStr::BStr(const wchar_t* text) : text_(text ? allocate(BasicString<wchar_t>(text)) : nullptr) {}
BStr::BStr(const wchar_t* text, unsigned lengthInChars) : text_(allocate(text, lengthInChars)) {}
BStr::BStr(const char* text) : text_(text ? allocate(a2w(text, CP_ACP)) : nullptr) {}
BStr::BStr(const BasicString<wchar_t>& text) : text_(allocate(text)) {}
BStr::BStr(const BasicString<char>& text) : text_(allocate(widened(text))) {}
BStr::BStr(const BStr& other) : text_(other.text_ ? allocate(other.text_, other.length()) : nullptr) {}

BStr& BStr::append(std::wstring_view text)
{
    std::wstring whole(view());
    whole += text;
    return *this = BStr(whole.c_str(), static_cast<unsigned>(whole.size()));
}

BasicString<wchar_t> BStr::toString() const { return BasicString<wchar_t>(view()); }

BasicString<char> BStr::toAString() const
{
    return empty() ? BasicString<char>() : StringHelper<char>::convert(text_, length());
}

bool BStr::operator==(const BStr& other) const noexcept { return view() == other.view(); }

void BStr::attach(BSTR text) noexcept
{
    if (text != text_)
        SysFreeString(std::exchange(text_, text));
}

BSTR* BStr::put() noexcept
{
    attach(nullptr);
    return &text_;
}
} // namespace tarn
