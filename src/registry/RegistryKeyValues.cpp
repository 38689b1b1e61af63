#include <tarn/RegistryKey.h>

#include <tarn/RegistryValue.h>

#include "../foundation/Check.h"
#include "../foundation/NumericCast.h"
#include "ValueData.h"

namespace tarn {
namespace {
template <class Ch> bool query(HKEY key, const Ch* name, DWORD* type, BYTE* data, DWORD* size, const char* what = "")
{
    const LSTATUS code = regQueryValue(key, name, type, data, size);
    if (code == ERROR_FILE_NOT_FOUND)
        return false;
    ensureCode(code, what);
    return true;
}

template <class Ch> bool readDWord(HKEY key, const Ch* name, unsigned long& value)
{
    DWORD type = REG_NONE;
    DWORD data = 0;
    DWORD size = sizeof data;
    if (!query(key, name, &type, reinterpret_cast<BYTE*>(&data), &size, "Can't query DWORD registry value"))
        return false;
    checkDWordType(type);
    checkDWordSize(size);
    value = data;
    return true;
}

template <class Ch> unsigned long requireDWord(HKEY key, const Ch* name)
{
    unsigned long value = 0;
    if (!readDWord(key, name, value))
        throwWindowsError(ERROR_FILE_NOT_FOUND);
    return value;
}

// As the environment has it: a variable that it lacks stays as it is written.
template <class Ch> BasicString<Ch> expanded(const BasicString<Ch>& text)
{
    BasicString<Ch> result;
    for (DWORD size = 0, needed = numericCast<DWORD>(text.size() + 1); size < needed;) {
        resizeOrThrow(result, size = needed);
        needed = ensure(expandEnvironmentStrings(text.c_str(), result.data(), size), "Can't expand registry value");
    }
    result.resize(std::min(result.find(Ch()), result.size()));
    return result;
}

template <class Ch> BasicString<Ch> readString(HKEY key, const Ch* name, bool expand)
{
    DWORD type = REG_NONE;
    ValueData data;
    if (!readValue(key, name, type, data, checkStringType))
        throwWindowsError(ERROR_FILE_NOT_FOUND, "Registry value not found");
    const BasicString<Ch> text = stringOf<Ch>(data);
    return expand && type == REG_EXPAND_SZ ? expanded(text) : text;
}

template <class Ch> bool readStrings(HKEY key, const Ch* name, std::list<BasicString<Ch>>& strings)
{
    DWORD type = REG_NONE;
    ValueData data;
    if (!readValue(key, name, type, data, checkStringsType))
        return false;
    strings = stringsOf<Ch>(data);
    return true;
}

template <class Ch> bool readAny(HKEY key, const Ch* name, RegistryValue<Ch>& value)
{
    DWORD type = REG_NONE;
    ValueData data;
    if (!readValue(key, name, type, data, [](DWORD) {}))
        return false;
    value = RegistryValue<Ch>(data.data(), numericCast<DWORD>(data.size()), type);
    return true;
}

template <class Ch> unsigned long sizeOf(HKEY key, const Ch* name)
{
    DWORD size = 0;
    ensureCode(regQueryValue(key, name, nullptr, nullptr, &size));
    return size;
}

template <class Ch> unsigned long typeOf(HKEY key, const Ch* name)
{
    DWORD type = REG_NONE;
    ensureCode(regQueryValue(key, name, &type, nullptr, nullptr));
    return type;
}

template <class Ch> bool isValue(HKEY key, const Ch* name)
{
    return query(key, name, nullptr, nullptr, nullptr, "Error in checking registry value existance"); // sic
}

template <class Ch> void write(HKEY key, const Ch* name, const void* data, std::size_t sizeInBytes, DWORD type)
{
    ensureCode(regSetValue(key, name, type, static_cast<const BYTE*>(data), numericCast<DWORD>(sizeInBytes)));
}

// `text` includes its terminators.
template <class Ch> void writeText(HKEY key, const Ch* name, const Ch* text, std::size_t lengthInChars, DWORD type)
{
    write(key, name, text, lengthInChars * sizeof(Ch), type);
}

template <class Ch> void writeString(HKEY key, const Ch* name, const Ch* text)
{
    const Ch* const written = textOrEmpty(text);
    writeText(key, name, written, std::char_traits<Ch>::length(written) + 1, REG_SZ);
}

template <class Ch> void writeStrings(HKEY key, const Ch* name, const std::list<BasicString<Ch>>& strings)
{
    const BasicString<Ch> text = joined(strings);
    writeText(key, name, text.data(), text.size(), REG_MULTI_SZ);
}

// The platform looks at the character behind a text that ends without a terminator, and stores it too
// when it is zero. With other bytes there the value is written as it was read.
template <class Ch> void writeAny(HKEY key, const Ch* name, const RegistryValue<Ch>& value)
{
    ValueData data(value.getData(), value.getData() + value.getSize());
    data.insert(data.end(), sizeof(wchar_t), 0xFF);
    write(key, name, data.data(), value.getSize(), value.getType());
}
} // namespace

bool RegistryKey::getValue(const char* name, unsigned long& value) const { return readDWord(key_, name, value); }
bool RegistryKey::getValue(const wchar_t* name, unsigned long& value) const { return readDWord(key_, name, value); }
unsigned long RegistryKey::getDWordValue(const char* name) const { return requireDWord(key_, name); }
unsigned long RegistryKey::getDWordValue(const wchar_t* name) const { return requireDWord(key_, name); }

BasicString<char> RegistryKey::getStringValue(const char* name) const { return readString(key_, name, false); }
BasicString<wchar_t> RegistryKey::getStringValue(const wchar_t* name) const { return readString(key_, name, false); }

BasicString<char> RegistryKey::getExpandedStringValue(const char* name) const { return readString(key_, name, true); }
BasicString<wchar_t> RegistryKey::getExpandedStringValue(const wchar_t* name) const
{
    return readString(key_, name, true);
}

bool RegistryKey::getValue(const char* name, std::list<BasicString<char>>& strings) const
{
    return readStrings(key_, name, strings);
}
bool RegistryKey::getValue(const wchar_t* name, std::list<BasicString<wchar_t>>& strings) const
{
    return readStrings(key_, name, strings);
}

bool RegistryKey::getValue(const char* name, unsigned char* data, unsigned long& size, unsigned long& type) const
{
    return query(key_, name, &type, data, &size);
}
bool RegistryKey::getValue(const wchar_t* name, unsigned char* data, unsigned long& size, unsigned long& type) const
{
    return query(key_, name, &type, data, &size);
}
bool RegistryKey::getValue(const char* name, unsigned char* data, unsigned long size) const
{
    return query(key_, name, nullptr, data, &size);
}
bool RegistryKey::getValue(const wchar_t* name, unsigned char* data, unsigned long size) const
{
    return query(key_, name, nullptr, data, &size);
}

bool RegistryKey::getValue(const char* name, RegistryValue<char>& value) const { return readAny(key_, name, value); }
bool RegistryKey::getValue(const wchar_t* name, RegistryValue<wchar_t>& value) const
{
    return readAny(key_, name, value);
}

unsigned long RegistryKey::getValueSize(const char* name) const { return sizeOf(key_, name); }
unsigned long RegistryKey::getValueSize(const wchar_t* name) const { return sizeOf(key_, name); }
unsigned long RegistryKey::GetValueType(const char* name) const { return typeOf(key_, name); }
unsigned long RegistryKey::GetValueType(const wchar_t* name) const { return typeOf(key_, name); }
bool RegistryKey::existsValue(const char* name) const { return isValue(key_, name); }
bool RegistryKey::existsValue(const wchar_t* name) const { return isValue(key_, name); }

void RegistryKey::setValue(const char* name, unsigned long value) const
{
    write(key_, name, &value, sizeof value, REG_DWORD);
}
void RegistryKey::setValue(const wchar_t* name, unsigned long value) const
{
    write(key_, name, &value, sizeof value, REG_DWORD);
}
void RegistryKey::setValue(const char* name, const char* text) const { writeString(key_, name, text); }
void RegistryKey::setValue(const wchar_t* name, const wchar_t* text) const { writeString(key_, name, text); }
void RegistryKey::setValue(const char* name, const std::list<BasicString<char>>& strings) const
{
    writeStrings(key_, name, strings);
}
void RegistryKey::setValue(const wchar_t* name, const std::list<BasicString<wchar_t>>& strings) const
{
    writeStrings(key_, name, strings);
}
void RegistryKey::setValue(const char* name, const unsigned char* data, unsigned long sizeInBytes,
                           unsigned long type) const
{
    write(key_, name, data, sizeInBytes, type);
}
void RegistryKey::setValue(const wchar_t* name, const unsigned char* data, unsigned long sizeInBytes,
                           unsigned long type) const
{
    write(key_, name, data, sizeInBytes, type);
}
void RegistryKey::setValue(const char* name, const RegistryValue<char>& value) const { writeAny(key_, name, value); }
void RegistryKey::setValue(const wchar_t* name, const RegistryValue<wchar_t>& value) const
{
    writeAny(key_, name, value);
}

void RegistryKey::deleteValue(const char* name) const
{
    ensureCode(regDeleteValue(key_, name), "Can't delete registry value");
}
void RegistryKey::deleteValue(const wchar_t* name) const
{
    ensureCode(regDeleteValue(key_, name), "Can't delete registry value");
}
} // namespace tarn
