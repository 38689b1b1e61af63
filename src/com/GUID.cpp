#include <tarn/GUID.h>

#include <tarn/Exception.h>

#include "../foundation/Quoted.h"

#include <objbase.h>

#include <cstring>

namespace tarn {
namespace {
// The number whose order is that of eight bytes in memory. Tables of GUIDs compare a great many of them.
unsigned long long ordinal(const GUID& guid, std::size_t offset)
{
    unsigned long long value;
    std::memcpy(&value, reinterpret_cast<const char*>(&guid) + offset, sizeof value);
    return __builtin_bswap64(value);
}
} // namespace

bool operator<(const GUID& a, const GUID& b)
{
    const unsigned long long first = ordinal(a, 0), otherFirst = ordinal(b, 0);
    return first != otherFirst ? first < otherFirst : ordinal(a, 8) < ordinal(b, 8);
}

BasicString<wchar_t> toWString(const GUID& guid)
{
    wchar_t text[39];
    StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
    return BasicString<wchar_t>(static_cast<const wchar_t*>(text));
}

BasicString<wchar_t> toString(const GUID& guid) { return toWString(guid); }

GUID toGUID(const wchar_t* text)
{
    GUID guid = {};
    if (!text || !*text)
        return guid;
    const HRESULT hr = CLSIDFromString(text, &guid);
    if (FAILED(hr))
        HRESULTHolder::throwOnError(hr, ("Can't convert " + quoted(text) + " to a GUID").c_str());
    return guid;
}

GUID toGUID(const char* text) { return toGUID(BasicString<wchar_t>(text).c_str()); }
} // namespace tarn
