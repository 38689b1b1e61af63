#pragma once

#include <tarn/Exception.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Windows.h>

#include <objbase.h>

#include <compare>
#include <concepts>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace tarn {
namespace detail {
/// An interface as COMInterfacePointer lends it: its references are the pointer's affair. Templates, because no
/// function that overrides another can be deleted.
template <class T> class Uncounted : public T {
public:
    /// Do not compile: reset() or detach() the pointer.
    ///@{
    template <class = void> unsigned long AddRef() = delete;
    template <class = void> unsigned long Release() = delete;
    ///@}
};

/// What `->` gives: a class of one's own that is final has to be as it is.
template <class T> using Lent = std::conditional_t<std::is_final_v<T>, T, Uncounted<T>>;

/// What COMInterfacePointer::throwOnError() does.
TARN_API void throwOnErrorOf(IUnknown* object, const GUID& iid, long hr, const char* description);

/// A second type to which a pointer class converts, so that `delete` of it is ambiguous.
class NotToBeDeleted;
} // namespace detail

/// Owns one reference to a COM object: adds it when it takes over a plain pointer or is copied, and
/// releases it at its end. Usable wherever the plain interface pointer is expected.
///
/// Failures of COM calls throw COMError, WindowsError or BadAllocation; using an empty pointer with `->`
/// throws COMError(`E_POINTER`).
template <class T> class COMInterfacePointer {
public:
    COMInterfacePointer() noexcept = default;
    /// Adds a reference of its own; use attach for a pointer whose reference is yours to give.
    COMInterfacePointer(T* object) noexcept : object_(object)
    {
        if (object_)
            object_->AddRef();
    }
    /// A copy adds a reference; a move leaves its source empty.
    ///@{
    COMInterfacePointer(const COMInterfacePointer& other) noexcept : COMInterfacePointer(other.object_) {}
    COMInterfacePointer(COMInterfacePointer&& other) noexcept : object_(other.detach()) {}
    ///@}
    /// A pointer to an interface that is derived from this one, as plain pointers convert; as() asks the object.
    ///@{
    template <class Derived>
    requires std::convertible_to<Derived*, T*> COMInterfacePointer(const COMInterfacePointer<Derived>& other)
    noexcept : COMInterfacePointer(other.get()) {}
    template <class Derived>
    requires std::convertible_to<Derived*, T*> COMInterfacePointer(COMInterfacePointer<Derived>&& other)
    noexcept : object_(other.detach()) {}
    ///@}
    /// Releases the reference held before.
    COMInterfacePointer& operator=(COMInterfacePointer other) noexcept
    {
        swap(other);
        return *this;
    }
    ~COMInterfacePointer() { reset(); }

    /// A new object of the class. Throws as HRESULTHolder::throwOnError does, "Can't create COM object".
    ///
    /// Here and below `iid` is needed for an interface that does not say its identifier (`__uuidof`), or another one.
    static COMInterfacePointer create(const GUID& clsid, unsigned long context = CLSCTX_ALL, IUnknown* outer = nullptr,
                                      const GUID& iid = __uuidof(T))
    {
        COMInterfacePointer result;
        HRESULTHolder::throwOnError(CoCreateInstance(clsid, outer, context, iid, result.putVoid()),
                                    "Can't create COM object");
        return result;
    }

    /// Another interface of the same object; empty when the object has none such.
    template <class Other> COMInterfacePointer<Other> as(const GUID& iid = __uuidof(Other)) const noexcept
    {
        COMInterfacePointer<Other> result;
        if (object_ && FAILED(object_->QueryInterface(iid, result.putVoid())))
            result.detach(); // What a failing call left in the pointer is not a reference.
        return result;
    }
    /// The same for interfaces that the object must have. Throws "Can't get COM interface".
    template <class Other> COMInterfacePointer<Other> require(const GUID& iid = __uuidof(Other)) const
    {
        COMInterfacePointer<Other> result;
        COMError::checkPointer(object_);
        const HRESULT hr = object_->QueryInterface(iid, result.putVoid());
        if (FAILED(hr))
            result.detach();
        HRESULTHolder::throwOnError(hr, "Can't get COM interface");
        return result;
    }

    /// For the result of a method of this interface, throws as HRESULTHolder::throwOnError() does. What the object
    /// tells of its failure (`ISupportErrorInfo`, `IErrorInfo`) stands behind the description:
    ///
    ///     const auto file = tarn::COMInterfacePointer<IPersistFile>::create(CLSID_NULL);
    ///     file.throwOnError(file->Load(L"C:\\x", STGM_READ), "Can't read the shortcut");
    void throwOnError(HRESULT hr, const char* description, const GUID& iid = __uuidof(T)) const
    {
        if (FAILED(hr))
            detail::throwOnErrorOf(object_, iid, hr, description);
    }

    /// Null when empty. Lent, not given: it adds no reference.
    ///@{
    T* get() const noexcept { return object_; }
    operator T*() const noexcept { return object_; }
    ///@}
    /// Throws COMError(`E_POINTER`) when empty. `p->AddRef()` and `p->Release()` do not compile: the reference is
    /// the object's own, which reset() and detach() let go of.
    ///@{
    template <class Interface = T> detail::Lent<Interface>* operator->() const
    {
        COMError::checkPointer(object_);
        return static_cast<detail::Lent<Interface>*>(object_);
    }
    template <class Interface = T> detail::Lent<Interface>& operator*() const { return *operator->(); }
    ///@}
    /// Whether it has an object.
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// Compare addresses, as plain pointers do: one object may give several for its interfaces.
    ///@{
    template <class U>
    requires std::equality_comparable_with<T*, U*>
    bool operator==(U* other) const noexcept { return object_ == other; }
    template <class U>
    requires std::equality_comparable_with<T*, U*>
    bool operator==(const COMInterfacePointer<U>& other) const noexcept { return object_ == other.get(); }
    bool operator==(std::nullptr_t) const noexcept { return !object_; }
    std::strong_ordering operator<=>(const COMInterfacePointer& other) const noexcept
    {
        return std::compare_three_way()(object_, other.object_);
    }
    ///@}
    /// `delete p` does not compile.
    operator detail::NotToBeDeleted*() const = delete;
    /// Nor does `(void**)&p`, which would lose the reference that it has: use putVoid(), or put().
    ///@{
    COMInterfacePointer* operator&() = delete;
    const COMInterfacePointer* operator&() const = delete;
    ///@}

    /// Takes over the reference that comes with `object`, as calls with an output parameter hand it out.
    void attach(T* object) noexcept
    {
        reset();
        object_ = object;
    }
    /// Gives the reference away: the caller releases it.
    T* detach() noexcept { return std::exchange(object_, nullptr); }
    /// Releases the reference, if any, and becomes empty.
    void reset() noexcept
    {
        if (T* const object = detach())
            object->Release();
    }
    /// Releases what it holds; the address is for calls that hand out a reference.
    T** put() noexcept
    {
        reset();
        return &object_;
    }
    /// As put(), for calls that take a `void**`.
    void** putVoid() noexcept { return reinterpret_cast<void**>(put()); }
    /// Exchanges the references; no count changes.
    void swap(COMInterfacePointer& other) noexcept { std::swap(object_, other.object_); }

private:
    T* object_ = nullptr;
};
TARN_LAYOUT(COMInterfacePointer<IUnknown>, 4, 8); // The interface.
} // namespace tarn
