#include <tarn/Exception.h>

#include <tarn/COMIdentifiers.h>
#include <tarn/LocalMemory.h>
#include <tarn/WindowsModule.h>

#include "Check.h"
#include "Hex.h"

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
    throwError(COMError(code, description));
}

void HRESULTHolder::throwOnError(long hr) { throwOnError(hr, ""); }

long HRESULTHolder::getHRESULTFromException(const std::exception& e)
{
    if (const auto* holder = dynamic_cast<const HRESULTHolder*>(&e))
        return holder->getHRESULT();
    return dynamic_cast<const std::bad_alloc*>(&e) ? E_OUTOFMEMORY : E_FAIL;
}

WindowsError::WindowsError(unsigned long error, const std::string& description)
    : std::runtime_error(description), error_(error)
{
}
WindowsError::WindowsError(const std::string& description) : WindowsError(GetLastError(), description) {}
WindowsError::WindowsError(const WindowsError&) = default;
WindowsError& WindowsError::operator=(const WindowsError&) = default;
WindowsError::~WindowsError() = default;

const char* WindowsError::what() const noexcept
{
    try {
        if (!hasMessage_) {
            const std::string message = getMessage();
            message_ = *getDescription() ? getDescription() + (": " + message) : message;
            hasMessage_ = true;
        }
    } catch (...) { // No memory for the text: the description is there already.
        return getDescription();
    }
    return message_.empty() ? getDescription() : message_.c_str();
}

namespace {
constexpr unsigned long firstNetworkError = 2100;
constexpr unsigned long endOfNetworkErrors = 3000;

std::string networkMessage(unsigned long error)
{
    WindowsModule module("netmsg.dll", true);
    const std::string message = module.getMessageA(error, 0);
    module.close();
    return message;
}

std::string systemMessage(unsigned long error)
{
    char* text = nullptr;
    ensure(FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, error,
                          MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&text), 0, nullptr),
           "Can't format message");
    const LocalMemory owner(text, false);
    return BasicString<char>(text).trimRight();
}
} // namespace

std::string WindowsError::getMessage() const
{
    try {
        if (error_ >= firstNetworkError && error_ < endOfNetworkErrors)
            return networkMessage(error_);
        return systemMessage(error_);
    } catch (...) {
        return "Windows error 0x" + toHex(error_);
    }
}

long WindowsError::getHRESULT() const
{
    const auto code = static_cast<long>(error_);
    return code < 1 ? code : static_cast<long>((error_ & 0xFFFF) | 0x80070000);
}

COMError::COMError(unsigned long hr) : std::runtime_error(getHRESULTIdentifier(static_cast<long>(hr))), hr_(hr) {}
COMError::COMError(unsigned long hr, const std::string& description)
    : std::runtime_error(description + ": " + getHRESULTIdentifier(static_cast<long>(hr))), hr_(hr)
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
