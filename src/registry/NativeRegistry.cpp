#include "NativeRegistry.h"

#include "../foundation/Check.h"
#include "../foundation/NativeCall.h"

#include <cstddef>

namespace tarn {
namespace {
using Text = BasicString<wchar_t>;

// The keys of other machines are no handles of the kernel's but odd numbers, as some of the roots are.
bool isRemote(HKEY key) { return (reinterpret_cast<ULONG_PTR>(key) & 1) != 0; }

template <class... Arguments> LSTATUS callNative(HKEY on, const char* function, Arguments... arguments)
{
    return isRemote(on) ? ERROR_NOT_SUPPORTED : static_cast<LSTATUS>(tarn::callNative(function, arguments...));
}

bool hasZero(const Text& name) { return name.find(L'\0') != Text::npos; }
} // namespace

LSTATUS openItself(HKEY parent, const char* subkey, REGSAM access, HKEY* key)
{
    return RegOpenKeyExA(parent, subkey, REG_OPTION_OPEN_LINK, access, key);
}

LSTATUS openItself(HKEY parent, const wchar_t* subkey, REGSAM access, HKEY* key)
{
    return RegOpenKeyExW(parent, subkey, REG_OPTION_OPEN_LINK, access, key);
}

LSTATUS openItself(HKEY parent, const Text& subkey, REGSAM access, HKEY* key)
{
    if (!hasZero(subkey))
        return openItself(parent, subkey.c_str(), access, key);
    CountedName name(subkey);
    OBJECT_ATTRIBUTES attributes = below(parent, name, OBJ_CASE_INSENSITIVE | OBJ_OPENLINK);
    return callNative(parent, "NtOpenKey", reinterpret_cast<HANDLE*>(key), ACCESS_MASK(access), &attributes);
}

LSTATUS createSubkey(HKEY parent, const Text& subkey, const Text& className, DWORD options, REGSAM access, HKEY* key)
{
    if (!hasZero(subkey))
        return RegCreateKeyExW(parent, subkey, 0, const_cast<wchar_t*>(className.c_str()), options, access, nullptr,
                               key, nullptr);
    CountedName name(subkey), classOf(className);
    OBJECT_ATTRIBUTES attributes = below(parent, name, OBJ_CASE_INSENSITIVE);
    return callNative(parent, "NtCreateKey", reinterpret_cast<HANDLE*>(key), ACCESS_MASK(access), &attributes, ULONG(0),
                      static_cast<UNICODE_STRING*>(&classOf), ULONG(options), static_cast<ULONG*>(nullptr));
}

LSTATUS deleteItself(HKEY parent, const char* subkey, REGSAM view, HKEY key)
{
    return isRemote(key) ? RegDeleteKeyExA(parent, subkey, view, 0) : callNative(key, "NtDeleteKey", HANDLE(key));
}

LSTATUS deleteItself(HKEY parent, const wchar_t* subkey, REGSAM view, HKEY key)
{
    return isRemote(key) ? RegDeleteKeyExW(parent, subkey, view, 0) : callNative(key, "NtDeleteKey", HANDLE(key));
}

LSTATUS deleteItself(HKEY parent, const Text& subkey, REGSAM view, HKEY key)
{
    return deleteItself(parent, subkey.c_str(), view, key);
}

LSTATUS queryValue(HKEY key, const Text& name, DWORD& type, std::vector<BYTE>& data)
{
    struct PartialInformation {
        ULONG titleIndex, type, size;
    };
    CountedName counted(name);
    std::vector<BYTE> buffer(sizeof(PartialInformation) + 256);
    for (;;) {
        ULONG needed = 0;
        const LSTATUS code =
            callNative(key, "NtQueryValueKey", HANDLE(key), static_cast<UNICODE_STRING*>(&counted), int(2),
                       static_cast<void*>(buffer.data()), static_cast<ULONG>(buffer.size()), &needed);
        if (code == ERROR_SUCCESS) {
            const auto* const found = reinterpret_cast<const PartialInformation*>(buffer.data());
            type = found->type;
            data.assign(buffer.data() + sizeof *found, buffer.data() + sizeof *found + found->size);
            return code;
        }
        if ((code != ERROR_MORE_DATA && code != ERROR_INSUFFICIENT_BUFFER) || needed <= buffer.size())
            return code;
        buffer.resize(needed);
    }
}

LSTATUS setValue(HKEY key, const Text& name, DWORD type, const BYTE* data, DWORD size)
{
    CountedName counted(name);
    return callNative(key, "NtSetValueKey", HANDLE(key), static_cast<UNICODE_STRING*>(&counted), ULONG(0), ULONG(type),
                      const_cast<void*>(static_cast<const void*>(data)), ULONG(size));
}

LSTATUS deleteValue(HKEY key, const Text& name)
{
    if (!hasZero(name))
        return RegDeleteValueW(key, name);
    CountedName counted(name);
    return callNative(key, "NtDeleteValueKey", HANDLE(key), static_cast<UNICODE_STRING*>(&counted));
}

bool isLink(HKEY key)
{
    DWORD type = REG_NONE, subkeys = 0, values = 0;
    const LSTATUS code = RegQueryValueExW(key, L"SymbolicLinkValue", nullptr, &type, nullptr, nullptr);
    if (code == ERROR_FILE_NOT_FOUND)
        return false;
    ensureCode(code);
    if (type != REG_LINK)
        return false;
    ensureCode(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr,
                                nullptr, nullptr));
    return subkeys == 0 && values == 1;
}

std::vector<Text> subkeyNames(HKEY key)
{
    std::vector<Text> names;
    for (DWORD index = 0;; ++index) {
        wchar_t name[256]; // The longest there is, and a zero.
        DWORD length = std::size(name);
        const LSTATUS code = RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (code == ERROR_NO_MORE_ITEMS)
            return names;
        ensureCode(code);
        names.emplace_back(name, length);
    }
}
} // namespace tarn
