#include <tarn/RegistryValue.h>

#include "ValueData.h"

#include <cstring>

namespace tarn {
namespace {
template <class Ch> ValueData bytesOf(const Ch* text, std::size_t lengthInChars)
{
    const auto* bytes = reinterpret_cast<const BYTE*>(text);
    return ValueData(bytes, bytes + lengthInChars * sizeof(Ch));
}
} // namespace

template <class Ch> RegistryValue<Ch>::RegistryValue(unsigned long number) : type_(REG_DWORD), data_(sizeof number)
{
    std::memcpy(data_.data(), &number, sizeof number);
}

template <class Ch> RegistryValue<Ch>::RegistryValue(unsigned long long number) : type_(REG_QWORD), data_(sizeof number)
{
    std::memcpy(data_.data(), &number, sizeof number);
}

template <class Ch>
RegistryValue<Ch>::RegistryValue(const Ch* text, unsigned long type)
    : type_(type), data_(bytesOf(textOrEmpty(text), std::char_traits<Ch>::length(textOrEmpty(text)) + 1))
{
}

template <class Ch> RegistryValue<Ch>::RegistryValue(const std::list<BasicString<Ch>>& strings) : type_(REG_MULTI_SZ)
{
    const BasicString<Ch> text = joined(strings);
    data_ = bytesOf(text.data(), text.size());
}

template <class Ch>
RegistryValue<Ch>::RegistryValue(const unsigned char* data, unsigned long sizeInBytes, unsigned long type)
    : type_(type), data_(data, data + sizeInBytes)
{
}

template <class Ch> unsigned long RegistryValue<Ch>::getDWord() const
{
    checkDWordType(type_);
    checkDWordSize(data_.size());
    unsigned long number;
    std::memcpy(&number, data_.data(), sizeof number);
    return number;
}

template <class Ch> unsigned long long RegistryValue<Ch>::getQWord() const
{
    checkQWord(type_, data_.size());
    unsigned long long number = 0;
    std::memcpy(&number, data_.data(), data_.size());
    return number;
}

template <class Ch> BasicString<Ch> RegistryValue<Ch>::getString() const
{
    checkStringType(type_);
    return stringOf<Ch>(data_);
}

template <class Ch> std::list<BasicString<Ch>> RegistryValue<Ch>::getStrings() const
{
    checkStringsType(type_);
    return stringsOf<Ch>(data_);
}

template class RegistryValue<char>;
template class RegistryValue<wchar_t>;
} // namespace tarn
