#pragma once

#include <tarn/IUnknownImpl.h>

#include <unknwn.h>

namespace tarn {
/// The class object of one class: makes its objects with a creator function.
///
/// COMModule makes the factories of the classes in its table; make one yourself, with `new`, to register
/// a class object by hand. Its methods are a COM border: failures are results, never exceptions.
class TARN_API Factory : public IClassFactory, public IUnknownImpl {
public:
    /// Makes an object, aggregated by `outer` if that is not null, or returns null when it cannot (an
    /// aggregated object that the class does not allow, say: better throw COMError
    /// `CLASS_E_NOAGGREGATION`, because null is reported as `E_OUTOFMEMORY`).
    using Creator = IUnknownImpl* (*)(IUnknown* outer);

    /// The creator must not be null.
    explicit Factory(Creator creator) : IUnknownImpl(nullptr), creator_(creator) {}
    /// Copy the reference count along; see IUnknownImpl.
    ///@{
    Factory(const Factory&);
    Factory& operator=(const Factory&);
    ///@}
    ~Factory() override;

    TARN_IUNKNOWN_METHODS
    /// `E_POINTER` for a null `iid` or `object`, and what the query for `iid` gives: it goes to `outer`
    /// when there is one, so the creator makes its object known to the outer one. On failure the new
    /// object is destroyed and `*object` stays as the query left it.
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    /// Locks or unlocks COMModule::getModule(). `E_UNEXPECTED` when there is no lock to take away.
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

protected:
    void* queryInterface(const GUID& iid) override;

private:
    Creator creator_;
};
} // namespace tarn
