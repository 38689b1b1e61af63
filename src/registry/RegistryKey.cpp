#include <tarn/RegistryKey.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "NativeRegistry.h"
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

template <class Ch> bool opens(HKEY parent, const Ch* subkey, unsigned long view)
{
    HKEY key = nullptr;
    if (regOpenKey(parent, subkey, KEY_QUERY_VALUE | viewOf(view), &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

// The predefined roots are constants and no handles of the kernel's: they cannot be duplicated, and
// closing one does nothing.
bool isRoot(HKEY key)
{
    const auto value = reinterpret_cast<LONG_PTR>(key);
    return value == static_cast<LONG>(value) && (static_cast<ULONG>(value) & 0xFFFFFF00) == 0x80000000;
}

// The kernel's handles are divisible by four. Others stand for a key of another machine, or for the merged view of
// the classes: a duplicate would be another thing.
bool isKernelHandle(HKEY key) { return (reinterpret_cast<ULONG_PTR>(key) & 3) == 0; }

HKEY duplicate(HKEY key, REGSAM view)
{
    if (!key || isRoot(key))
        return key;
    if (!isKernelHandle(key)) {
        HKEY copy = nullptr;
        ensureCode(RegOpenKeyExW(key, L"", REG_OPTION_OPEN_LINK, MAXIMUM_ALLOWED | view, &copy),
                   "Can't duplicate registry key handle");
        return copy;
    }
    HANDLE copy = nullptr;
    ensure(DuplicateHandle(GetCurrentProcess(), key, GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS),
           "Can't duplicate registry key handle");
    return static_cast<HKEY>(copy);
}

// What a key keeps of the access that it was opened with, in a byte.
unsigned char packedView(unsigned long access) { return static_cast<unsigned char>(viewOf(access) >> 8); }
} // namespace

RegistryKey::RegistryKey(HKEY parent, const char* subkey, unsigned long access)
    : owns_(true), view_(packedView(access)), key_(openExisting(parent, subkey, access))
{
}
RegistryKey::RegistryKey(HKEY parent, const wchar_t* subkey, unsigned long access)
    : owns_(true), view_(packedView(access)), key_(openExisting(parent, subkey, access))
{
}

RegistryKey::RegistryKey(const RegistryKey& other)
    : owns_(other.owns_), view_(other.view_), key_(other.owns_ ? duplicate(other.key_, other.getView()) : other.key_)
{
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept
    : owns_(std::exchange(other.owns_, false)), view_(std::exchange(other.view_, 0)),
      key_(std::exchange(other.key_, nullptr))
{
}

RegistryKey& RegistryKey::operator=(const RegistryKey& other)
{
    if (this != &other)
        *this = RegistryKey(other);
    return *this;
}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { close(); });
        owns_ = std::exchange(other.owns_, false);
        view_ = std::exchange(other.view_, 0);
        key_ = std::exchange(other.key_, nullptr);
    }
    return *this;
}

RegistryKey::~RegistryKey()
{
    if (owns_)
        RegCloseKey(key_);
}

template <class Ch> bool RegistryKey::openKey(HKEY parent, const Ch* subkey, unsigned long access)
{
    attach(nullptr, false);
    key_ = openOrNull(parent, subkey, access);
    owns_ = isOpen();
    view_ = packedView(owns_ ? access : 0);
    return owns_;
}

bool RegistryKey::open(HKEY parent, const char* subkey, unsigned long access)
{
    return openKey(parent, subkey, access);
}
bool RegistryKey::open(HKEY parent, const wchar_t* subkey, unsigned long access)
{
    return openKey(parent, subkey, access);
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
    view_ = packedView(access);
}
void RegistryKey::create(HKEY parent, const wchar_t* subkey, const wchar_t* className, unsigned long options,
                         unsigned long access, SECURITY_ATTRIBUTES* security, unsigned long* disposition)
{
    attach(nullptr, false);
    key_ = createKey(parent, subkey, className, options, access, security, disposition);
    view_ = packedView(access);
}

RegistryKey RegistryKey::createOwned(HKEY parent, const char* subkey, unsigned long access)
{
    return createOwned(parent, subkey, nullptr, 0, access, nullptr, nullptr);
}
RegistryKey RegistryKey::createOwned(HKEY parent, const wchar_t* subkey, unsigned long access)
{
    return createOwned(parent, subkey, nullptr, 0, access, nullptr, nullptr);
}
RegistryKey RegistryKey::createOwned(HKEY parent, const char* subkey, const char* className, unsigned long options,
                                     unsigned long access, SECURITY_ATTRIBUTES* security, unsigned long* disposition)
{
    RegistryKey key;
    key.create(parent, subkey, className, options, access, security, disposition);
    key.owns_ = true;
    return key;
}
RegistryKey RegistryKey::createOwned(HKEY parent, const wchar_t* subkey, const wchar_t* className,
                                     unsigned long options, unsigned long access, SECURITY_ATTRIBUTES* security,
                                     unsigned long* disposition)
{
    RegistryKey key;
    key.create(parent, subkey, className, options, access, security, disposition);
    key.owns_ = true;
    return key;
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
    view_ = 0;
}

HKEY RegistryKey::detach()
{
    owns_ = false;
    view_ = 0;
    return std::exchange(key_, nullptr);
}

void RegistryKey::flush() const { ensureCode(RegFlushKey(key_)); }

bool RegistryKey::existsKey(const char* subkey) const { return opens(key_, subkey, getView()); }
bool RegistryKey::existsKey(const wchar_t* subkey) const { return opens(key_, subkey, getView()); }
bool RegistryKey::existsKey(HKEY parent, const char* subkey, unsigned long view) { return opens(parent, subkey, view); }
bool RegistryKey::existsKey(HKEY parent, const wchar_t* subkey, unsigned long view)
{
    return opens(parent, subkey, view);
}
} // namespace tarn
