#pragma once

#include <tarn/GUID.h>

#include <istream>
#include <limits>
#include <locale>
#include <map>
#include <string>

// The two lists of names as texts. Reading ends at the end of the data or at what is no record.

namespace tarn {
using HRESULTNames = std::map<long, std::string>;
using GUIDNames = std::map<GUID, std::string>;

/// Records of a value in hexadecimal, a name and, if that follows, a comment between double quotes. Of
/// several names for one value the last counts.
inline HRESULTNames readHRESULTNames(std::istream& in)
{
    HRESULTNames names;
    in.imbue(std::locale::classic()); // Other locales group digits.
    in >> std::hex;
    unsigned long value;
    std::string name;
    while (in >> value >> name) {
        names[static_cast<long>(value)] = name;
        if ((in >> std::ws).peek() == '"') {
            in.get();
            in.ignore(std::numeric_limits<std::streamsize>::max(), '"');
        }
    }
    return names;
}

/// Records of an identifier in braces and a name. Throws COMError for a malformed identifier.
inline GUIDNames readGUIDNames(std::istream& in)
{
    GUIDNames names;
    std::string guid, name;
    while (in >> guid) {
        const GUID key = toGUID(guid.c_str());
        if (!(in >> name))
            break;
        names[key] = name;
    }
    return names;
}
} // namespace tarn
