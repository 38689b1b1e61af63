#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

#include <vector>

// What the documented calls of the registry cannot do: they end names at a zero, which names may hold, and
// (under Wine) delete what a link leads to in place of the link. All return a code as those calls do.

namespace tarn {
/// Opens a subkey or, where it is a symbolic link, the link itself.
///@{
LSTATUS openItself(HKEY parent, const char* subkey, REGSAM access, HKEY* key);
LSTATUS openItself(HKEY parent, const wchar_t* subkey, REGSAM access, HKEY* key);
LSTATUS openItself(HKEY parent, const BasicString<wchar_t>& subkey, REGSAM access, HKEY* key);
///@}

/// As RegCreateKeyEx.
LSTATUS createSubkey(HKEY parent, const BasicString<wchar_t>& subkey, const BasicString<wchar_t>& className,
                     DWORD options, REGSAM access, HKEY* key);

/// Deletes the key that `key`, opened by openItself() for DELETE, stands for.
///@{
LSTATUS deleteItself(HKEY parent, const char* subkey, REGSAM view, HKEY key);
LSTATUS deleteItself(HKEY parent, const wchar_t* subkey, REGSAM view, HKEY key);
LSTATUS deleteItself(HKEY parent, const BasicString<wchar_t>& subkey, REGSAM view, HKEY key);
///@}

/// Values by names with zeros. `queryValue` replaces the data; `type` and `data` stay when it fails.
///@{
LSTATUS queryValue(HKEY key, const BasicString<wchar_t>& name, DWORD& type, std::vector<BYTE>& data);
LSTATUS setValue(HKEY key, const BasicString<wchar_t>& name, DWORD type, const BYTE* data, DWORD size);
LSTATUS deleteValue(HKEY key, const BasicString<wchar_t>& name);
///@}

/// Whether the opened key is a link itself: it has its target as its only value. Throws WindowsError.
bool isLink(HKEY key);

/// The names of the subkeys, as they are now. Throws WindowsError.
std::vector<BasicString<wchar_t>> subkeyNames(HKEY key);

/// The flag of `access` that chooses the 32-bit or the 64-bit view, if any.
constexpr REGSAM viewOf(REGSAM access) { return access & (KEY_WOW64_32KEY | KEY_WOW64_64KEY); }
} // namespace tarn
