#include <tarn/Dispatch.h>

#include "../foundation/Quoted.h"
#include "../foundation/Throw.h"
#include "ToldError.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace tarn {
namespace {
// What an object tells of a failure of Invoke itself.
struct Complaint : EXCEPINFO {
    Complaint() : EXCEPINFO() {}
    Complaint(const Complaint&) = delete;
    Complaint& operator=(const Complaint&) = delete;
    ~Complaint()
    {
        SysFreeString(bstrSource);
        SysFreeString(bstrDescription);
        SysFreeString(bstrHelpFile);
    }

    long result() const
    {
        return FAILED(scode) ? scode : wCode ? MAKE_HRESULT(SEVERITY_ERROR, FACILITY_ITF, wCode) : DISP_E_EXCEPTION;
    }
    BasicString<wchar_t> text() const
    {
        return bstrDescription ? BasicString<wchar_t>(bstrDescription, SysStringLen(bstrDescription))
                               : BasicString<wchar_t>();
    }
};

// The identifiers of a member and of the names of its arguments.
std::vector<DISPID> identifiersOf(IDispatch* object, const wchar_t* member,
                                  std::initializer_list<Dispatch::Argument> named)
{
    std::vector<wchar_t*> names = {const_cast<wchar_t*>(member)};
    for (const Dispatch::Argument& argument : named)
        names.push_back(const_cast<wchar_t*>(argument.name));
    std::vector<DISPID> ids(names.size(), DISPID_UNKNOWN);
    const HRESULT result =
        object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), LOCALE_USER_DEFAULT, ids.data());
    if (FAILED(result))
        throwTold(result, "Can't find member " + quoted(member), {}, __builtin_return_address(0));
    return ids;
}

// `values` in the order of the platform: those with identifiers first, then the last of the others first.
Variant invoke(IDispatch* object, const wchar_t* member, DISPID id, int flags, std::vector<Variant> values,
               std::vector<DISPID> ids)
{
    DISPPARAMS parameters = {values.data(), ids.data(), static_cast<UINT>(values.size()),
                             static_cast<UINT>(ids.size())};
    Variant result;
    Complaint complaint;
    const HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(flags), &parameters,
                                      result.put(), &complaint, nullptr);
    if (SUCCEEDED(hr))
        return result;
    if (complaint.pfnDeferredFillIn)
        complaint.pfnDeferredFillIn(&complaint);
    const BasicString<wchar_t> told = complaint.text();
    throwTold(hr == DISP_E_EXCEPTION ? complaint.result() : hr, "Can't call " + quoted(member),
              told.empty() ? toldBy(object, IID_IDispatch) : told, __builtin_return_address(0));
}
} // namespace

Dispatch::Dispatch(COMInterfacePointer<IDispatch> object) : object_(std::move(object))
{
    COMError::checkPointer(object_.get());
}

Dispatch::Dispatch(const GUID& clsid, unsigned long context)
    : object_(COMInterfacePointer<IDispatch>::create(clsid, context))
{
}

Variant Dispatch::call(const wchar_t* method, std::initializer_list<Variant> arguments,
                       std::initializer_list<Argument> named) const
{
    std::vector<DISPID> ids = identifiersOf(getObject(), method, named);
    const DISPID id = ids.front();
    ids.erase(ids.begin());
    std::vector<Variant> values;
    for (const Argument& argument : named)
        values.push_back(argument.value);
    std::reverse_copy(arguments.begin(), arguments.end(), std::back_inserter(values));
    return invoke(getObject(), method, id, DISPATCH_METHOD, std::move(values), std::move(ids));
}

Variant Dispatch::get(const wchar_t* property, std::initializer_list<Variant> indices) const
{
    std::vector<Variant> values(std::make_reverse_iterator(indices.end()), std::make_reverse_iterator(indices.begin()));
    return invoke(getObject(), property, identifiersOf(getObject(), property, {}).front(), DISPATCH_PROPERTYGET,
                  std::move(values), {});
}

void Dispatch::set(const wchar_t* property, const Variant& value, std::initializer_list<Variant> indices) const
{
    const bool isObject = value.getType() == VT_DISPATCH || value.getType() == VT_UNKNOWN;
    std::vector<Variant> values = {value};
    std::reverse_copy(indices.begin(), indices.end(), std::back_inserter(values));
    invoke(getObject(), property, identifiersOf(getObject(), property, {}).front(),
           isObject ? DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, std::move(values),
           {DISPID_PROPERTYPUT});
}
} // namespace tarn
