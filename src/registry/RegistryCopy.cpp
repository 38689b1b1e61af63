#include <tarn/RegistryKey.h>

#include <tarn/RegistryValue.h>

#include "../foundation/Check.h"
#include "NativeRegistry.h"

#include <list>
#include <utility>

namespace tarn {
namespace {
using Text = BasicString<wchar_t>;

/// What a key holds, read into memory.
struct Content {
    struct Value {
        Text name;
        RegistryValue<wchar_t> value;
    };
    struct Subkey;

    std::list<Value> values;
    std::list<Subkey> subkeys;
};

struct Content::Subkey {
    Text name;
    Text className;
    bool isLink;
    Content content;
};

// The documented calls end a name at its first zero.
bool isCounted(const Text& name) { return name.find(L'\0') != Text::npos; }

bool readAnyValue(const RegistryKey& source, const Text& name, RegistryValue<wchar_t>& value)
{
    if (!isCounted(name))
        return source.getValue(name, value);
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    const LSTATUS code = queryValue(source, name, type, data);
    if (code == ERROR_FILE_NOT_FOUND)
        return false;
    ensureCode(code);
    value = RegistryValue<wchar_t>(data.data(), static_cast<unsigned long>(data.size()), type);
    return true;
}

void writeValue(const RegistryKey& target, const Text& name, const RegistryValue<wchar_t>& value)
{
    if (isCounted(name))
        ensureCode(setValue(target, name, value.getType(), value.getData(), value.getSize()));
    else
        target.setValue(name, value);
}

Text classOf(HKEY key)
{
    for (DWORD size = 300;; size *= 2) { // The call does not always tell how much it needs.
        Text name(size, L'\0');
        DWORD length = size;
        const LSTATUS code = RegQueryInfoKeyW(key, name.data(), &length, nullptr, nullptr, nullptr, nullptr, nullptr,
                                              nullptr, nullptr, nullptr, nullptr);
        if ((code == ERROR_MORE_DATA || code == ERROR_INSUFFICIENT_BUFFER) && size < 0x10000) // The latter under Wine.
            continue;
        ensureCode(code);
        name.resize(length);
        return name;
    }
}

// Links are opened themselves and not followed: they may lead back to a key that is being read.
// What disappears between the listing and the reading was not there to be copied.
Content readContent(const RegistryKey& source, REGSAM view)
{
    Content content;
    for (const auto& entry : RegistryKey::ValueEnumeration<wchar_t>(source)) {
        RegistryValue<wchar_t> value;
        if (readAnyValue(source, entry.name, value))
            content.values.push_back({entry.name, std::move(value)});
    }
    for (const Text& name : subkeyNames(source)) {
        HKEY opened = nullptr;
        const LSTATUS code = openItself(source, name, KEY_READ | view, &opened);
        if (code == ERROR_FILE_NOT_FOUND)
            continue;
        ensureCode(code);
        const RegistryKey subkey(opened, true);
        content.subkeys.push_back({name, classOf(subkey), isLink(subkey), readContent(subkey, view)});
    }
    return content;
}

RegistryKey create(const RegistryKey& target, const Content::Subkey& subkey, REGSAM view)
{
    const DWORD options = subkey.isLink ? REG_OPTION_CREATE_LINK : REG_OPTION_NON_VOLATILE;
    const REGSAM access = KEY_WRITE | (subkey.isLink ? KEY_CREATE_LINK : 0) | view;
    HKEY key = nullptr;
    LSTATUS code = createSubkey(target, subkey.name, subkey.className, options, access, &key);
    if (code == ERROR_CHILD_MUST_BE_VOLATILE)
        code = createSubkey(target, subkey.name, subkey.className, options | REG_OPTION_VOLATILE, access, &key);
    ensureCode(code);
    return RegistryKey(key, true);
}

void removeLink(const RegistryKey& target, const Text& name, REGSAM view)
{
    HKEY opened = nullptr;
    ensureCode(openItself(target, name, DELETE | view, &opened));
    const RegistryKey link(opened, true);
    ensureCode(deleteItself(target, name, view, link));
}

// Opened first, because Wine, other than Windows, gives the class name to a key that exists too; and never
// through a link, which may lead out of the target.
RegistryKey openOrCreate(const RegistryKey& target, const Content::Subkey& subkey, REGSAM view)
{
    HKEY opened = nullptr;
    const LSTATUS code = openItself(target, subkey.name, KEY_WRITE | KEY_QUERY_VALUE | view, &opened);
    if (code == ERROR_FILE_NOT_FOUND)
        return create(target, subkey, view);
    ensureCode(code);
    RegistryKey key(opened, true);
    if (isLink(key) == subkey.isLink)
        return key;
    if (subkey.isLink)
        throwWindowsError(ERROR_ALREADY_EXISTS, "Can't replace a registry key by a link");
    key.close();
    removeLink(target, subkey.name, view);
    return create(target, subkey, view);
}

void writeContent(const RegistryKey& target, const Content& content, REGSAM view)
{
    for (const Content::Value& entry : content.values)
        writeValue(target, entry.name, entry.value);
    for (const Content::Subkey& subkey : content.subkeys)
        writeContent(openOrCreate(target, subkey, view), subkey.content, view);
}
} // namespace

void RegistryKey::AddContentFrom(const RegistryKey& source) const
{
    writeContent(*this, readContent(source, source.getView()), getView());
}

RegistryKey& RegistryKey::operator+=(const RegistryKey& source)
{
    AddContentFrom(source);
    return *this;
}
} // namespace tarn
