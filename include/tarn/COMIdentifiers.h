#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

namespace tarn {
/// The symbolic name of an `HRESULT`, from the list of names installed on the machine. Never fails for
/// lack of a name: the answer is then "HRESULT value " and the value in lower-case hexadecimal, closed by
/// one terminating zero that is part of the string (append its `c_str()` where that matters).
///
/// Two lists can be installed, this one and that of toAString(const GUID&, bool). The string values
/// "HRESULTs.txt" and "GUIDs.txt" of the key
/// "Software\{8900105B-76C1-46DE-ACE4-F9A052866F80}\Files" under `HKEY_LOCAL_MACHINE` hold the paths of
/// two text files in the system's code page: the first with records of a value in hexadecimal, a name and,
/// if you like, a comment between double quotes; the second with records of an identifier in braces and a
/// name, all separated by white space. tools/com-names writes both from the platform's headers. Each list
/// is read at the first look-up of its kind and kept; one that is missing is empty.
TARN_API BasicString<char> getHRESULTIdentifier(long hr);
} // namespace tarn
