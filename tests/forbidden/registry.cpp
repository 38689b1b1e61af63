#include <tarn/RegistryKey.h>

using tarn::RegistryKey;

void theFlagOfOwnershipIsNoText(const tarn::BasicString<wchar_t>& name)
{
    RegistryKey fine(HKEY_CURRENT_USER, FALSE);
    // forbidden: use of deleted function .*RegistryKey\(HKEY, T\)
    RegistryKey(HKEY_CURRENT_USER, "Software\\Sample").setValue("v", 1);
    // forbidden: use of deleted function .*RegistryKey\(HKEY, T\)
    RegistryKey(HKEY_CURRENT_USER, name).setValue("v", 1);
    // forbidden: use of deleted function .*RegistryKey\(HKEY, T\)
    RegistryKey(HKEY_CURRENT_USER, KEY_READ).setValue("v", 1);
    // forbidden: use of deleted function .*attach\(HKEY, T\)
    fine.attach(HKEY_CURRENT_USER, "Software\\Sample");
}
