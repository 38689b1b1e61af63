#include <tarn/IniString.h>

#include "../foundation/Check.h"
#include "../foundation/Memory.h"
#include "../foundation/NumericCast.h"
#include "../foundation/Quoted.h"
#include "IniApi.h"

namespace tarn {
namespace {
template <class Ch>
BasicString<Ch> readIniString(const Ch* file, const Ch* section, const Ch* key, const Ch* defaultValue)
{
    // A value cut short fills the buffer up to its terminator, a list of names up to its two.
    const DWORD terminators = section && key ? 1 : 2;
    BasicString<Ch> buffer;
    for (std::size_t size = 1000;; size *= 2) {
        resizeOrThrow(buffer, size);
        const DWORD length =
            getPrivateProfileString(section, key, defaultValue, buffer.data(), numericCast<DWORD>(size), file);
        if (length < size - terminators) {
            buffer.resize(length);
            return buffer;
        }
    }
}

template <class Ch> bool hasAny(const Ch* text, const char* characters)
{
    const BasicString<Ch> all(text), wanted(characters);
    return all.find_first_of(wanted) != all.npos;
}

// What reading gives of a value.
template <class Ch> BasicString<Ch> withoutBlanksAndQuotes(const Ch* value)
{
    BasicString<Ch> text = BasicString<Ch>(value).trim();
    const bool isQuoted = text.size() > 1 && text.front() == text.back() && (text[0] == '"' || text[0] == '\'');
    return isQuoted ? BasicString<Ch>(text.substr(1, text.size() - 2)) : text;
}

// Whether what was written can be read again. Compares lengths, because the code page may lack a character.
template <class Ch> bool isStored(const Ch* file, const Ch* section, const Ch* key, const Ch* value)
{
    const bool isReadable = !hasAny(section, "]") && !hasAny(key, "=") && *key != ';' && *key != '[';
    constexpr const Ch* nothing = nullptr;
    writePrivateProfileString(nothing, nothing, nothing, file); // Forgets what the platform has kept of the file.
    const Ch missing[] = {1, 0};
    const BasicString<Ch> stored = isReadable ? readIniString(file, section, key, missing) : BasicString<Ch>(value);
    return stored != missing && stored.size() >= withoutBlanksAndQuotes(value).size();
}

template <class Ch> void writeIniString(const Ch* file, const Ch* section, const Ch* key, const Ch* value)
{
    const auto failed = [&] {
        return "Can't write private profile string " + quoted(file) + " : [" + section + "] " + key + "=" +
               quoted(value);
    };
    // Behind a line break there would be an entry of its own.
    if (hasAny(section, "\r\n") || hasAny(key, "\r\n") || hasAny(value, "\r\n"))
        throwError(WindowsError(ERROR_INVALID_PARAMETER, failed()));
    ensure(writePrivateProfileString(section, key, value, file), failed);
    // On a full disk the platform cuts the file and reports success.
    if (section && key && *key && value && !isStored(file, section, key, value))
        throwError(WindowsError(ERROR_DISK_FULL, failed()));
}
} // namespace

BasicString<char> getIniString(const char* file, const char* section, const char* key, const char* defaultValue)
{
    return readIniString(file, section, key, defaultValue);
}
BasicString<wchar_t> getIniString(const wchar_t* file, const wchar_t* section, const wchar_t* key,
                                  const wchar_t* defaultValue)
{
    return readIniString(file, section, key, defaultValue);
}

void setIniString(const char* file, const char* section, const char* key, const char* value)
{
    writeIniString(file, section, key, value);
}
void setIniString(const wchar_t* file, const wchar_t* section, const wchar_t* key, const wchar_t* value)
{
    writeIniString(file, section, key, value);
}
} // namespace tarn
