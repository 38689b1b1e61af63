#pragma once

#include <tarn/BStr.h>
#include <tarn/Exception.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <concepts>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarn {
class Variant;

/// Owns a SAFEARRAY, the array type of automation. Usable wherever a `SAFEARRAY*` is expected; copies are
/// deep.
///
/// Single elements go through Variant, whatever their type; Access gives the bare elements of an array
/// whose type you know. Indices run from the lower to the upper bound of their dimension, both included.
/// Failures throw COMError, WindowsError (for an invalid argument) or BadAllocation.
class TARN_API SafeArray {
public:
    template <class T> class Access;

    SafeArray() noexcept = default;
    /// One dimension. `type` is a `VT_...` code; elements begin as zero, null or empty. Arrays of records come
    /// from outside only (`SafeArrayCreateEx`).
    /// Throws "Can't create safe array".
    SafeArray(VARTYPE type, unsigned count, long lowerBound = 0);
    /// Several dimensions, each with its number of elements and its lower bound, leftmost index first.
    SafeArray(VARTYPE type, std::initializer_list<SAFEARRAYBOUND> bounds);
    /// One dimension with the elements of a container of the standard library, or one like it: numbers, `bool`, wide
    /// texts, which become `VT_BSTR`, or Variants. Throws "Can't create safe array".
    template <class Container> static SafeArray of(const Container& elements);
    /// Several dimensions with these elements, in the order in which toVector() has them. Throws with `E_INVALIDARG`
    /// when the bounds have room for more or less.
    template <class Container>
    static SafeArray of(const Container& elements, std::initializer_list<SAFEARRAYBOUND> bounds);
    /// A copy of a plain array. Throws "Can't copy safe array".
    explicit SafeArray(SAFEARRAY* array);
    /// A copy copies the elements, a move leaves its source null. An assignment destroys the array held before.
    ///@{
    SafeArray(const SafeArray& other);
    SafeArray(SafeArray&& other) noexcept : array_(other.detach()) {}
    SafeArray& operator=(SafeArray other) noexcept
    {
        swap(other);
        return *this;
    }
    ///@}
    /// Does not report that the array is locked and stays: release every Access first.
    ~SafeArray();

    /// Lent, not given.
    ///@{
    operator SAFEARRAY*() const noexcept { return array_; }
    SAFEARRAY* get() const noexcept { return array_; }
    ///@}
    /// Whether there is an array.
    explicit operator bool() const noexcept { return array_ != nullptr; }
    /// It is destroyed by this object: detach() it first.
    friend HRESULT WINAPI SafeArrayDestroy(const SafeArray& array) = delete;

    /// Throws "Can't get type of safe array".
    VARTYPE getType() const;
    /// 0 for null.
    unsigned getDimensionCount() const noexcept { return array_ ? SafeArrayGetDim(array_) : 0; }
    /// Dimensions count from 1, leftmost index first. Throw "Can't get bounds of safe array".
    long getLowerBound(unsigned dimension = 1) const;
    /// One less than the lower bound when it is empty.
    long getUpperBound(unsigned dimension = 1) const;
    /// The number of elements of all dimensions.
    unsigned getSize() const;

    /// Throw "Can't get element of safe array", "Can't set element of safe array", with
    /// `DISP_E_BADINDEX` outside of the bounds; set converts the value to the array's type first. A record is
    /// copied, with its description.
    ///@{
    Variant getElement(long index) const;
    Variant getElement(std::initializer_list<long> indices) const;
    void setElement(long index, const VARIANT& value);
    void setElement(std::initializer_list<long> indices, const VARIANT& value);
    ///@}

    /// The elements of all dimensions, the leftmost index running fastest, for the same types as of(). Throws "Can't
    /// access safe array", with `DISP_E_TYPEMISMATCH` when the elements are no T.
    template <class T> std::vector<T> toVector() const;

    /// Changes the number of elements of the rightmost dimension. Throws "Can't resize safe array", with
    /// `DISP_E_ARRAYISLOCKED` while an Access is alive.
    void resize(unsigned count);

    /// Takes ownership. Throws "Can't destroy safe array".
    void attach(SAFEARRAY* array);
    /// The caller destroys it.
    SAFEARRAY* detach() noexcept { return std::exchange(array_, nullptr); }
    /// Destroys what it holds; the address is for calls that hand out an array.
    SAFEARRAY** put();
    /// Exchanges the arrays; both stay where they are.
    void swap(SafeArray& other) noexcept { std::swap(array_, other.array_); }

private:
    SAFEARRAY* array_ = nullptr;
};
TARN_LAYOUT(SafeArray, 4, 8); // A pointer to the platform's array.

namespace detail {
/// Whether elements of the type lie in memory as T.
template <class T> constexpr bool isElementType(VARTYPE type)
{
    switch (type) {
    case VT_I1:
        return std::same_as<T, char> || std::same_as<T, signed char>;
    case VT_UI1:
        return std::same_as<T, unsigned char>;
    case VT_I2:
    case VT_BOOL:
        return std::same_as<T, short>;
    case VT_UI2:
        return std::same_as<T, unsigned short>;
    case VT_I4:
    case VT_INT:
    case VT_ERROR:
        return std::same_as<T, long> || std::same_as<T, int>;
    case VT_UI4:
    case VT_UINT:
        return std::same_as<T, unsigned long> || std::same_as<T, unsigned int>;
    case VT_I8:
        return std::same_as<T, long long>;
    case VT_UI8:
        return std::same_as<T, unsigned long long>;
    case VT_R4:
        return std::same_as<T, float>;
    case VT_R8:
    case VT_DATE:
        return std::same_as<T, double>;
    case VT_CY:
        return std::same_as<T, CY>;
    case VT_BSTR:
        return std::same_as<T, BSTR>;
    case VT_VARIANT:
        return std::same_as<T, VARIANT>;
    case VT_UNKNOWN:
        return std::same_as<T, IUnknown*>;
    case VT_DISPATCH:
        return std::same_as<T, IDispatch*>;
    default:
        return false;
    }
}
} // namespace detail

