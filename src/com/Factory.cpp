#include <tarn/Factory.h>

#include "../foundation/NullIdentifier.h"
#include "../foundation/Throw.h"

#include <tarn/COMModule.h>

#include <memory>

namespace tarn {
Factory::Factory(const Factory&) = default;
Factory& Factory::operator=(const Factory&) = default;
Factory::~Factory() = default;

HRESULT Factory::CreateInstance(IUnknown* outer, REFIID iid, void** object)
{
    if (isNull(iid) || !object)
        return E_POINTER;
    return asHRESULT([&] {
        std::unique_ptr<IUnknownImpl> created(creator_(outer));
        if (!created)
            throwError(BadAllocation());
        const HRESULT hr = created->getUnknown().QueryInterface(iid, object);
        if (SUCCEEDED(hr))
            created.release(); // The references to it own it now.
        return hr;
    });
}

HRESULT Factory::LockServer(BOOL lock)
{
    return asHRESULT([&] { COMModule::getModule().lock(lock != FALSE); });
}

void* Factory::queryInterface(const GUID& iid)
{
    if (iid == IID_IClassFactory)
        return static_cast<IClassFactory*>(this);
    return IUnknownImpl::queryInterface(iid);
}
} // namespace tarn
