#include <tarn/Exception.h>

#include <tarn/COMIdentifiers.h>

#include "../foundation/Check.h"
#include "../foundation/Description.h"

namespace tarn {
static_assert(sizeof(HRESULT) == sizeof(long));

void HRESULTHolder::throwOnError(long hr, const char* description)
{
    if (hr >= 0)
        return;
    if (hr == E_OUTOFMEMORY)
        throwError(BadAllocation());
    const auto code = static_cast<unsigned long>(hr);
    if ((code & 0x1FFF0000) == 0x00070000)
        throwWindowsError(code & 0xFFFF, description);
    throwError(COMError(code, description), __builtin_return_address(0));
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
