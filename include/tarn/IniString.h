#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

namespace tarn {
/// An entry of a private profile (an INI file), of any length; `defaultValue` when it is missing.
///
/// Give `file` with its folder: the platform looks for a bare name in the Windows folder. With a null
/// `key` the result is the list of the section's keys, with a null `section` that of the sections, each
/// name ended by a zero. Blanks and one pair of quotes round a value are not part of it. Never reports an
/// error: a file that cannot be read has no entries. Throws BadAllocation.
///@{
TARN_API BasicString<char> getIniString(const char* file, const char* section, const char* key,
                                        const char* defaultValue);
TARN_API BasicString<wchar_t> getIniString(const wchar_t* file, const wchar_t* section, const wchar_t* key,
                                           const wchar_t* defaultValue);
///@}

/// Writes an entry, and makes the file and the section when they are missing. A null `value` deletes the
/// entry, a null `key` the section. A wide text that the code page lacks is kept only when the file is
/// UTF-16 already: make it with the bytes FF FE first. Throws WindowsError "Can't write private profile
/// string "FILE" : [SECTION] KEY="VALUE"": with the code ERROR_INVALID_PARAMETER for a line break in a text, which
/// would write another entry, and with ERROR_DISK_FULL when the entry cannot be read again. The platform writes the
/// whole file anew, so that on a full disk other entries may be lost then.
///@{
TARN_API void setIniString(const char* file, const char* section, const char* key, const char* value);
TARN_API void setIniString(const wchar_t* file, const wchar_t* section, const wchar_t* key, const wchar_t* value);
///@}
} // namespace tarn
