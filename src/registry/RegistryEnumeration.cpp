#include <tarn/RegistryKey.h>

#include "../foundation/Check.h"
#include "../foundation/Memory.h"
#include "../foundation/NumericCast.h"
#include "RegistryApi.h"

#include <utility>

namespace tarn {
namespace {
// The platform counts characters of UTF-16, each of which may become up to three bytes in a code page.
template <class Ch> constexpr DWORD unitsOfCharacter = sizeof(Ch) == 1 ? 3 : 1;
template <class Ch> constexpr DWORD bufferLength = 300 * unitsOfCharacter<Ch>;

template <class Ch> void queryInfo(HKEY key, RegistryKey::Info<Ch>& info, unsigned short what)
{
    const auto wanted = [what](unsigned short bit, auto& field) { return what & bit ? &field : nullptr; };
    Ch className[300];
    DWORD classLength = std::size(className);
    const bool withClass = what & RegistryKey::infoClassName;
    ensureCode(regQueryInfoKey(key, withClass ? className : nullptr, withClass ? &classLength : nullptr,
                               wanted(RegistryKey::infoSubkeyCount, info.subkeyCount),
                               wanted(RegistryKey::infoMaxSubkeyLength, info.maxSubkeyLength),
                               wanted(RegistryKey::infoMaxClassLength, info.maxClassLength),
                               wanted(RegistryKey::infoValueCount, info.valueCount),
                               wanted(RegistryKey::infoMaxValueNameLength, info.maxValueNameLength),
                               wanted(RegistryKey::infoMaxValueDataSize, info.maxValueDataSize),
                               wanted(RegistryKey::infoSecurityDescriptorSize, info.securityDescriptorSize),
                               wanted(RegistryKey::infoLastWriteTime, info.lastWriteTime)));
    if (withClass)
        info.className.assign(className, classLength);
}

template <class Field> auto fieldOf(const RegistryKey& key, RegistryKey::InfoFields what, Field field)
{
    RegistryKey::Info<wchar_t> info;
    key.getInfo(info, what);
    return info.*field;
}
} // namespace

void RegistryKey::getInfo(Info<char>& info, unsigned short what) const { queryInfo(key_, info, what); }
void RegistryKey::getInfo(Info<wchar_t>& info, unsigned short what) const { queryInfo(key_, info, what); }

unsigned long RegistryKey::getSubkeyCount() const
{
    return fieldOf(*this, infoSubkeyCount, &Info<wchar_t>::subkeyCount);
}
unsigned long RegistryKey::getValueCount() const { return fieldOf(*this, infoValueCount, &Info<wchar_t>::valueCount); }
FILETIME RegistryKey::GetLastWriteTime() const
{
    return fieldOf(*this, infoLastWriteTime, &Info<wchar_t>::lastWriteTime);
}

template <class Ch> RegistryKey::KeyEnumeration<Ch>::KeyEnumeration(HKEY key)
{
    Ch name[bufferLength<Ch>];
    Ch className[bufferLength<Ch>];
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = bufferLength<Ch>;
        DWORD classLength = bufferLength<Ch>;
        FILETIME lastWrite = {};
        const LSTATUS code = regEnumKey(key, index, name, &nameLength, className, &classLength, &lastWrite);
        if (code == ERROR_NO_MORE_ITEMS)
            return;
        ensureCode(code);
        this->entries_.push_back(
            {BasicString<Ch>(name, nameLength), BasicString<Ch>(className, classLength), lastWrite});
    }
}

template <class Ch> RegistryKey::ValueEnumeration<Ch>::ValueEnumeration(HKEY key)
{
    Info<Ch> info;
    RegistryKey(key, false).getInfo(info, infoMaxValueNameLength);
    std::vector<Ch> name;
    resizeOrThrow(name, info.maxValueNameLength * std::size_t(unitsOfCharacter<Ch>) + 1);
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = numericCast<DWORD>(name.size());
        ValueEntry<Ch> entry = {};
        const LSTATUS code = regEnumValue(key, index, name.data(), &nameLength, &entry.type, &entry.size);
        if (code == ERROR_NO_MORE_ITEMS)
            return;
        ensureCode(code);
        entry.name.assign(name.data(), nameLength);
        this->entries_.push_back(std::move(entry));
    }
}

template class RegistryKey::KeyEnumeration<char>;
template class RegistryKey::KeyEnumeration<wchar_t>;
template class RegistryKey::ValueEnumeration<char>;
template class RegistryKey::ValueEnumeration<wchar_t>;
} // namespace tarn
