#include <tarn/StringHelper.h>

#include <tarn/BasicString.h>
#include <tarn/Exception.h>

#include "Check.h"
#include "Memory.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <direct.h>
#include <locale>
#include <wchar.h>

namespace tarn {
char* StringHelper<char>::time(char* buffer) { return _strtime(buffer); }
char* StringHelper<char>::date(char* buffer) { return _strdate(buffer); }
int StringHelper<char>::vsnprintf(char* buffer, unsigned count, const char* format, va_list args)
{
    return _vsnprintf(buffer, count, format, args);
}
char* StringHelper<char>::lwr(char* s) { return _strlwr(s); }
char* StringHelper<char>::upr(char* s) { return _strupr(s); }
char* StringHelper<char>::tmpnam(char* buffer) { return ::tmpnam(buffer); }
char* StringHelper<char>::tempnam(const char* directory, const char* prefix) { return _tempnam(directory, prefix); }
char* StringHelper<char>::itos(int value, char* buffer, int radix) { return _itoa(value, buffer, radix); }
char* StringHelper<char>::ltos(long value, char* buffer, int radix) { return _ltoa(value, buffer, radix); }
int StringHelper<char>::tolower(int c) { return ::tolower(c); }
int StringHelper<char>::toupper(int c) { return ::toupper(c); }
int StringHelper<char>::atoi(const char* s) { return ::atoi(s); }
int StringHelper<char>::icmp(const char* a, const char* b) { return _stricmp(a, b); }
int StringHelper<char>::nicmp(const char* a, const char* b, unsigned n) { return _strnicmp(a, b, n); }
int StringHelper<char>::mkdir(const char* path) { return _mkdir(path); }

BasicString<char> StringHelper<char>::convert(const wchar_t* s, unsigned n, unsigned codePage)
{
    constexpr const char* noSize = "Can't retrieve required buffer size for wchar_t -> char conversion";
    const bool whole = n == ConstString<wchar_t>::wholeText;
    if (n == 0 || (whole && (!s || !*s)))
        return BasicString<char>();

    // More characters than the system can count is not "up to the zero", which any negative length is to it.
    if (!whole && n > INT_MAX)
        throwWindowsError(ERROR_INVALID_PARAMETER, noSize);
    const int length = static_cast<int>(n);
    const int size = ensure(WideCharToMultiByte(codePage, 0, s, length, nullptr, 0, nullptr, nullptr), noSize);
    BasicString<char> result;
    resizeOrThrow(result, static_cast<unsigned>(size));
    const int written = ensure(WideCharToMultiByte(codePage, 0, s, length, result.data(), size, nullptr, nullptr),
                               "Can't convert wchar_t -> char string");
    // The size includes the terminator when the system found the end itself.
    result.resize(static_cast<unsigned>(whole ? written - 1 : written));
    return result;
}

wchar_t* StringHelper<wchar_t>::time(wchar_t* buffer) { return _wstrtime(buffer); }
wchar_t* StringHelper<wchar_t>::date(wchar_t* buffer) { return _wstrdate(buffer); }
int StringHelper<wchar_t>::vsnprintf(wchar_t* buffer, unsigned count, const wchar_t* format, va_list args)
{
    return _vsnwprintf(buffer, count, format, args);
}
wchar_t* StringHelper<wchar_t>::lwr(wchar_t* s) { return _wcslwr(s); }
wchar_t* StringHelper<wchar_t>::upr(wchar_t* s) { return _wcsupr(s); }
wchar_t* StringHelper<wchar_t>::tmpnam(wchar_t* buffer) { return _wtmpnam(buffer); }
wchar_t* StringHelper<wchar_t>::tempnam(const wchar_t* directory, const wchar_t* prefix)
{
    return _wtempnam(directory, prefix);
}
wchar_t* StringHelper<wchar_t>::itos(int value, wchar_t* buffer, int radix) { return _itow(value, buffer, radix); }
wchar_t* StringHelper<wchar_t>::ltos(long value, wchar_t* buffer, int radix) { return _ltow(value, buffer, radix); }
int StringHelper<wchar_t>::tolower(int c) { return towlower(static_cast<wint_t>(c)); }
int StringHelper<wchar_t>::toupper(int c) { return towupper(static_cast<wint_t>(c)); }
int StringHelper<wchar_t>::atoi(const wchar_t* s) { return _wtoi(s); }
int StringHelper<wchar_t>::icmp(const wchar_t* a, const wchar_t* b) { return _wcsicmp(a, b); }
int StringHelper<wchar_t>::nicmp(const wchar_t* a, const wchar_t* b, unsigned n) { return _wcsnicmp(a, b, n); }
int StringHelper<wchar_t>::mkdir(const wchar_t* path) { return _wmkdir(path); }

namespace {
// At most `capacity` characters of terminated text; what an invalid byte cut off stays away.
BasicString<wchar_t> fromMultiByte(const char* s, std::size_t capacity)
{
    BasicString<wchar_t> result;
    resizeOrThrow(result, capacity);
    std::size_t length = mbstowcs(result.data(), s, capacity);
    if (length == static_cast<std::size_t>(-1))
        length = wcsnlen(result.data(), capacity);
    result.resize(length);
    return result;
}
} // namespace

BasicString<wchar_t> StringHelper<wchar_t>::convert(const char* s)
{
    if (!s || !*s)
        return BasicString<wchar_t>();
    const std::size_t length = mbstowcs(nullptr, s, 0);
    return fromMultiByte(s, length != static_cast<std::size_t>(-1) ? length : std::strlen(s));
}

BasicString<wchar_t> StringHelper<wchar_t>::convert(const char* s, unsigned n)
{
    if (n == ConstString<char>::wholeText)
        return convert(s);
    if (n == 0 || !s)
        return BasicString<wchar_t>();
    // A terminated copy, because mbstowcs would read on when n characters are more than n bytes.
    const std::string bytes(s, strnlen(s, n));
    return fromMultiByte(bytes.c_str(), bytes.size());
}

BasicString<wchar_t> a2w(const char* s, unsigned codePage)
{
    constexpr const char* failure = "Can't convert multi byte string to unicode";
    const int size = ensure(MultiByteToWideChar(codePage, 0, s, -1, nullptr, 0), failure);
    BasicString<wchar_t> result;
    resizeOrThrow(result, static_cast<unsigned>(size));
    ensure(MultiByteToWideChar(codePage, 0, s, -1, result.data(), size), failure);
    result.resize(static_cast<unsigned>(size - 1));
    return result;
}

BasicString<char> w2a(const wchar_t* s, unsigned codePage)
{
    return StringHelper<char>::convert(s, ConstString<wchar_t>::wholeText, codePage);
}

namespace {
template <class Ch> const Ch* skipSpaceIn(const Ch* begin, const Ch* end)
{
    const std::locale global;
    return std::use_facet<std::ctype<Ch>>(global).scan_not(std::ctype_base::space, begin, end);
}

template <class Ch> const Ch* endBeforeSpaceIn(const Ch* begin, const Ch* end)
{
    const std::locale global;
    const auto& type = std::use_facet<std::ctype<Ch>>(global);
    while (end != begin && type.is(std::ctype_base::space, end[-1]))
        --end;
    return end;
}
} // namespace

const char* detail::skipSpace(const char* begin, const char* end) { return skipSpaceIn(begin, end); }
const wchar_t* detail::skipSpace(const wchar_t* begin, const wchar_t* end) { return skipSpaceIn(begin, end); }
const char* detail::endBeforeSpace(const char* begin, const char* end) { return endBeforeSpaceIn(begin, end); }
const wchar_t* detail::endBeforeSpace(const wchar_t* begin, const wchar_t* end) { return endBeforeSpaceIn(begin, end); }

namespace {
// With no buffer the call yields the address and length of the text itself.
ConstString<wchar_t> resourceText(unsigned id, HINSTANCE module)
{
    const wchar_t* text = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? ConstString<wchar_t>(text, static_cast<unsigned>(length)) : ConstString<wchar_t>();
}
} // namespace

BasicString<char> detail::loadString(unsigned id, HINSTANCE module, const char*)
{
    const ConstString<wchar_t> text = resourceText(id, module);
    return StringHelper<char>::convert(text.data(), text.length());
}

BasicString<wchar_t> detail::loadString(unsigned id, HINSTANCE module, const wchar_t*)
{
    return resourceText(id, module);
}
} // namespace tarn
