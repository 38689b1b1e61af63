#pragma once

#include "Persistent.h"

#include <tarn/Dispatch.h>
#include <tarn/IUnknownImpl.h>

namespace support {
/// An object of automation whose member "fail" throws, and so does its type information. "ask" has the object that it
/// is given fail, and returns what it hears of that.
class Talking final : public Persistent, public IDispatch, public tarn::SupportErrorInfo<IDispatch> {
public:
    explicit Talking(IUnknown* outer = nullptr) : Persistent(outer) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return tarn::asHRESULT(&fail); }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override
    {
        *ids = names[0][0];
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO* failure, UINT*) override
    {
        return tarn::asHRESULT(failure, [&] {
            if (id == L'f')
                fail();
            else if (id != L'a')
                throw tarn::COMError(static_cast<unsigned long>(DISP_E_MEMBERNOTFOUND), "Not for the caller");
            const tarn::Dispatch other(tarn::Variant(arguments->rgvarg[0]).toDispatch());
            try {
                other.call(L"fail");
            } catch (const std::exception& error) {
                *result = tarn::Variant(tarn::whatW(error)).detach();
            }
        });
    }

    static tarn::IUnknownImpl* create(IUnknown* outer) { return new Talking(outer); }

protected:
    void* queryInterface(const GUID& iid) override
    {
        if (iid == IID_ISupportErrorInfo)
            return static_cast<ISupportErrorInfo*>(this);
        return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : Persistent::queryInterface(iid);
    }

private:
    static void fail() { throw tarn::COMError(0x80040123, tarn::errorText(L"The plan \x4E2D is locked")); }
};
} // namespace support
