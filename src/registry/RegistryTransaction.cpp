#include <tarn/RegistryTransaction.h>

#include <tarn/WindowsModule.h>

#include "../foundation/Check.h"
#include "../system/FreshHandle.h"

// Looked up when they are used: programs have to start on platforms that lack them.

namespace tarn {
namespace {
constexpr const char* notOpened = "Can't open registry key in transaction";
}

struct RegistryTransaction::Platform {
    using Create = HANDLE WINAPI(SECURITY_ATTRIBUTES*, GUID*, DWORD, DWORD, DWORD, DWORD, wchar_t*);
    using Commit = BOOL WINAPI(HANDLE);
    using CreateKey = LSTATUS WINAPI(HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, const SECURITY_ATTRIBUTES*,
                                     HKEY*, DWORD*, HANDLE, void*);
    using OpenKey = LSTATUS WINAPI(HKEY, const wchar_t*, DWORD, REGSAM, HKEY*, HANDLE, void*);
    using DeleteKey = LSTATUS WINAPI(HKEY, const wchar_t*, REGSAM, DWORD, HANDLE, void*);

    template <class Function> static Function* find(const WindowsModule& module, const char* name)
    {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(module.getProcAddress(name, false)));
    }

    WindowsModule transactions{"ktmw32.dll", true};
    WindowsModule registry{"advapi32.dll", true};
    Create* create = find<Create>(transactions, "CreateTransaction");
    Commit* commit = find<Commit>(transactions, "CommitTransaction");
    CreateKey* createKey = find<CreateKey>(registry, "RegCreateKeyTransactedW");
    OpenKey* openKey = find<OpenKey>(registry, "RegOpenKeyTransactedW");
    DeleteKey* deleteKey = find<DeleteKey>(registry, "RegDeleteKeyTransactedW");
};

bool RegistryTransaction::isAvailable()
{
    try {
        const RegistryTransaction probe;
        return true;
    } catch (const WindowsError&) {
        return false;
    }
}

RegistryTransaction::RegistryTransaction() : platform_(std::make_unique<Platform>())
{
    constexpr const char* failed = "Can't begin transaction";
    FreshHandle fresh(
        ensureNot(INVALID_HANDLE_VALUE, platform_->create(nullptr, nullptr, 0, 0, 0, 0, nullptr), failed));
    DWORD flags = 0;
    if (!GetHandleInformation(fresh.get(), &flags)) // Wine gives a number, and then does all at once.
        throwWindowsError(ERROR_CALL_NOT_IMPLEMENTED, failed);
    giveTo(transaction_, std::move(fresh));
}

RegistryTransaction::~RegistryTransaction() noexcept(false) = default;

RegistryKey RegistryTransaction::openKey(HKEY parent, const wchar_t* subkey, unsigned long access) const
{
    HKEY key = nullptr;
    ensureCode(platform_->openKey(parent, subkey, 0, access, &key, transaction_.getHandle(), nullptr), notOpened);
    return RegistryKey(key, true);
}

RegistryKey RegistryTransaction::createKey(HKEY parent, const wchar_t* subkey, unsigned long access) const
{
    HKEY key = nullptr;
    ensureCode(platform_->createKey(parent, subkey, 0, nullptr, 0, access, nullptr, &key, nullptr,
                                    transaction_.getHandle(), nullptr),
               notOpened);
    return RegistryKey(key, true);
}

void RegistryTransaction::deleteKey(HKEY parent, const wchar_t* subkey, unsigned long view) const
{
    ensureCode(platform_->deleteKey(parent, subkey, view, 0, transaction_.getHandle(), nullptr),
               "Can't delete registry key in transaction");
}

void RegistryTransaction::commit() { ensure(platform_->commit(transaction_.getHandle()), "Can't commit transaction"); }
} // namespace tarn
