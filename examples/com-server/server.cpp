// A COM server in a DLL with one class for scripts and programs: IDispatch, implemented by hand over
// the library's Variant, and the server's exported functions in one line.

#include "Greeter.h"

#include <tarn/COMServer.h>
#include <tarn/Lock.h>
#include <tarn/Variant.h>

#include <oaidl.h>

#include <cwchar>
#include <iterator>

namespace {
class Greeter : public IDispatch, public tarn::SupportErrorInfo<IDispatch>, public tarn::IUnknownImpl {
public:
    explicit Greeter(IUnknown* outer) : IUnknownImpl(outer) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO*, UINT*) override;

protected:
    void* queryInterface(const GUID& iid) override
    {
        if (iid == IID_ISupportErrorInfo)
            return static_cast<ISupportErrorInfo*>(this);
        return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : IUnknownImpl::queryInterface(iid);
    }

private:
    tarn::Variant call(DISPID id, WORD flags, const DISPPARAMS& arguments);

    // Registered as "both", so calls may come from several threads at once.
    tarn::CriticalSection section_;
    tarn::BasicString<wchar_t> name_ = L"world";
    int greetings_ = 0;
};

enum Member : DISPID { Name, Greet, Greetings };
constexpr const wchar_t* memberNames[] = {L"name", L"greet", L"greetings"};

HRESULT Greeter::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

HRESULT Greeter::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    // The first name is the member's, the others name its arguments, which have no names here.
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const auto found = std::find_if(std::begin(memberNames), std::end(memberNames),
                                    [&](const wchar_t* name) { return _wcsicmp(name, names[0]) == 0; });
    if (found != std::end(memberNames))
        ids[0] = static_cast<DISPID>(found - memberNames);
    return count == 1 && found != std::end(memberNames) ? S_OK : DISP_E_UNKNOWNNAME;
}

tarn::Variant Greeter::call(DISPID id, WORD flags, const DISPPARAMS& arguments)
{
    const bool isAssignment = id == Name && flags & DISPATCH_PROPERTYPUT;
    if (arguments.cArgs != (isAssignment ? 1 : 0))
        throw tarn::COMError(static_cast<unsigned long>(DISP_E_BADPARAMCOUNT));
    if (isAssignment) {
        const auto name = tarn::Variant(arguments.rgvarg[0]).toString();
        if (name.empty())
            throw tarn::Exception("Nobody has an empty name");
        const tarn::AutoLock lock(section_);
        name_ = name;
        return {};
    }
    const tarn::AutoLock lock(section_);
    switch (id) {
    case Name:
        return name_;
    case Greet:
        ++greetings_;
        return tarn::BasicString<wchar_t>(L"Hello, %1!").format(name_.c_str());
    case Greetings:
        return greetings_;
    default:
        throw tarn::COMError(static_cast<unsigned long>(DISP_E_MEMBERNOTFOUND));
    }
}

HRESULT Greeter::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*, UINT*)
{
    return tarn::asHRESULT([&] {
        tarn::Variant answer = call(id, flags, *arguments);
        if (result)
            *result = answer.detach();
    });
}

tarn::IUnknownImpl* createGreeter(IUnknown* outer)
{
    if (outer)
        throw tarn::COMError(static_cast<unsigned long>(CLASS_E_NOAGGREGATION));
    return new Greeter(outer);
}
} // namespace

TARN_COM_SERVER({CLSID_Greeter, &createGreeter, L"Tarn greeter", tarn::COMModule::both, greeterProgID});
