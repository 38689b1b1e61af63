#include <tarn/GUID.h>

#include <tarn/Exception.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "GUIDOrder.h"

#include <objbase.h>

namespace tarn {
bool operator<(const GUID& a, const GUID& b) { return isLess(a, b); }

BasicString<wchar_t> toWString(const GUID& guid)
{
    wchar_t text[39];
    ensureGDI([&] { return StringFromGUID2(guid, text, static_cast<int>(std::size(text))); },
              "Can't convert a GUID to text");
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
        HRESULTHolder::throwOnError(hr, std::string("Can't convert " + quoted(text) + " to a GUID").c_str());
    return guid;
}

GUID newGUID()
{
    GUID guid;
    HRESULTHolder::throwOnError(CoCreateGuid(&guid), "Can't make a GUID");
    return guid;
}

GUID toGUID(const char* text) { return toGUID(BasicString<wchar_t>(text).c_str()); }
} // namespace tarn
