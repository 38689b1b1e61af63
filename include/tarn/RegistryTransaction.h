#pragma once

#include <tarn/Export.h>
#include <tarn/RegistryKey.h>
#include <tarn/WindowsHandle.h>

#include <memory>

namespace tarn {
/// Changes of the registry that count all at once, with commit(), or not at all, also when the machine stops:
///
///     RegistryTransaction transaction;
///     transaction.createKey(HKEY_CURRENT_USER, L"Software\\Example").setValue(L"Width", 640);
///     transaction.commit();
///
/// Until then nobody else sees them, and the end of the object forgets them. Not every platform has them: ask
/// isAvailable(). A ChangeList works everywhere, and for files, too. Failures throw WindowsError.
class TARN_API RegistryTransaction {
public:
    /// Looked up on this machine.
    static bool isAvailable();

    /// Throws "Can't begin transaction", and where the platform has none as WindowsModule does.
    RegistryTransaction();
    /// Neither copied nor moved.
    ///@{
    RegistryTransaction(const RegistryTransaction&) = delete;
    RegistryTransaction& operator=(const RegistryTransaction&) = delete;
    ///@}
    /// Forgets what was not committed. Throws "Error while closing handle".
    ~RegistryTransaction() noexcept(false);

    /// A key whose values can be read and written within the transaction; its subkeys take a key of their own from
    /// here. createKey() makes it if need be. Throw "Can't open registry key in transaction".
    ///@{
    RegistryKey openKey(HKEY parent, const wchar_t* subkey, unsigned long access = KEY_ALL_ACCESS) const;
    RegistryKey createKey(HKEY parent, const wchar_t* subkey, unsigned long access = KEY_ALL_ACCESS) const;
    ///@}
    /// One without subkeys. `view` is `KEY_WOW64_64KEY` or `KEY_WOW64_32KEY`, or 0 for the program's own. Throws "Can't
    /// delete registry key in transaction".
    void deleteKey(HKEY parent, const wchar_t* subkey, unsigned long view = 0) const;

    /// All counts, also after a power failure. To be called once. Throws "Can't commit transaction".
    void commit();

private:
    struct Platform;
    std::unique_ptr<Platform> platform_;
    WindowsHandle transaction_;
};
} // namespace tarn
