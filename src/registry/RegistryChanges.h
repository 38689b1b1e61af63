#pragma once

#include <tarn/BasicString.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>

#include "../foundation/UndoList.h"

namespace tarn {
/// Changes of the registry that are taken back at the end of the object, unless they are kept.
class RegistryChanges : public UndoList {
public:
    /// Opens a key, and makes it and those above it when they are missing. Made keys go again if they are empty then.
    RegistryKey createKey(const RegistryKey& parent, const BasicString<wchar_t>& path);
    void setValue(const RegistryKey& key, const wchar_t* name, const RegistryValue<wchar_t>& value);
    void deleteValue(const RegistryKey& key, const wchar_t* name); ///< One that is missing is no error.

private:
    void restoreAtEnd(const RegistryKey& key, const wchar_t* name);
};
} // namespace tarn
