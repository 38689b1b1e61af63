#pragma once

/// @file
/// The base of COM objects, and what turns exceptions into results at their border.

#include <tarn/COMInterfacePointer.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Windows.h>

#include <oaidl.h>

#include <exception>
#include <type_traits>

namespace tarn {
/// The base of every COM object that a program or DLL serves: counts references, answers for its
/// interfaces and knows the object that aggregates it, if any.
///
/// Derive from the interfaces first and from IUnknownImpl last, override queryInterface, and put
/// TARN_IUNKNOWN_METHODS into the public part:
///
///     class Clock : public IClock, public tarn::IUnknownImpl {
///     public:
///         explicit Clock(IUnknown* outer) : IUnknownImpl(outer) {}
///         TARN_IUNKNOWN_METHODS
///         HRESULT STDMETHODCALLTYPE getTime(long* ms) override;
///     protected:
///         void* queryInterface(const GUID& iid) override
///         {
///             return iid == __uuidof(IClock) ? static_cast<IClock*>(this) : IUnknownImpl::queryInterface(iid);
///         }
///     };
///
/// An object is born with the count 0, gets its first reference from the query that hands it out and
/// destroys itself when the last one is released: create it with `new` and delete it only if it was
/// never handed out. Any thread may take and release references.
class TARN_API IUnknownImpl {
public:
    // Laid out as an IUnknown: these three make the object its own non-delegating unknown.

    /// Without the interface `E_NOINTERFACE`, and `*object` stays as it was: clear it first if you look
    /// at it after a failure. Exceptions of queryInterface become the result.
    virtual HRESULT STDMETHODCALLTYPE internalQueryInterface(const GUID& iid, void** object);
    /// The object's own count, as it is afterwards. The last release destroys the object.
    ///@{
    virtual unsigned long STDMETHODCALLTYPE internalAddRef();
    virtual unsigned long STDMETHODCALLTYPE internalRelease();
    ///@}

protected:
    /// The pointer to the interface `iid`, or null; adds no reference. Check your own interfaces, then ask
    /// the base. A pointer that is returned must belong to this object.
    virtual void* queryInterface(const GUID& iid);

public:
    virtual ~IUnknownImpl();

    /// The objects alive that derive from this class, in all programs and DLLs of the process that use
    /// this library: while there are any, none of its servers lets itself be unloaded.
    static unsigned getInstanceCount();

    /// The aggregating object, else this one.
    IUnknown& getUnknown();
    /// The aggregating object; empty when there is none.
    COMInterfacePointer<IUnknown> getOuter() const;

protected:
    /// `outer` is borrowed: the aggregating object outlives this one.
    explicit IUnknownImpl(IUnknown* outer);
    /// Copies the reference count too and does not count the copy as alive, though its destructor counts
    /// it out. Where you want copies, write a copy constructor that calls IUnknownImpl(outer) instead.
    ///@{
    IUnknownImpl(const IUnknownImpl&);
    IUnknownImpl& operator=(const IUnknownImpl&);
    ///@}

private:
    static long objects_;

    IUnknown* outer_;
    long refCount_;
};

TARN_LAYOUT(IUnknownImpl, 12, 24);

/// In a catch block: the result for the exception, the HRESULT that it carries, `E_OUTOFMEMORY`, or `E_FAIL`. Its whole
/// text becomes the thread's error information (`IErrorInfo`).
TARN_API HRESULT resultOfCurrentException() noexcept;
/// The same for `IDispatch::Invoke`, whose callers get the text from `failure`, also in other apartments and processes:
/// then the result is `DISP_E_EXCEPTION`. Errors of automation itself (`DISP_E_...`) stay what they are, and with null
/// all of them.
TARN_API HRESULT resultOfCurrentException(EXCEPINFO* failure) noexcept;

/// Runs the body of `IDispatch::Invoke`, which returns an HRESULT or nothing (`S_OK`), and turns exceptions into the
/// result, as resultOfCurrentException() with `failure` does.
template <class Call> HRESULT asHRESULT(EXCEPINFO* failure, Call call) noexcept
{
    try {
        if constexpr (std::is_void_v<decltype(call())>) {
            call();
            return S_OK;
        } else {
            return call();
        }
    } catch (...) {
        return resultOfCurrentException(failure);
    }
}

/// The same for the other methods of COM, whose callers get the text as error information alone.
template <class Call> HRESULT asHRESULT(Call call) noexcept { return asHRESULT(nullptr, call); }

/// Another interface of an object: it tells clients that what asHRESULT() leaves as error information belongs to the
/// failures of these interfaces, so that they show it (COMInterfacePointer::throwOnError). A base of the class behind
/// these interfaces; the object's queryInterface answers for `ISupportErrorInfo`, too.
template <class... Interfaces> class SupportErrorInfo : public ISupportErrorInfo {
public:
    /// `S_OK` for the interfaces, `S_FALSE` for others.
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override
    {
        return ((iid == __uuidof(Interfaces)) || ...) ? S_OK : S_FALSE;
    }
};
} // namespace tarn

/// The three methods that every COM interface begins with, for a class derived from interfaces and from
/// IUnknownImpl: they go to the aggregating object if there is one.
#define TARN_IUNKNOWN_METHODS                                                                                          \
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override                                       \
    {                                                                                                                  \
        return getUnknown().QueryInterface(iid, object);                                                               \
    }                                                                                                                  \
    ULONG STDMETHODCALLTYPE AddRef() override { return getUnknown().AddRef(); }                                        \
    ULONG STDMETHODCALLTYPE Release() override { return getUnknown().Release(); }
