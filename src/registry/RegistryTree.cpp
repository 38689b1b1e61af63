#include <tarn/RegistryKey.h>

#include "../foundation/Check.h"
#include "RegistryApi.h"

namespace tarn {
namespace {
template <class Ch> constexpr Ch defaultValueName[] = {0};

template <class Ch> RegistryKey openForAll(HKEY parent, const Ch* subkey)
{
    RegistryKey key;
    HKEY opened = nullptr;
    if (regOpenKey(parent, subkey, KEY_ALL_ACCESS, &opened) != ERROR_SUCCESS)
        throwWindowsError(ERROR_FILE_NOT_FOUND, "Registry key not found");
    key.attach(opened, true);
    return key;
}

template <class Ch> void deleteTree(HKEY parent, const Ch* subkey)
{
    RegistryKey key = openForAll(parent, subkey);
    for (const auto& entry : RegistryKey::KeyEnumeration<Ch>(key))
        key.deleteKeyRecursive(entry.name);
    key.close();
    ensureCode(regDeleteKey(parent, subkey));
}

template <class Ch> bool hasDefaultData(HKEY key)
{
    const LSTATUS code = regQueryValue(key, defaultValueName<Ch>, nullptr, nullptr, nullptr);
    if (code == ERROR_FILE_NOT_FOUND)
        return false;
    ensureCode(code);
    DWORD size = 0;
    ensureCode(regQueryValue(key, defaultValueName<Ch>, nullptr, nullptr, &size));
    return size > 0;
}

template <class Ch> bool isEmpty(const RegistryKey& key)
{
    return !key.hasSubkeys() && key.getValueCount() <= 1 && !hasDefaultData<Ch>(key);
}

template <class Ch> void cleanTree(HKEY parent, const Ch* subkey)
{
    RegistryKey key = openForAll(parent, subkey);
    for (const auto& entry : RegistryKey::KeyEnumeration<Ch>(key))
        key.cleanEmptyTree(entry.name);
    if (!isEmpty<Ch>(key))
        return;
    key.close();
    ensureCode(regDeleteKey(parent, subkey));
}
} // namespace

void RegistryKey::deleteAllValues() const
{
    // Collected first: deleting while enumerating shifts the indices. By their wide names, because not
    // every name can be written in the ANSI code page.
    for (const auto& entry : ValueEnumeration<wchar_t>(key_))
        deleteValue(entry.name);
}

void RegistryKey::deleteKeyRecursive(const char* subkey) const { deleteTree(key_, subkey); }
void RegistryKey::deleteKeyRecursive(const wchar_t* subkey) const { deleteTree(key_, subkey); }
void RegistryKey::cleanEmptyTree(const char* subkey) const { cleanTree(key_, subkey); }
void RegistryKey::cleanEmptyTree(const wchar_t* subkey) const { cleanTree(key_, subkey); }
} // namespace tarn
