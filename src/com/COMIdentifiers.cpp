#include <tarn/COMIdentifiers.h>

#include <tarn/Exception.h>
#include <tarn/GUID.h>
#include <tarn/RegistryKey.h>

#include "../foundation/Hex.h"
#include "NameLists.h"

#include <algorithm>
#include <fstream>

namespace tarn {
namespace {
// The text value of a key that need not be there.
template <class Ch> BasicString<Ch> findText(HKEY root, const Ch* path, const Ch* name)
{
    try {
        RegistryKey key;
        if (key.open(root, path, KEY_QUERY_VALUE) && key.existsValue(name))
            return key.getExpandedStringValue(name);
    } catch (const WindowsError&) { // It may not be read, or is no text: as good as missing.
    }
    return BasicString<Ch>();
}

// A missing list is an empty one.
std::ifstream openList(const wchar_t* valueName)
{
    std::ifstream list;
    const auto file =
        findText(HKEY_LOCAL_MACHINE, L"Software\\{8900105B-76C1-46DE-ACE4-F9A052866F80}\\Files", valueName);
    if (!file.empty())
        list.open(file.c_str(), std::ios::in | std::ios::binary);
    return list;
}

// Called while errors are being reported, so nothing comes out of it but the names that could be read.
HRESULTNames loadHRESULTNames() noexcept
{
    try {
        std::ifstream list = openList(L"HRESULTs.txt");
        return readHRESULTNames(list);
    } catch (...) {
        return HRESULTNames();
    }
}

GUIDNames loadGUIDNames()
{
    std::ifstream list = openList(L"GUIDs.txt");
    return readGUIDNames(list);
}

bool hasPattern(const GUID& guid, unsigned short data2, unsigned short data3, const unsigned char (&data4)[8])
{
    return guid.Data2 == data2 && guid.Data3 == data3 && std::equal(std::begin(data4), std::end(data4), guid.Data4);
}

// Manufacturers and products have 16-bit numbers, each an offset from the first identifier of its kind.
BasicString<char> numberedName(const char* format, unsigned long data1, unsigned long first)
{
    constexpr unsigned long count = 0xFFFF;
    if (data1 < first || data1 - first >= count)
        return BasicString<char>();
    return BasicString<char>::fromFormat(format, static_cast<unsigned short>(data1 - first));
}

BasicString<char> fourCharacterCode(unsigned long code)
{
    std::string text = "FOURCC \"";
    for (int shift = 0; shift < 32; shift += 8) {
        const auto c = static_cast<unsigned char>(code >> shift);
        if (c < ' ' || c > '~')
            return "FOURCC " + toHex(code);
        text += static_cast<char>(c);
    }
    return text + '"';
}

// The names of media formats are made, not listed; empty for any other identifier.
BasicString<char> mediaFormatName(const GUID& guid)
{
    constexpr unsigned char numbered[] = {0xA2, 0x1A, 0x00, 0xA0, 0xC9, 0x22, 0x31, 0x96};
    constexpr unsigned char coded[] = {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
    if (hasPattern(guid, 0x6D98, 0x11D1, numbered))
        return numberedName("Manufacturer ID %hu", guid.Data1, 0xD5A47FA7);
    if (hasPattern(guid, 0x6D9A, 0x11D1, numbered))
        return numberedName("Product ID %hu", guid.Data1, 0xE36DC2AC);
    if (hasPattern(guid, 0x0000, 0x0010, coded))
        return fourCharacterCode(guid.Data1);
    return BasicString<char>();
}

BasicString<char> registeredName(const char* kind, const char* prefix, const BasicString<char>& guid)
{
    const BasicString<char> name = findText(HKEY_CLASSES_ROOT, (kind + guid).c_str(), "");
    return name.empty() ? name : BasicString<char>(prefix) + name;
}

BasicString<char> nameOf(const GUID& guid)
{
    static const GUIDNames names = loadGUIDNames();
    if (const std::string_view name = names.find(guid); !name.empty())
        return BasicString<char>(name);
    if (BasicString<char> name = mediaFormatName(guid); !name.empty())
        return name;
    BasicString<char> text(toWString(guid).c_str());
    if (BasicString<char> name = registeredName("Interface\\", "IID_", text); !name.empty())
        return name;
    if (BasicString<char> name = registeredName("CLSID\\", "CLSID_", text); !name.empty())
        return name;
    return text;
}
} // namespace

BasicString<char> getHRESULTIdentifier(long hr)
{
    static const HRESULTNames names = loadHRESULTNames();
    if (const std::string_view name = names.find(hr); !name.empty())
        return BasicString<char>(name);
    return "HRESULT value " + toHex(static_cast<unsigned long>(hr)) + '\0';
}

BasicString<char> toAString(const GUID& guid, bool lookUpName)
{
    return lookUpName ? nameOf(guid) : BasicString<char>(toWString(guid).c_str());
}
} // namespace tarn
