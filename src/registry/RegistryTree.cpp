#include <tarn/RegistryKey.h>

#include "../foundation/Check.h"
#include "NativeRegistry.h"
#include "RegistryApi.h"

// All keys below the first are opened by their wide names, because not every name can be written in the ANSI
// code page, and none through a link, which may lead back to a key above or out of the tree.

namespace tarn {
namespace {
/// A subkey, or the link that stands there, open until it goes.
template <class Name> class Subkey {
public:
    Subkey(HKEY parent, const Name& name, REGSAM view) : parent_(parent), name_(name), view_(view)
    {
        HKEY opened = nullptr;
        if (openItself(parent, name, KEY_ALL_ACCESS | view, &opened) != ERROR_SUCCESS)
            throwWindowsError(ERROR_FILE_NOT_FOUND, "Registry key not found");
        key_.attach(opened, true);
    }

    HKEY key() const { return key_; }
    void remove()
    {
        ensureCode(deleteItself(parent_, name_, view_, key_));
        key_.close();
    }

private:
    HKEY parent_;
    const Name& name_;
    REGSAM view_;
    RegistryKey key_;
};

template <class Name> void deleteTree(HKEY parent, const Name& name, REGSAM view)
{
    Subkey<Name> subkey(parent, name, view);
    for (const auto& inner : subkeyNames(subkey.key()))
        deleteTree(subkey.key(), inner, view);
    subkey.remove();
}

bool hasDefaultData(HKEY key)
{
    const LSTATUS code = regQueryValue(key, L"", nullptr, nullptr, nullptr);
    if (code == ERROR_FILE_NOT_FOUND)
        return false;
    ensureCode(code);
    DWORD size = 0;
    ensureCode(regQueryValue(key, L"", nullptr, nullptr, &size));
    return size > 0;
}

bool isEmpty(const RegistryKey& key) { return !key.hasSubkeys() && key.getValueCount() <= 1 && !hasDefaultData(key); }

template <class Name> void cleanTree(HKEY parent, const Name& name, REGSAM view)
{
    Subkey<Name> subkey(parent, name, view);
    for (const auto& inner : subkeyNames(subkey.key()))
        cleanTree(subkey.key(), inner, view);
    if (isEmpty(RegistryKey(subkey.key(), false)))
        subkey.remove();
}

// The platform takes no name for the key itself, which would be emptied before its deletion fails.
template <class Ch> const Ch* named(const Ch* subkey)
{
    if (!subkey)
        throwWindowsError(ERROR_INVALID_PARAMETER);
    return subkey;
}

template <class Ch> void deleteOne(HKEY parent, const Ch* subkey, REGSAM view)
{
    HKEY opened = nullptr;
    ensureCode(openItself(parent, named(subkey), DELETE | view, &opened));
    RegistryKey key(opened, true);
    ensureCode(deleteItself(parent, subkey, view, key));
    key.close();
}
} // namespace

void RegistryKey::deleteAllValues() const
{
    // Collected first: deleting while enumerating shifts the indices.
    for (const auto& entry : ValueEnumeration<wchar_t>(key_))
        ensureCode(tarn::deleteValue(key_, entry.name), "Can't delete registry value");
}

void RegistryKey::deleteKey(const char* subkey) const { deleteOne(key_, subkey, getView()); }
void RegistryKey::deleteKey(const wchar_t* subkey) const { deleteOne(key_, subkey, getView()); }
void RegistryKey::deleteKeyRecursive(const char* subkey) const { deleteTree(key_, named(subkey), getView()); }
void RegistryKey::deleteKeyRecursive(const wchar_t* subkey) const { deleteTree(key_, named(subkey), getView()); }
void RegistryKey::cleanEmptyTree(const char* subkey) const { cleanTree(key_, named(subkey), getView()); }
void RegistryKey::cleanEmptyTree(const wchar_t* subkey) const { cleanTree(key_, named(subkey), getView()); }
} // namespace tarn
