#include <tarn/Variant.h>

#include <tarn/Exception.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace tarn {
Variant::Variant(const VARIANT& value) : Variant()
{
    HRESULTHolder::throwOnError(VariantCopyInd(this, const_cast<VARIANT*>(&value)), "Can't copy variant");
}

Variant::Variant(unsigned char value) noexcept : Variant()
{
    vt = VT_UI1;
    bVal = value;
}

Variant::Variant(short value) noexcept : Variant()
{
    vt = VT_I2;
    iVal = value;
}

Variant::Variant(long value) noexcept : Variant()
{
    vt = VT_I4;
    lVal = value;
}

Variant::Variant(unsigned long value) noexcept : Variant()
{
    vt = VT_UI4;
    ulVal = value;
}

Variant::Variant(long long value) noexcept : Variant()
{
    vt = VT_I8;
    llVal = value;
}

Variant::Variant(unsigned long long value) noexcept : Variant()
{
    vt = VT_UI8;
    ullVal = value;
}

Variant::Variant(float value) noexcept : Variant()
{
    vt = VT_R4;
    fltVal = value;
}

Variant::Variant(double value) noexcept : Variant()
{
    vt = VT_R8;
    dblVal = value;
}

Variant::Variant(const CY& value) noexcept : Variant()
{
    vt = VT_CY;
    cyVal = value;
}

Variant::Variant(const DECIMAL& value) noexcept : Variant()
{
    decVal = value; // Lies over the whole.
    vt = VT_DECIMAL;
}

Variant::Variant(BStr text) noexcept : Variant()
{
    vt = VT_BSTR;
    bstrVal = text.detach();
}

Variant::Variant(IUnknown* object) noexcept : Variant()
{
    vt = VT_UNKNOWN;
    punkVal = COMInterfacePointer<IUnknown>(object).detach();
}

Variant::Variant(IDispatch* object) noexcept : Variant()
{
    vt = VT_DISPATCH;
    pdispVal = COMInterfacePointer<IDispatch>(object).detach();
}

Variant::Variant(SafeArray array) : Variant()
{
    vt = static_cast<VARTYPE>(VT_ARRAY | array.getType());
    parray = array.detach();
}

Variant Variant::null() noexcept
{
    Variant result;
    result.vt = VT_NULL;
    return result;
}

Variant Variant::missing() noexcept { return error(DISP_E_PARAMNOTFOUND); }

Variant Variant::error(HRESULT hr) noexcept
{
    Variant result;
    result.vt = VT_ERROR;
    result.scode = hr;
    return result;
}

Variant Variant::date(double days) noexcept
{
    Variant result(days);
    result.vt = VT_DATE;
    return result;
}

namespace {
constexpr std::int64_t millisPerDay = 86400000;
constexpr std::int64_t epochDate = 25569; // 1970-01-01.
constexpr std::int64_t firstDate = -657434, lastDate = 2958465;
} // namespace

Variant Variant::date(const Time& time, const TimeZone& zone)
{
    const TimeZone::Offsets offsets = zone.offsetsAt(time);
    const std::int64_t utcDay = std::int64_t(time) / millisPerDay + epochDate;
    if (utcDay < firstDate - 2 || utcDay > lastDate + 2)
        HRESULTHolder::throwOnError(DISP_E_OVERFLOW, "Can't convert time to date");
    const std::int64_t local = std::int64_t(time) + offsets.standard + offsets.daylight + epochDate * millisPerDay;
    const std::int64_t day = local / millisPerDay - (local % millisPerDay < 0);
    if (day < firstDate || day > lastDate)
        HRESULTHolder::throwOnError(DISP_E_OVERFLOW, "Can't convert time to date");
    const double fraction = static_cast<double>(local - day * millisPerDay) / millisPerDay;
    return date(static_cast<double>(day) + (day < 0 ? -fraction : fraction));
}

namespace {
bool isSameObject(IUnknown* a, IUnknown* b)
{
    return COMInterfacePointer<IUnknown>(a).as<IUnknown>() == COMInterfacePointer<IUnknown>(b).as<IUnknown>();
}

// An element of any type as a value of its own.
Variant elementAt(SAFEARRAY* array, VARTYPE type, unsigned index)
{
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(type | VT_BYREF);
    reference.byref = static_cast<char*>(array->pvData) + std::size_t(index) * array->cbElements;
    return reference;
}

bool isSameArray(const SafeArray& a, const SafeArray& b)
{
    if (!a || !b)
        return !a && !b;
    if (a.getDimensionCount() != b.getDimensionCount())
        return false;
    for (unsigned i = 1; i <= a.getDimensionCount(); ++i)
        if (a.getLowerBound(i) != b.getLowerBound(i) || a.getUpperBound(i) != b.getUpperBound(i))
            return false;
    const VARTYPE type = a.getType();
    if (type == VT_RECORD)
        return false;
    for (unsigned i = 0; i < a.getSize(); ++i)
        if (elementAt(a, type, i) != elementAt(b, type, i))
            return false;
    return true;
}

std::size_t sizeOf(VARTYPE type)
{
    switch (type) {
    case VT_EMPTY:
    case VT_NULL:
        return 0;
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I8:
    case VT_UI8:
    case VT_CY:
        return 8;
    case VT_RECORD:
        return 2 * sizeof(void*);
    default:
        return 4;
    }
}
} // namespace

