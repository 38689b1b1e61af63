#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <cstddef>
#include <cstring>
#include <functional>

namespace tarn {
/// Orders identifiers as their 16 bytes lie in memory, each unsigned, so that they can be the keys of a
/// map. (Equality comes with the platform's headers.)
TARN_API bool operator<(const GUID& a, const GUID& b);

/// The text form "{00000000-0000-0000-C000-000000000046}", digits in upper case.
TARN_API BasicString<wchar_t> toWString(const GUID& guid);
/// The same in the build's character type, which is the wide one.
TARN_API BasicString<wchar_t> toString(const GUID& guid);
/// The text form, or with `lookUpName` the name of the interface, class or media format that the
/// identifier stands for ("IID_IUnknown", "CLSID_...", "FOURCC "YUY2""); the text form again when nothing
/// names it. Names come from the installed list of names (see COMIdentifiers.h) and from the registry.
/// Throws COMError when that list has a malformed identifier.
TARN_API BasicString<char> toAString(const GUID& guid, bool lookUpName = false);

/// The identifier that a text stands for: with braces and hyphens, or the name of a registered class
/// ("Scripting.Dictionary"). Null and "" are the null identifier.
/// Throws COMError "Can't convert "TEXT" to a GUID".
///@{
TARN_API GUID toGUID(const char* text);
TARN_API GUID toGUID(const wchar_t* text);
///@}
/// A new identifier, which no other has. Throws COMError "Can't make a GUID".
TARN_API GUID newGUID();
} // namespace tarn

// A map's std::less<GUID> looks only where GUID itself is declared.
using tarn::operator<;

/// For tables whose keys are identifiers.
template <> struct std::hash<GUID> {
    /// Mixes all 16 bytes: identifiers that are made one after the other differ in few of them.
    std::size_t operator()(const GUID& guid) const noexcept
    {
        unsigned long long halves[2];
        std::memcpy(halves, &guid, sizeof halves);
        const unsigned long long mixed = (halves[0] ^ (halves[1] * 0x9E3779B97F4A7C15)) * 0xFF51AFD7ED558CCD;
        return static_cast<std::size_t>(mixed ^ mixed >> 32);
    }
};
