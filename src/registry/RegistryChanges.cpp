#include "RegistryChanges.h"

namespace tarn {
RegistryKey RegistryChanges::createKey(const RegistryKey& parent, const BasicString<wchar_t>& path)
{
    const std::size_t end = path.find(L'\\');
    const BasicString<wchar_t> name(path.substr(0, end));
    RegistryKey present;
    if (!present.open(parent, name, KEY_READ)) {
        note([parent, name] {
            RegistryKey key;
            if (key.open(parent, name, KEY_READ) && !key.hasSubkeys() && key.getValueCount() == 0)
                parent.deleteKey(name);
        });
    } else if (end != path.npos) { // Perhaps it may not be written.
        return createKey(present, BasicString<wchar_t>(path.substr(end + 1)));
    }
    RegistryKey key = RegistryKey::createOwned(parent, name, KEY_READ | KEY_WRITE);
    return end == path.npos ? key : createKey(key, BasicString<wchar_t>(path.substr(end + 1)));
}

void RegistryChanges::setValue(const RegistryKey& key, const wchar_t* name, const RegistryValue<wchar_t>& value)
{
    restoreAtEnd(key, name);
    key.setValue(name, value);
}

void RegistryChanges::deleteValue(const RegistryKey& key, const wchar_t* name)
{
    if (!key.existsValue(name))
        return;
    restoreAtEnd(key, name);
    key.deleteValue(name);
}

void RegistryChanges::restoreAtEnd(const RegistryKey& key, const wchar_t* name)
{
    RegistryValue<wchar_t> value;
    const BasicString<wchar_t> kept = name;
    if (key.getValue(name, value))
        note([key, kept, value] { key.setValue(kept, value); });
    else
        note([key, kept] {
            if (key.existsValue(kept))
                key.deleteValue(kept);
        });
}
} // namespace tarn
