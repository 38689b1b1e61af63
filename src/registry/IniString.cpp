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

template <class Ch> void writeIniString(const Ch* file, const Ch* section, const Ch* key, const Ch* value)
{
    ensure(writePrivateProfileString(section, key, value, file), [&] {
        return "Can't write private profile string " + quoted(file) + " : [" + section + "] " + key + "=" +
               quoted(value);
    });
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
