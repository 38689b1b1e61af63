// A COM server in a DLL with one class for scripts and programs: IDispatch and a connection point for its events,
// implemented by hand over the library's Variant, and the server's exported functions in one line.

#include "Greeter.h"

#include <tarn/COMServer.h>
#include <tarn/Lock.h>
#include <tarn/Variant.h>

#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>

#include <cwchar>
#include <iterator>
#include <map>

namespace {
using Sink = tarn::COMInterfacePointer<IDispatch>;

class Greeter : public IDispatch,
                public tarn::SupportErrorInfo<IDispatch>,
                public IConnectionPointContainer,
                public IConnectionPoint,
                public tarn::IUnknownImpl {
public:
    explicit Greeter(IUnknown* outer) : IUnknownImpl(outer) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                     EXCEPINFO*, UINT*) override;

    // It is its own and only connection point.
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID events, IConnectionPoint** point) override;
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* events) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

protected:
    void* queryInterface(const GUID& iid) override
    {
        if (iid == IID_ISupportErrorInfo)
            return static_cast<ISupportErrorInfo*>(this);
        if (iid == IID_IConnectionPointContainer)
            return static_cast<IConnectionPointContainer*>(this);
        if (iid == IID_IConnectionPoint)
            return static_cast<IConnectionPoint*>(this);
        return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : IUnknownImpl::queryInterface(iid);
    }

private:
    tarn::Variant call(DISPID id, WORD flags, const DISPPARAMS& arguments);
    tarn::Variant greet();

    // Registered as "both", so calls may come from several threads at once.
    tarn::CriticalSection section_;
    tarn::BasicString<wchar_t> name_ = L"world";
    int greetings_ = 0;
    std::map<DWORD, Sink> sinks_;
    DWORD lastCookie_ = 0;
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
    if (id == Greet)
        return greet();
    const tarn::AutoLock lock(section_);
    switch (id) {
    case Name:
        return name_;
    case Greetings:
        return greetings_;
    default:
        throw tarn::COMError(static_cast<unsigned long>(DISP_E_MEMBERNOTFOUND));
    }
}

// Who hears of it may call back, so nothing is locked then.
tarn::Variant Greeter::greet()
{
    tarn::Variant greeting;
    std::map<DWORD, Sink> sinks;
    {
        const tarn::AutoLock lock(section_);
        ++greetings_;
        greeting = tarn::BasicString<wchar_t>(L"Hello, %1!").format(name_.c_str());
        sinks = sinks_;
    }
    for (const auto& [cookie, sink] : sinks) {
        DISPPARAMS arguments = {&greeting, nullptr, 1, 0};
        sink->Invoke(greetedEvent, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, nullptr, nullptr,
                     nullptr);
    }
    return greeting;
}

HRESULT Greeter::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* failure,
                        UINT*)
{
    return tarn::asHRESULT(failure, [&] {
        tarn::Variant answer = call(id, flags, *arguments);
        if (result)
            *result = answer.detach();
    });
}

HRESULT Greeter::FindConnectionPoint(REFIID events, IConnectionPoint** point)
{
    *point = nullptr;
    return events == DIID_GreeterEvents ? QueryInterface(IID_IConnectionPoint, reinterpret_cast<void**>(point))
                                        : CONNECT_E_NOCONNECTION;
}

HRESULT Greeter::GetConnectionInterface(IID* events)
{
    *events = DIID_GreeterEvents;
    return S_OK;
}

HRESULT Greeter::GetConnectionPointContainer(IConnectionPointContainer** container)
{
    return QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(container));
}

HRESULT Greeter::Advise(IUnknown* sink, DWORD* cookie)
{
    return tarn::asHRESULT([&] {
        const Sink events = tarn::COMInterfacePointer<IUnknown>(sink).require<IDispatch>();
        const tarn::AutoLock lock(section_);
        sinks_[*cookie = ++lastCookie_] = events;
    });
}

HRESULT Greeter::Unadvise(DWORD cookie)
{
    const tarn::AutoLock lock(section_);
    return sinks_.erase(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
}

tarn::IUnknownImpl* createGreeter(IUnknown* outer)
{
    if (outer)
        throw tarn::COMError(static_cast<unsigned long>(CLASS_E_NOAGGREGATION));
    return new Greeter(outer);
}
} // namespace

TARN_COM_SERVER({CLSID_Greeter, &createGreeter, L"Tarn greeter", tarn::COMModule::both, greeterProgID});
