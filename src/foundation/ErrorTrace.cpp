#include <tarn/ErrorTrace.h>

#include "CodePlace.h"
#include "LastErrorKept.h"

#include <unwind.h>

#include <atomic>

namespace tarn {
namespace {
std::atomic<bool> areTraced = false;

constexpr std::uintptr_t longestInstruction = 15;

struct Capture {
    std::uintptr_t first; // Where to begin; 0 for the innermost.
    const void** frames;
    unsigned int count;
    unsigned int max;
};

// What stands on the stack are the addresses after calls; one byte before lies within the call.
_Unwind_Reason_Code onFrame(_Unwind_Context* context, void* data)
{
    Capture& capture = *static_cast<Capture*>(data);
    const std::uintptr_t address = _Unwind_GetIP(context) - 1;
    if (address + 1 == 0) // The end of the thread's stack.
        return _URC_NORMAL_STOP;
    if (capture.count == 0 && capture.first && address - capture.first >= longestInstruction)
        return _URC_NO_REASON;
    if (capture.count == capture.max)
        return _URC_NORMAL_STOP;
    capture.frames[capture.count++] = reinterpret_cast<const void*>(address);
    return _URC_NO_REASON;
}
} // namespace

void ErrorTrace::enable(bool on) noexcept { areTraced.store(on, std::memory_order_relaxed); }
bool ErrorTrace::isEnabled() noexcept { return areTraced.load(std::memory_order_relaxed); }

const ErrorTrace* ErrorTrace::of(const std::exception& error) noexcept
{
    return dynamic_cast<const ErrorTrace*>(&error);
}

// The compiler's unwinder finds the callers as it does for the exception itself, from its tables: the system's way
// along the saved frame pointers loses itself in 32-bit code that is optimised.
ErrorTrace::ErrorTrace(const void* returnAddress) noexcept : thread_(GetCurrentThreadId())
{
    const LastErrorKept kept;
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(returnAddress) - 1;
    for (const std::uintptr_t begin : {first, std::uintptr_t{0}}) {
        Capture capture{begin, frames_, 0, maxFrames};
        _Unwind_Backtrace(onFrame, &capture);
        count_ = capture.count;
        if (count_ != 0)
            break;
    }
}

ErrorTrace::~ErrorTrace() = default;

std::vector<BasicString<wchar_t>> ErrorTrace::describeFrames() const
{
    const LastErrorKept kept;
    const SymbolNames names;
    std::vector<BasicString<wchar_t>> lines;
    for (const void* frame : getFrames()) {
        const auto address = reinterpret_cast<ULONG_PTR>(frame);
        const BasicString<wchar_t> name = names.nameOf(address);
        lines.push_back(codePlace(address) + (name.empty() ? L"" : L" ") + name);
    }
    return lines;
}
} // namespace tarn