bool Variant::operator==(const Variant& other) const
{
    if ((vt | other.vt) & VT_BYREF)
        return Variant(static_cast<const VARIANT&>(*this)) == Variant(static_cast<const VARIANT&>(other));
    if (vt != other.vt)
        return false;
    if (isArray())
        return isSameArray(toSafeArray(), other.toSafeArray());
    switch (vt) {
    case VT_BSTR:
        return std::wstring_view(bstrVal ? bstrVal : L"", SysStringLen(bstrVal)) ==
               std::wstring_view(other.bstrVal ? other.bstrVal : L"", SysStringLen(other.bstrVal));
    case VT_UNKNOWN:
    case VT_DISPATCH:
        return isSameObject(punkVal, other.punkVal);
    case VT_R4:
        return fltVal == other.fltVal;
    case VT_R8:
    case VT_DATE:
        return dblVal == other.dblVal;
    case VT_DECIMAL:
        return VarDecCmp(const_cast<DECIMAL*>(&decVal), const_cast<DECIMAL*>(&other.decVal)) == VARCMP_EQ;
    default:
        return std::memcmp(&llVal, &other.llVal, sizeOf(vt)) == 0;
    }
}

std::partial_ordering Variant::compare(const Variant& other, LCID locale) const
{
    const auto plain = [](const Variant& value) { return const_cast<VARIANT*>(static_cast<const VARIANT*>(&value)); };
    const HRESULT result = VarCmp(plain(*this), plain(other), locale, 0);
    HRESULTHolder::throwOnError(result, "Can't compare variants");
    return result == VARCMP_LT   ? std::partial_ordering::less
           : result == VARCMP_GT ? std::partial_ordering::greater
           : result == VARCMP_EQ ? std::partial_ordering::equivalent
                                 : std::partial_ordering::unordered;
}

Variant Variant::convertedTo(VARTYPE type, LCID locale) const
{
    Variant result;
    HRESULTHolder::throwOnError(
        VariantChangeTypeEx(&result, const_cast<VARIANT*>(static_cast<const VARIANT*>(this)), locale, 0, type),
        "Can't convert variant");
    return result;
}

bool Variant::toBool() const { return convertedTo(VT_BOOL).boolVal != VARIANT_FALSE; }
long Variant::toLong() const { return convertedTo(VT_I4).lVal; }
long long Variant::toLongLong() const { return convertedTo(VT_I8).llVal; }
unsigned long long Variant::toULongLong() const { return convertedTo(VT_UI8).ullVal; }
CY Variant::toCurrency() const { return convertedTo(VT_CY).cyVal; }
DECIMAL Variant::toDecimal() const { return convertedTo(VT_DECIMAL).decVal; }
double Variant::toDouble() const { return convertedTo(VT_R8).dblVal; }

BasicString<wchar_t> Variant::toString() const
{
    BStr text;
    text.attach(convertedTo(VT_BSTR).detach().bstrVal);
    return text.toString();
}

BasicString<char> Variant::toAString() const
{
    BStr text;
    text.attach(convertedTo(VT_BSTR).detach().bstrVal);
    return text.toAString();
}

Time Variant::toTime(const TimeZone& zone) const
{
    const double days = static_cast<const VARIANT&>(convertedTo(VT_DATE)).date;
    if (!(days > firstDate - 1 && days < lastDate + 1))
        HRESULTHolder::throwOnError(DISP_E_OVERFLOW, "Can't convert variant");
    const double day = std::trunc(days);
    const std::int64_t millis = std::llround(std::abs(days - day) * millisPerDay);
    return zone.instantsOf((static_cast<std::int64_t>(day) - epochDate) * millisPerDay + millis).earlier;
}

COMInterfacePointer<IUnknown> Variant::toUnknown() const { return convertedTo(VT_UNKNOWN).punkVal; }
COMInterfacePointer<IDispatch> Variant::toDispatch() const { return convertedTo(VT_DISPATCH).pdispVal; }

SafeArray Variant::toSafeArray() const
{
    if (!isArray())
        HRESULTHolder::throwOnError(DISP_E_TYPEMISMATCH, "Can't convert variant");
    return SafeArray(vt & VT_BYREF ? *pparray : parray);
}

void Variant::clear() { HRESULTHolder::throwOnError(VariantClear(this), "Can't clear variant"); }

void Variant::attach(const VARIANT& value)
{
    clear();
    static_cast<VARIANT&>(*this) = value;
}

VARIANT Variant::detach() noexcept
{
    const VARIANT value = *this;
    vt = VT_EMPTY;
    return value;
}

VARIANT* Variant::put()
{
    clear();
    return this;
}

void Variant::swap(Variant& other) noexcept { std::swap<VARIANT>(*this, other); }

void Variant::setBool(bool value) noexcept
{
    vt = VT_BOOL;
    boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}
} // namespace tarn
