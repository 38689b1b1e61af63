#include <tarn/RegistryKey.h>

#include <tarn/RegistryValue.h>

#include "../foundation/Check.h"

#include <algorithm>
#include <list>
#include <utility>

namespace tarn {
namespace {
/// What a key holds, read into memory.
struct Content {
    struct Value {
        BasicString<wchar_t> name;
        RegistryValue<wchar_t> value;
    };
    struct Subkey;

    std::list<Value> values;
    std::list<Subkey> subkeys;

    /// A symbolic link has its target as a value; a REG_LINK value of another name is one like any other.
    bool isLink() const
    {
        return std::ranges::any_of(values, [](const Value& entry) {
            return entry.name == L"SymbolicLinkValue" && entry.value.getType() == REG_LINK;
        });
    }
};

struct Content::Subkey {
    BasicString<wchar_t> name;
    BasicString<wchar_t> className;
    Content content;
};

// Links are opened themselves and not followed: they may lead back to a key that is being read.
// What disappears between the listing and the reading was not there to be copied.
Content readContent(const RegistryKey& source)
{
    Content content;
    for (const auto& entry : RegistryKey::ValueEnumeration<wchar_t>(source)) {
        RegistryValue<wchar_t> value;
        if (source.getValue(entry.name, value))
            content.values.push_back({entry.name, std::move(value)});
    }
    for (const auto& entry : RegistryKey::KeyEnumeration<wchar_t>(source)) {
        HKEY opened = nullptr;
        const LSTATUS code = RegOpenKeyExW(source, entry.name, REG_OPTION_OPEN_LINK, KEY_READ, &opened);
        if (code == ERROR_FILE_NOT_FOUND)
            continue;
        ensureCode(code);
        content.subkeys.push_back({entry.name, entry.className, readContent(RegistryKey(opened, true))});
    }
    return content;
}

// Opened first, because Wine, other than Windows, gives the class name to a key that exists too.
RegistryKey openOrCreate(const RegistryKey& target, const Content::Subkey& subkey)
{
    const bool link = subkey.content.isLink();
    HKEY key = nullptr;
    LSTATUS code = RegOpenKeyExW(target, subkey.name, link ? REG_OPTION_OPEN_LINK : 0, KEY_WRITE, &key);
    if (code == ERROR_FILE_NOT_FOUND)
        code = RegCreateKeyExW(target, subkey.name, 0, const_cast<wchar_t*>(subkey.className.c_str()),
                               link ? REG_OPTION_CREATE_LINK : REG_OPTION_NON_VOLATILE,
                               link ? KEY_WRITE | KEY_CREATE_LINK : KEY_WRITE, nullptr, &key, nullptr);
    ensureCode(code);
    return RegistryKey(key, true);
}

void writeContent(const RegistryKey& target, const Content& content)
{
    for (const Content::Value& entry : content.values)
        target.setValue(entry.name, entry.value);
    for (const Content::Subkey& subkey : content.subkeys)
        writeContent(openOrCreate(target, subkey), subkey.content);
}
} // namespace

void RegistryKey::AddContentFrom(const RegistryKey& source) const { writeContent(*this, readContent(source)); }

RegistryKey& RegistryKey::operator+=(const RegistryKey& source)
{
    AddContentFrom(source);
    return *this;
}
} // namespace tarn