/// The elements of a safe array in place, of all dimensions (the leftmost index runs fastest), while this
/// object lives; meanwhile the array can be neither resized nor destroyed.
///
///     for (double& x : tarn::SafeArray::Access<double>(samples))
///         x *= 2;
template <class T> class SafeArray::Access {
public:
    /// Throws "Can't access safe array", with `DISP_E_TYPEMISMATCH` when the elements are no T.
    explicit Access(const SafeArray& array) : array_(array)
    {
        constexpr const char* failure = "Can't access safe array";
        if (!detail::isElementType<T>(array.getType()))
            HRESULTHolder::throwOnError(DISP_E_TYPEMISMATCH, failure);
        size_ = array.getSize();
        void* data = nullptr;
        HRESULTHolder::throwOnError(SafeArrayAccessData(array_, &data), failure);
        data_ = static_cast<T*>(data);
    }
    /// Takes the lock over.
    ///@{
    Access(Access&& other) noexcept
        : array_(std::exchange(other.array_, nullptr)), data_(std::exchange(other.data_, nullptr)),
          size_(std::exchange(other.size_, 0))
    {
    }
    Access& operator=(Access&& other) noexcept
    {
        Access moved(std::move(other));
        std::swap(array_, moved.array_);
        std::swap(data_, moved.data_);
        std::swap(size_, moved.size_);
        return *this;
    }
    ///@}
    ~Access()
    {
        if (array_)
            SafeArrayUnaccessData(array_);
    }

    /// The elements as they lie in memory, valid as long as this object.
    ///@{
    T* data() const noexcept { return data_; }
    unsigned size() const noexcept { return size_; }
    T* begin() const noexcept { return data_; }
    T* end() const noexcept { return data_ + size_; }
    ///@}
    /// From 0, whatever the bounds.
    T& operator[](unsigned i) const noexcept { return data_[i]; }

private:
    SAFEARRAY* array_;
    T* data_ = nullptr;
    unsigned size_ = 0;
};

namespace detail {
/// The type of the elements that a T becomes, and the T as which they lie in memory.
template <VARTYPE code, class T> struct ElementAs {
    static constexpr VARTYPE type = code;
    using InMemory = T;
};
template <class T> struct Element;
template <> struct Element<bool> : ElementAs<VT_BOOL, short> {
};
template <> struct Element<signed char> : ElementAs<VT_I1, signed char> {
};
template <> struct Element<unsigned char> : ElementAs<VT_UI1, unsigned char> {
};
template <> struct Element<short> : ElementAs<VT_I2, short> {
};
template <> struct Element<unsigned short> : ElementAs<VT_UI2, unsigned short> {
};
template <> struct Element<int> : ElementAs<VT_I4, int> {
};
template <> struct Element<long> : ElementAs<VT_I4, long> {
};
template <> struct Element<unsigned int> : ElementAs<VT_UI4, unsigned int> {
};
template <> struct Element<unsigned long> : ElementAs<VT_UI4, unsigned long> {
};
template <> struct Element<long long> : ElementAs<VT_I8, long long> {
};
template <> struct Element<unsigned long long> : ElementAs<VT_UI8, unsigned long long> {
};
template <> struct Element<float> : ElementAs<VT_R4, float> {
};
template <> struct Element<double> : ElementAs<VT_R8, double> {
};
template <std::derived_from<std::wstring> T> struct Element<T> : ElementAs<VT_BSTR, BSTR> {
};
template <> struct Element<Variant> : ElementAs<VT_VARIANT, VARIANT> {
};
} // namespace detail

template <class Container> SafeArray SafeArray::of(const Container& elements)
{
    return of(elements, {{static_cast<ULONG>(elements.size()), 0}});
}

template <class Container>
SafeArray SafeArray::of(const Container& elements, std::initializer_list<SAFEARRAYBOUND> bounds)
{
    using T = typename Container::value_type;
    using InMemory = typename detail::Element<T>::InMemory;
    SafeArray array(detail::Element<T>::type, bounds);
    if (array.getSize() != elements.size())
        HRESULTHolder::throwOnError(E_INVALIDARG, "Can't create safe array");
    const Access<InMemory> access(array);
    InMemory* to = access.begin();
    for (const T& element : elements) {
        if constexpr (std::same_as<InMemory, BSTR>)
            *to++ = BStr(element.data(), static_cast<unsigned>(element.size())).detach();
        else if constexpr (std::same_as<InMemory, VARIANT>)
            *to++ = T(element).detach();
        else if constexpr (std::same_as<T, bool>)
            *to++ = element ? VARIANT_TRUE : VARIANT_FALSE;
        else
            *to++ = element;
    }
    return array;
}

template <class T> std::vector<T> SafeArray::toVector() const
{
    using InMemory = typename detail::Element<T>::InMemory;
    if (std::same_as<T, bool> && getType() != VT_BOOL)
        HRESULTHolder::throwOnError(DISP_E_TYPEMISMATCH, "Can't access safe array");
    const Access<InMemory> access(*this);
    std::vector<T> elements;
    elements.reserve(access.size());
    for (const InMemory& element : access) {
        if constexpr (std::same_as<InMemory, BSTR>)
            elements.push_back(T(element ? element : L"", SysStringLen(element)));
        else if constexpr (std::same_as<T, bool>)
            elements.push_back(element != VARIANT_FALSE);
        else
            elements.push_back(element);
    }
    return elements;
}
} // namespace tarn
