#include "RegistryChanges.h"

#include <tarn/RegistryValue.h>

#include "../foundation/Closing.h"

#include <utility>

// Each way back is noted before its change: without the memory for it nothing is changed.

namespace tarn {
RegistryChanges::~RegistryChanges()
{
    for (; !undo_.empty(); undo_.pop_back())
        closeQuietly(undo_.back());
}

RegistryKey RegistryChanges::createKey(const RegistryKey& parent, const BasicString<wchar_t>& path)
{
    const std::size_t end = path.find(L'\\');
    const BasicString<wchar_t> name(path.substr(0, end));
    if (RegistryKey present; !present.open(parent, name, KEY_QUERY_VALUE)) {
        undo_.push_back([parent, name] {
            RegistryKey key;
            if (key.open(parent, name, KEY_READ) && !key.hasSubkeys() && key.getValueCount() == 0)
                parent.deleteKey(name);
        });
    }
    RegistryKey key = RegistryKey::createOwned(parent, name, KEY_READ | KEY_WRITE);
    return end == path.npos ? key : createKey(key, BasicString<wchar_t>(path.substr(end + 1)));
}

void RegistryChanges::setText(const RegistryKey& key, const wchar_t* name, const BasicString<wchar_t>& text)
{
    restoreAtEnd(key, name);
    key.setValue(name, text);
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
    if (key.getValue(name, value))
        undo_.push_back([key, name, value] { key.setValue(name, value); });
    else
        undo_.push_back([key, name] {
            if (key.existsValue(name))
                key.deleteValue(name);
        });
}
} // namespace tarn
