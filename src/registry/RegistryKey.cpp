#include <tarn/RegistryKey.h>

#include "../foundation/Check.h"
#include "RegistryApi.h"

#include <utility>

namespace tarn {
namespace {
template <class Ch> HKEY openExisting(HKEY parent, const Ch* subkey, unsigned long access)
{
    HKEY key = nullptr;
    const LSTATUS code = regOpenKey(parent, subkey, access, &key);
    ensureCode(code, code == ERROR_FILE_NOT_FOUND ? "Registry key not found" : "");
    return key;
}

template <class Ch> HKEY openOrNull(HKEY parent, const Ch* subkey, unsigned long access)
{
    HKEY key = nullptr;
    const LSTATUS code = regOpenKey(parent, subkey, access, &key);
    if (code == ERROR_FILE_NOT_FOUND)
        return nullptr;
    ensureCode(code);
    return key;
}

template <class Ch>
HKEY createKey(HKEY parent, const Ch* subkey, const Ch* className, unsigned long options, unsigned long access,
               SECURITY_ATTRIBUTES* security, unsigned long* disposition)
{
    HKEY key = nullptr;
    ensureCode(regCreateKey(parent, subkey, className, options, access, security, &key, disposition));
    return key;
}

template <class Ch> bool opens(HKEY parent, const Ch* subkey)
{
    HKEY key = nullptr;
    if (regOpenKey(parent, subkey, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

// The predefined roots are constants and no handles of the kernel's: they cannot be duplicated, and
// closing one does nothing.
bool isRoot(HKEY key) { return (reinterpret_cast<ULONG_PTR>(key) & 0x80000000) != 0; }

HKEY duplicate(HKEY key)
{
    if (!key || isRoot(key))
        return key;
    HANDLE copy = nullptr;
    ensure(DuplicateHandle(GetCurrentProcess(), key, GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS),
           "Can't duplicate registry key handle");
    return static_cast<HKEY>(copy);
}
} // namespace

RegistryKey::RegistryKey(HKEY parent, const char* subkey, unsigned long access)
    : owns_(true), key_(openExisting(parent, subkey, access))
{
}
RegistryKey::RegistryKey(HKEY parent, const wchar_t* subkey, unsigned long access)
    : owns_(true), key_(openExisting(parent, subkey, access))
{
}

RegistryKey::RegistryKey(const RegistryKey& other)
    : owns_(other.owns_), key_(other.owns_ ? duplicate(other.key_) : other.key_)
{
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept
    : owns_(std::exchange(other.owns_, false)), key_(std::exchange(other.key_, nullptr))
{
}

RegistryKey& RegistryKey::operator=(const RegistryKey& other)
{
    if (this != &other)
        *this = RegistryKey(other);
    return *this;
}

RegistryKey& RegistryKey::operator=(RegistryKey&& other)
{
    if (this != &other) {
        close();
        owns_ = std::exchange(other.owns_, false);
        key_ = std::exchange(other.key_, nullptr);
    }
    return *this;
}

RegistryKey::~RegistryKey()
{
    if (owns_)
        RegCloseKey(key_);
}

bool RegistryKey::open(HKEY parent, const char* subkey, unsigned long access)
{
    attach(nullptr, false);
    key_ = openOrNull(parent, subkey, access);
    owns_ = isOpen();
    return owns_;
}
bool RegistryKey::open(HKEY parent, const wchar_t* subkey, unsigned long access)
{
    attach(nullptr, false);
    key_ = openOrNull(parent, subkey, access);
    owns_ = isOpen();
    return owns_;
}

void RegistryKey::create(HKEY parent, const char* subkey, unsigned long access)
{
    create(parent, subkey, nullptr, 0, access, nullptr, nullptr);
}
void RegistryKey::create(HKEY parent, const wchar_t* subkey, unsigned long access)
{
    create(parent, subkey, nullptr, 0, access, nullptr, nullptr);
}
void RegistryKey::create(HKEY parent, const char* subkey, const char* className, unsigned long options,
                         unsigned long access, SECURITY_ATTRIBUTES* security, unsigned long* disposition)
{
    attach(nullptr, false);
    key_ = createKey(parent, subkey, className, options, access, security, disposition);
}
void RegistryKey::create(HKEY parent, const wchar_t* subkey, const wchar_t* className, unsigned long options,
                         unsigned long access, SECURITY_ATTRIBUTES* security, unsigned long* disposition)
{
    attach(nullptr, false);
    key_ = createKey(parent, subkey, className, options, access, security, disposition);
}

void RegistryKey::close()
{
    if (owns_)
        ensureCode(RegCloseKey(key_));
    owns_ = false;
}

void RegistryKey::attach(HKEY key, bool owns)
{
    close();
    key_ = key;
    owns_ = owns;
}

HKEY RegistryKey::detach()
{
    owns_ = false;
    return std::exchange(key_, nullptr);
}

void RegistryKey::flush() const { ensureCode(RegFlushKey(key_)); }

bool RegistryKey::existsKey(const char* subkey) const { return opens(key_, subkey); }
bool RegistryKey::existsKey(const wchar_t* subkey) const { return opens(key_, subkey); }
bool RegistryKey::existsKey(HKEY parent, const char* subkey) { return opens(parent, subkey); }
bool RegistryKey::existsKey(HKEY parent, const wchar_t* subkey) { return opens(parent, subkey); }

void RegistryKey::deleteKey(const char* subkey) const { ensureCode(regDeleteKey(key_, subkey)); }
void RegistryKey::deleteKey(const wchar_t* subkey) const { ensureCode(regDeleteKey(key_, subkey)); }
} // namespace tarn
