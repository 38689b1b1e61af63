#include <tarn/Exception.h>

#include <tarn/BStr.h>
#include <tarn/COMIdentifiers.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/IUnknownImpl.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/Description.h"
#include "../foundation/Throw.h"
#include "ToldError.h"

#include <oleauto.h>

namespace tarn {
static_assert(sizeof(HRESULT) == sizeof(long));

namespace {
[[noreturn]] void throwResult(long hr, const std::string& description, const void* caller)
{
    if (hr == E_OUTOFMEMORY)
        throwError(BadAllocation(), caller);
    const auto code = static_cast<unsigned long>(hr);
    if ((code & 0x1FFF0000) == 0x00070000)
        throwError(WindowsError(code & 0xFFFF, description), caller);
    throwError(COMError(code, description), caller);
}

// The text of the code alone, which an error has at its end in any case.
BasicString<wchar_t> textOfResult(long hr)
{
    try {
        throwResult(hr, "", nullptr);
    } catch (const WindowsError& error) {
        return L": " + error.whatW();
    } catch (const std::exception& error) { // Keeps the ": " in front of its name.
        return whatW(error);
    }
}
} // namespace

// Says again what throwResult does, because each frame and each text more makes a throw slower.
void HRESULTHolder::throwOnError(long hr, const char* description)
{
    if (hr >= 0)
        return;
    if (hr == E_OUTOFMEMORY)
        throwNew<BadAllocation>(__builtin_return_address(0));
    const auto code = static_cast<unsigned long>(hr);
    if ((code & 0x1FFF0000) == 0x00070000)
        throwNew<WindowsError>(__builtin_return_address(0), code & 0xFFFF, description);
    throwNew<COMError>(__builtin_return_address(0), code, description);
}

BasicString<wchar_t> toldBy(IUnknown* object, const GUID& iid)
{
    const auto support = COMInterfacePointer<IUnknown>(object).as<ISupportErrorInfo>();
    COMInterfacePointer<IErrorInfo> info;
    BStr text;
    if (!support || support->InterfaceSupportsErrorInfo(iid) != S_OK || GetErrorInfo(0, info.put()) != S_OK ||
        FAILED(info->GetDescription(text.put())))
        return {};
    return text.toString();
}

void throwTold(long hr, const std::string& description, const BasicString<wchar_t>& told, const void* caller)
{
    if (told.empty())
        throwResult(hr, description, caller);
    BasicString<wchar_t> whole = wholeOf(description.c_str(), tailOf(description)) + L": " + told;
    if (const BasicString<wchar_t> end = textOfResult(hr); whole.endsWith(end))
        whole.resize(whole.size() - end.size());
    throwResult(hr, errorText(whole.c_str()), caller);
}

void detail::throwOnErrorOf(IUnknown* object, const GUID& iid, long hr, const char* description)
{
    throwTold(hr, description, toldBy(object, iid), __builtin_return_address(0));
}

HRESULT resultOfCurrentException() noexcept
{
    SetErrorInfo(0, nullptr); // That of an earlier failure is none of this one.
    try {
        throw;
    } catch (const std::exception& error) {
        const HRESULT hr = HRESULTHolder::getHRESULTFromException(error);
        closeQuietly([&] {
            COMInterfacePointer<ICreateErrorInfo> info;
            HRESULTHolder::throwOnError(CreateErrorInfo(info.put()));
            BasicString<wchar_t> text = whatW(error);
            HRESULTHolder::throwOnError(info->SetDescription(text.data()));
            HRESULTHolder::throwOnError(SetErrorInfo(0, info.require<IErrorInfo>()));
        });
        return hr;
    } catch (...) {
        return E_FAIL;
    }
}

HRESULT resultOfCurrentException(EXCEPINFO* failure) noexcept
{
    const HRESULT hr = resultOfCurrentException();
    if (!failure || HRESULT_FACILITY(hr) == FACILITY_DISPATCH)
        return hr;
    *failure = {};
    failure->scode = hr;
    COMInterfacePointer<IErrorInfo> info; // Has the text, unless there was no memory for it.
    if (GetErrorInfo(0, info.put()) == S_OK)
        info->GetDescription(&failure->bstrDescription);
    return DISP_E_EXCEPTION;
}

void HRESULTHolder::throwOnError(long hr) { throwOnError(hr, ""); }

long HRESULTHolder::getHRESULTFromException(const std::exception& e)
{
    if (const auto* holder = dynamic_cast<const HRESULTHolder*>(&e)) {
        const long hr = holder->getHRESULT();
        return hr < 0 ? hr : E_FAIL; // A caller must never take an error for success.
    }
    return dynamic_cast<const std::bad_alloc*>(&e) ? E_OUTOFMEMORY : E_FAIL;
}

namespace {
// With a zero in any case, so that a tail can be looked for; most names end in one.
std::string keptName(unsigned long hr)
{
    std::string name = getHRESULTIdentifier(static_cast<long>(hr));
    if (!name.ends_with('\0'))
        name += '\0';
    return name;
}
} // namespace

COMError::COMError(unsigned long hr) : std::runtime_error(keptName(hr)), hr_(hr) {}
COMError::COMError(unsigned long hr, const std::string& description)
    : std::runtime_error(textWithReason(description, getHRESULTIdentifier(static_cast<long>(hr)).c_str())), hr_(hr)
{
}
COMError::COMError(const COMError&) noexcept = default;
COMError& COMError::operator=(const COMError&) noexcept = default;
COMError::~COMError() = default;

long COMError::getHRESULT() const { return static_cast<long>(hr_); }

void COMError::checkPointer(void* p)
{
    if (!p)
        throwError(COMError(static_cast<unsigned long>(E_POINTER)));
}
} // namespace tarn
