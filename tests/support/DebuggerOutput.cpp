#include "DebuggerOutput.h"

#include <utility>

namespace support {
namespace {
constexpr DWORD printException = 0x40010006;     // DBG_PRINTEXCEPTION_C
constexpr DWORD printWideException = 0x4001000A; // DBG_PRINTEXCEPTION_WIDE_C

DebuggerOutput* current = nullptr;

std::string narrowed(const wchar_t* text, int length)
{
    std::string result(static_cast<std::size_t>(length) * 2, '\0');
    result.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text, length, result.data(),
                                                               static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}
} // namespace

DebuggerOutput::DebuggerOutput(std::function<void()> onCall) : onCall_(std::move(onCall))
{
    current = this;
    handler_ = AddVectoredExceptionHandler(1, &onException);
}

DebuggerOutput::~DebuggerOutput()
{
    RemoveVectoredExceptionHandler(handler_);
    current = nullptr;
}

// The system raises an exception for each call, which a debugger would see; both counts include the
// terminating zero.
LONG CALLBACK DebuggerOutput::onException(EXCEPTION_POINTERS* info)
{
    const EXCEPTION_RECORD& record = *info->ExceptionRecord;
    const auto length = record.NumberParameters >= 2 ? record.ExceptionInformation[0] - 1 : 0;
    if (record.ExceptionCode == printException)
        current->calls_.emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]), length);
    else if (record.ExceptionCode == printWideException)
        current->calls_.push_back(
            narrowed(reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]), static_cast<int>(length)));
    else
        return EXCEPTION_CONTINUE_SEARCH;
    if (current->onCall_)
        current->onCall_();
    return EXCEPTION_CONTINUE_EXECUTION;
}
} // namespace support
