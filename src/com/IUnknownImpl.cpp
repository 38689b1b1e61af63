#include <tarn/IUnknownImpl.h>

namespace tarn {
long IUnknownImpl::objects_ = 0;

IUnknownImpl::IUnknownImpl(IUnknown* outer) : outer_(outer), refCount_(0) { InterlockedIncrement(&objects_); }
IUnknownImpl::IUnknownImpl(const IUnknownImpl&) = default;
IUnknownImpl& IUnknownImpl::operator=(const IUnknownImpl&) = default;
IUnknownImpl::~IUnknownImpl() { InterlockedDecrement(&objects_); }

HRESULT IUnknownImpl::internalQueryInterface(const GUID& iid, void** object)
{
    if (!object)
        return E_POINTER;
    return asHRESULT([&] {
        void* const found = queryInterface(iid);
        if (!found)
            return E_NOINTERFACE;
        *object = found;
        internalAddRef();
        return S_OK;
    });
}

unsigned long IUnknownImpl::internalAddRef() { return static_cast<unsigned long>(InterlockedIncrement(&refCount_)); }

unsigned long IUnknownImpl::internalRelease()
{
    const long count = InterlockedDecrement(&refCount_);
    if (count > 0)
        return static_cast<unsigned long>(count);
    // So that a reference taken and released during destruction does not destroy the object again.
    refCount_ = 1;
    delete this;
    return 0;
}

void* IUnknownImpl::queryInterface(const GUID& iid) { return iid == IID_IUnknown ? this : nullptr; }

unsigned IUnknownImpl::getInstanceCount() { return static_cast<unsigned>(objects_); }

IUnknown& IUnknownImpl::getUnknown() { return outer_ ? *outer_ : reinterpret_cast<IUnknown&>(*this); }

COMInterfacePointer<IUnknown> IUnknownImpl::getOuter() const { return outer_; }
} // namespace tarn
