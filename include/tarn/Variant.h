#pragma once

#include <tarn/BStr.h>
#include <tarn/BasicString.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/SafeArray.h>
#include <tarn/Time.h>
#include <tarn/TimeZone.h>
#include <tarn/Windows.h>

#include <compare>
#include <concepts>

namespace tarn {
/// A VARIANT, the any-value of automation, that owns what it holds and converts between types. It is a
/// VARIANT, so it can be passed wherever one or a pointer to one is expected; copies are deep.
///
/// Conversions follow the user's locale, as automation does ("1,5" is a number in German). Failures throw
/// COMError (`DISP_E_TYPEMISMATCH`, `DISP_E_OVERFLOW`, ...), WindowsError (for an invalid argument) or
/// BadAllocation.
class TARN_API Variant : public VARIANT {
public:
    /// `VT_EMPTY`.
    Variant() noexcept { VariantInit(this); }
    /// A copy; of a value by reference (`VT_BYREF`) one of what it refers to. Throws "Can't copy variant".
    Variant(const VARIANT& value);
    /// A copy is deep; a move leaves its source empty. An assignment frees the value held before.
    ///@{
    Variant(const Variant& other) : Variant(static_cast<const VARIANT&>(other)) {}
    Variant(Variant&& other) noexcept : VARIANT(other.detach()) {}
    Variant& operator=(Variant other) noexcept
    {
        swap(other);
        return *this;
    }
    ///@}
    /// Does not report that a locked array stays.
    ~Variant() { VariantClear(this); }

    /// The type that automation has for the value: `VT_BOOL`, `VT_UI1`, `VT_I2`, `VT_I4`, `VT_UI4`, `VT_I8`, `VT_UI8`,
    /// `VT_R4`, `VT_R8`, `VT_CY`, `VT_DECIMAL`, and `VT_BSTR` for a text, which is copied. Other small integers are
    /// taken as `int`; convertedTo() makes any other type.
    ///@{
    template <std::same_as<bool> Bool> Variant(Bool value) noexcept : Variant() { setBool(value); }
    Variant(unsigned char value) noexcept;
    Variant(short value) noexcept;
    Variant(int value) noexcept : Variant(static_cast<long>(value)) {}
    Variant(long value) noexcept;
    Variant(unsigned int value) noexcept : Variant(static_cast<unsigned long>(value)) {}
    Variant(unsigned long value) noexcept;
    Variant(long long value) noexcept;
    Variant(unsigned long long value) noexcept;
    Variant(float value) noexcept;
    Variant(double value) noexcept;
    Variant(const CY& value) noexcept;
    Variant(const DECIMAL& value) noexcept;
    Variant(const wchar_t* text) : Variant(BStr(text)) {}
    Variant(const char* text) : Variant(BStr(text)) {}
    Variant(const BasicString<wchar_t>& text) : Variant(BStr(text)) {}
    Variant(const BasicString<char>& text) : Variant(BStr(text)) {}
    Variant(BStr text) noexcept;
    ///@}
    /// Adds a reference of its own.
    ///@{
    Variant(IUnknown* object) noexcept;
    Variant(IDispatch* object) noexcept;
    ///@}
    /// `VT_ARRAY` and the type of the elements. Throws "Can't get type of safe array".
    Variant(SafeArray array);

    /// `VT_NULL`.
    static Variant null() noexcept;
    /// Stands for an optional argument that is not given.
    static Variant missing() noexcept;
    /// `VT_ERROR`.
    static Variant error(HRESULT hr) noexcept;
    /// Days since 1899-12-30, local time; before that day the time of day counts on from the day all the same.
    static Variant date(double days) noexcept;
    /// What clocks in the zone show at the instant, to the millisecond. Throws COMError "Can't convert time to date",
    /// `DISP_E_OVERFLOW`, for years outside of 100 to 9999.
    static Variant date(const Time& time, const TimeZone& zone);

    /// The type as it lies: `VT_ARRAY` and `VT_BYREF` are bits of it. isNull() is about `VT_NULL`, and isEmpty() about
    /// a variant without a value.
    ///@{
    VARTYPE getType() const noexcept { return vt; }
    bool isEmpty() const noexcept { return vt == VT_EMPTY; }
    bool isNull() const noexcept { return vt == VT_NULL; }
    bool isArray() const noexcept { return (vt & VT_ARRAY) != 0; }
    ///@}

    /// Whether both have the same type and value: texts character by character, arrays with their bounds, objects when
    /// they are one object. Records are equal when they are one record.
    bool operator==(const Variant& other) const;
    /// As scripts compare, whatever the types: numbers by value, and before texts, which are in the order of the
    /// locale. Unordered when one is `VT_NULL`. Throws "Can't compare variants".
    std::partial_ordering compare(const Variant& other, LCID locale = LOCALE_USER_DEFAULT) const;

    /// The value as another type. Throws "Can't convert variant".
    Variant convertedTo(VARTYPE type, LCID locale = LOCALE_USER_DEFAULT) const;
    /// Convert in the user's locale. Throw "Can't convert variant".
    ///@{
    bool toBool() const;
    long toLong() const;
    long long toLongLong() const;
    unsigned long long toULongLong() const;
    double toDouble() const;
    CY toCurrency() const;
    DECIMAL toDecimal() const;
    BasicString<wchar_t> toString() const;
    ///@}
    /// In the system's ANSI code page.
    BasicString<char> toAString() const;
    /// The instant at which clocks in the zone show the date, the earlier one where they show it twice; see
    /// TimeZone::instantsOf(). Throws "Can't convert variant".
    Time toTime(const TimeZone& zone) const;
    /// With a reference of its own; empty for a null object. Throw "Can't convert variant".
    ///@{
    COMInterfacePointer<IUnknown> toUnknown() const;
    COMInterfacePointer<IDispatch> toDispatch() const;
    ///@}
    /// A copy of the array, which has to be one already.
    SafeArray toSafeArray() const;

    /// Frees the value. Throws "Can't clear variant".
    void clear();
    /// Takes the value over as it lies: `value` is not yours any more.
    void attach(const VARIANT& value);
    /// The caller clears the result.
    VARIANT detach() noexcept;
    /// Frees the value; the address is for calls that hand out a variant.
    VARIANT* put();
    /// Exchanges the values without copying.
    void swap(Variant& other) noexcept;

private:
    void setBool(bool value) noexcept;
};
TARN_LAYOUT(Variant, 16, 24);
} // namespace tarn
