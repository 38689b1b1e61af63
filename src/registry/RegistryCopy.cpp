#include <tarn/RegistryKey.h>

#include <tarn/RegistryValue.h>

#include "../foundation/Check.h"
#include "RegistryApi.h"

#include <list>
#include <utility>

namespace tarn {
namespace {
/// What a key holds, read into memory.
struct Content {
    std::list<std::pair<BasicString<wchar_t>, RegistryValue<wchar_t>>> values;
    struct Subkey;
    std::list<Subkey> subkeys;
};

struct Content::Subkey {
    BasicString<wchar_t> name;
    BasicString<wchar_t> className;
    Content content;
};

// What disappears between the listing and the reading was not there to be copied.
Content readContent(const RegistryKey& source)
{
    Content content;
    for (const auto& entry : RegistryKey::ValueEnumeration<wchar_t>(source)) {
        RegistryValue<wchar_t> value;
        if (source.getValue(entry.name, value))
            content.values.emplace_back(entry.name, std::move(value));
    }
    for (const auto& entry : RegistryKey::KeyEnumeration<wchar_t>(source)) {
        RegistryKey subkey;
        if (subkey.open(source, entry.name, KEY_READ))
            content.subkeys.push_back({entry.name, entry.className, readContent(subkey)});
    }
    return content;
}

void writeContent(const RegistryKey& target, const Content& content)
{
    for (const auto& [name, value] : content.values)
        target.setValue(name, value);
    for (const Content::Subkey& subkey : content.subkeys) {
        RegistryKey key;
        key.create(target, subkey.name, subkey.className, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, nullptr);
        key.attach(key.detach(), true);
        writeContent(key, subkey.content);
    }
}
} // namespace

void RegistryKey::AddContentFrom(const RegistryKey& source) const { writeContent(*this, readContent(source)); }

RegistryKey& RegistryKey::operator+=(const RegistryKey& source)
{
    AddContentFrom(source);
    return *this;
}
} // namespace tarn
