#pragma once

#include <tarn/IUnknownImpl.h>

#include <objidl.h>

namespace support {
constexpr GUID CLSID_Persistent = {0x2b1c7a04, 0x51de, 0x4a6b, {0x8f, 0x10, 0x3c, 0x92, 0x6e, 0x55, 0x01, 0xd7}};
constexpr const wchar_t* persistentProgID = L"TarnTest.Persistent";
/// Set by the local server when it goes.
constexpr const wchar_t* serverEndedEvent = L"tarn-test-local-server-ended";

/// An object with one interface that the system can marshal.
class Persistent : public IPersist, public tarn::IUnknownImpl {
public:
    explicit Persistent(IUnknown* outer) : IUnknownImpl(outer) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override
    {
        *clsid = CLSID_Persistent;
        return S_OK;
    }

    static tarn::IUnknownImpl* create(IUnknown* outer) { return new Persistent(outer); }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IPersist ? static_cast<IPersist*>(this) : IUnknownImpl::queryInterface(iid);
    }
};
} // namespace support
