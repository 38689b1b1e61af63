#pragma once

#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include <objbase.h>

#include <utility>

namespace tarn {
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
    /// Releases the reference held before.
    COMInterfacePointer& operator=(COMInterfacePointer other) noexcept
    {
        swap(other);
        return *this;
    }
    ~COMInterfacePointer() { reset(); }

    /// A new object of the class. Throws as HRESULTHolder::throwOnError does, "Can't create COM object".
    static COMInterfacePointer create(const GUID& clsid, unsigned long context = CLSCTX_ALL, IUnknown* outer = nullptr)
    {
        COMInterfacePointer result;
        HRESULTHolder::throwOnError(CoCreateInstance(clsid, outer, context, __uuidof(T), result.putVoid()),
                                    "Can't create COM object");
        return result;
    }

    /// Another interface of the same object; empty when the object has none such.
    template <class Other> COMInterfacePointer<Other> as() const noexcept
    {
        COMInterfacePointer<Other> result;
        if (object_ && FAILED(object_->QueryInterface(__uuidof(Other), result.putVoid())))
            result.detach(); // What a failing call left in the pointer is not a reference.
        return result;
    }
    /// The same for interfaces that the object must have. Throws "Can't get COM interface".
    template <class Other> COMInterfacePointer<Other> require() const
    {
        COMInterfacePointer<Other> result;
        COMError::checkPointer(object_);
        const HRESULT hr = object_->QueryInterface(__uuidof(Other), result.putVoid());
        if (FAILED(hr))
            result.detach();
        HRESULTHolder::throwOnError(hr, "Can't get COM interface");
        return result;
    }

    /// Null when empty. Lent, not given: it adds no reference.
    ///@{
    T* get() const noexcept { return object_; }
    operator T*() const noexcept { return object_; }
    ///@}
    /// Throws COMError(`E_POINTER`) when empty.
    T* operator->() const
    {
        COMError::checkPointer(object_);
        return object_;
    }

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
    void** putVoid() noexcept { return reinterpret_cast<void**>(put()); } ///< As put(), for calls that take a `void**`.
    /// Exchanges the references; no count changes.
    void swap(COMInterfacePointer& other) noexcept { std::swap(object_, other.object_); }

private:
    T* object_ = nullptr;
};
} // namespace tarn
