#include <tarn/RegistryKey.h>

#include <tarn/RegistryValue.h>

#include "../foundation/Check.h"
#include "../foundation/NumericCast.h"
#include "ValueData.h"

#include <optional>
#include <utility>

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

template <class Ch> std::optional<unsigned long> readDWord(HKEY key, const Ch* name)
{
    DWORD type = REG_NONE;
    DWORD data = 0;
    DWORD size = sizeof data;
    if (!query(key, name, &type, reinterpret_cast<BYTE*>(&data), &size, "Can't query DWORD registry value"))
        return std::nullopt;
    checkDWordType(type);
    checkDWordSize(size);
    return data;
}

template <class Ch> std::optional<unsigned long long> readQWord(HKEY key, const Ch* name)
{
    DWORD type = REG_NONE;
    unsigned long long data = 0;
    DWORD size = sizeof data;
    if (!query(key, name, &type, reinterpret_cast<BYTE*>(&data), &size, "Can't query QWORD registry value"))
        return std::nullopt;
    checkQWord(type, size);
    return data;
}

template <class Value> bool give(const std::optional<Value>& found, Value& value)
{
    if (found)
        value = *found;
    return found.has_value();
}

template <class Value> Value require(std::optional<Value> found, const char* what = "")
{
    if (!found)
        throwWindowsError(ERROR_FILE_NOT_FOUND, what);
    return *std::move(found);
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

template <class Ch> std::optional<BasicString<Ch>> readString(HKEY key, const Ch* name, bool expand)
{
    DWORD type = REG_NONE;
    ValueData data;
    if (!readValue(key, name, type, data, checkStringType))
        return std::nullopt;
    const BasicString<Ch> text = stringOf<Ch>(data);
    return expand && type == REG_EXPAND_SZ ? expanded(text) : text;
}

template <class Ch> BasicString<Ch> requireString(HKEY key, const Ch* name, bool expand)
{
    return require(readString(key, name, expand), "Registry value not found");
}

template <class Ch> BasicString<Ch> stringOr(HKEY key, const Ch* name, const Ch* defaultText, bool expand)
{
    std::optional<BasicString<Ch>> found = readString(key, name, expand);
    return found ? *std::move(found) : BasicString<Ch>(textOrEmpty(defaultText));
}

template <class Ch> std::optional<std::list<BasicString<Ch>>> readStrings(HKEY key, const Ch* name)
{
    DWORD type = REG_NONE;
    ValueData data;
    if (!readValue(key, name, type, data, checkStringsType))
        return std::nullopt;
    return stringsOf<Ch>(data);
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

template <class Ch> void writeString(HKEY key, const Ch* name, const Ch* text, DWORD type)
{
    const Ch* const written = textOrEmpty(text);
    writeText(key, name, written, std::char_traits<Ch>::length(written) + 1, type);
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

bool RegistryKey::getValue(const char* name, unsigned long& value) const { return give(readDWord(key_, name), value); }
bool RegistryKey::getValue(const wchar_t* name, unsigned long& value) const
{
    return give(readDWord(key_, name), value);
}
unsigned long RegistryKey::getDWordValue(const char* name) const { return require(readDWord(key_, name)); }
unsigned long RegistryKey::getDWordValue(const wchar_t* name) const { return require(readDWord(key_, name)); }
unsigned long RegistryKey::getDWordValue(const char* name, unsigned long defaultValue) const
{
    return readDWord(key_, name).value_or(defaultValue);
}
unsigned long RegistryKey::getDWordValue(const wchar_t* name, unsigned long defaultValue) const
{
    return readDWord(key_, name).value_or(defaultValue);
}

bool RegistryKey::getValue(const char* name, unsigned long long& value) const
{
    return give(readQWord(key_, name), value);
}
bool RegistryKey::getValue(const wchar_t* name, unsigned long long& value) const
{
    return give(readQWord(key_, name), value);
}
unsigned long long RegistryKey::getQWordValue(const char* name) const { return require(readQWord(key_, name)); }
unsigned long long RegistryKey::getQWordValue(const wchar_t* name) const { return require(readQWord(key_, name)); }
std::optional<unsigned long long> RegistryKey::findQWordValue(const char* name) const { return readQWord(key_, name); }
std::optional<unsigned long long> RegistryKey::findQWordValue(const wchar_t* name) const
{
    return readQWord(key_, name);
}
unsigned long long RegistryKey::getQWordValue(const char* name, unsigned long long defaultValue) const
{
    return readQWord(key_, name).value_or(defaultValue);
}
unsigned long long RegistryKey::getQWordValue(const wchar_t* name, unsigned long long defaultValue) const
{
    return readQWord(key_, name).value_or(defaultValue);
}

BasicString<char> RegistryKey::getStringValue(const char* name) const { return requireString(key_, name, false); }
BasicString<wchar_t> RegistryKey::getStringValue(const wchar_t* name) const { return requireString(key_, name, false); }
std::optional<BasicString<char>> RegistryKey::findStringValue(const char* name) const
{
    return readString(key_, name, false);
}
std::optional<BasicString<wchar_t>> RegistryKey::findStringValue(const wchar_t* name) const
{
    return readString(key_, name, false);
}
BasicString<char> RegistryKey::getStringValue(const char* name, const char* defaultText) const
{
    return stringOr(key_, name, defaultText, false);
}
BasicString<wchar_t> RegistryKey::getStringValue(const wchar_t* name, const wchar_t* defaultText) const
{
    return stringOr(key_, name, defaultText, false);
}

BasicString<char> RegistryKey::getExpandedStringValue(const char* name) const
{
    return requireString(key_, name, true);
}
BasicString<wchar_t> RegistryKey::getExpandedStringValue(const wchar_t* name) const
{
    return requireString(key_, name, true);
}
std::optional<BasicString<char>> RegistryKey::findExpandedStringValue(const char* name) const
{
    return readString(key_, name, true);
}
std::optional<BasicString<wchar_t>> RegistryKey::findExpandedStringValue(const wchar_t* name) const
{
    return readString(key_, name, true);
}
BasicString<char> RegistryKey::getExpandedStringValue(const char* name, const char* defaultText) const
{
    return stringOr(key_, name, defaultText, true);
}
BasicString<wchar_t> RegistryKey::getExpandedStringValue(const wchar_t* name, const wchar_t* defaultText) const
{
    return stringOr(key_, name, defaultText, true);
}

bool RegistryKey::getValue(const char* name, std::list<BasicString<char>>& strings) const
{
    return give(readStrings(key_, name), strings);
}
bool RegistryKey::getValue(const wchar_t* name, std::list<BasicString<wchar_t>>& strings) const
{
    return give(readStrings(key_, name), strings);
}
std::optional<std::list<BasicString<char>>> RegistryKey::findStringsValue(const char* name) const
{
    return readStrings(key_, name);
}
std::optional<std::list<BasicString<wchar_t>>> RegistryKey::findStringsValue(const wchar_t* name) const
{
    return readStrings(key_, name);
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
void RegistryKey::setValue(const char* name, unsigned long long value) const
{
    write(key_, name, &value, sizeof value, REG_QWORD);
}
void RegistryKey::setValue(const wchar_t* name, unsigned long long value) const
{
    write(key_, name, &value, sizeof value, REG_QWORD);
}
void RegistryKey::setValue(const char* name, const char* text) const { writeString(key_, name, text, REG_SZ); }
void RegistryKey::setValue(const wchar_t* name, const wchar_t* text) const { writeString(key_, name, text, REG_SZ); }
void RegistryKey::setExpandableValue(const char* name, const char* text) const
{
    writeString(key_, name, text, REG_EXPAND_SZ);
}
void RegistryKey::setExpandableValue(const wchar_t* name, const wchar_t* text) const
{
    writeString(key_, name, text, REG_EXPAND_SZ);
}
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
