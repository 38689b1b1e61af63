#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/RegistryKey.h>
#include <tarn/Windows.h>

#include <concepts>
#include <list>
#include <vector>

namespace tarn {
/// The data of one registry value with its type: what RegistryKey::getValue reads and setValue writes.
///
/// `Ch` is the width of the texts in it. Read with the width that the value is to be written with: the
/// platform converts texts only between an entry point and the stored value.
template <class Ch> class RegistryValue {
public:
    /// `REG_NONE` without data.
    RegistryValue() = default;
    /// A `REG_DWORD`.
    TARN_API explicit RegistryValue(unsigned long number);
    /// A `REG_QWORD`.
    TARN_API explicit RegistryValue(unsigned long long number);
    /// Any other number, as RegistryKey::setValue writes it.
    template <std::integral T> explicit RegistryValue(T number) : RegistryValue(detail::widened(number)) {}
    /// A text with its terminator (null is the empty text); `type` may be `REG_EXPAND_SZ`.
    TARN_API explicit RegistryValue(const Ch* text, unsigned long type = REG_SZ);
    /// A `REG_MULTI_SZ`. An empty string among them ends the list for whoever reads it.
    TARN_API explicit RegistryValue(const std::list<BasicString<Ch>>& strings);
    /// Bytes as they lie; copied.
    TARN_API RegistryValue(const unsigned char* data, unsigned long sizeInBytes, unsigned long type);

    /// A `REG_...` code.
    unsigned long getType() const { return type_; }
    /// In bytes.
    unsigned long getSize() const { return static_cast<unsigned long>(data_.size()); }
    /// Valid until the value changes; null when it has no data.
    const unsigned char* getData() const { return data_.data(); }

    /// As RegistryKey::getValue for a number, with its two std::runtime_errors.
    TARN_API unsigned long getDWord() const;
    /// As RegistryKey::getValue for a number of 64 bits, with its two std::runtime_errors.
    TARN_API unsigned long long getQWord() const;
    /// As RegistryKey::getStringValue, with its error for a wrong type.
    TARN_API BasicString<Ch> getString() const;
    /// As RegistryKey::getValue for strings, with its error for a wrong type.
    TARN_API std::list<BasicString<Ch>> getStrings() const;

    /// Equal types and equal bytes.
    bool operator==(const RegistryValue& other) const = default;

private:
    unsigned long type_ = REG_NONE;
    std::vector<unsigned char> data_;
};
} // namespace tarn
