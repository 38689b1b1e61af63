#include <tarn/Exception.h>

#include <tarn/Windows.h>

#include "CodePlace.h"
#include "Hex.h"
#include "LastErrorKept.h"
#include "SETranslation.h"
#include "Throw.h"

#include <cstring>

namespace tarn {
namespace {
enum class Access : ULONG_PTR { unknown, reading, writing, executing };

// What is kept of a fault behind the zero that ends what(), so that the class stays as large as it is. The module is
// looked up when somebody asks: the loader's lock, which that takes, may be held when a fault happens.
struct Details {
    ULONG_PTR place = 0; // The address of the instruction, or of the call through a wild pointer.
    ULONG_PTR target = 0;
    Access access = Access::unknown;
};

constexpr char text[] = "SEH exception";

std::string textWith(const Details& details)
{
    char bytes[sizeof text + sizeof details];
    std::memcpy(bytes, text, sizeof text);
    std::memcpy(bytes + sizeof text, &details, sizeof details);
    return std::string(bytes, sizeof bytes);
}

Details detailsOf(const char* what)
{
    Details details;
    std::memcpy(&details, what + sizeof text, sizeof details);
    return details;
}

const ULONG_PTR* stackOf(const CONTEXT& context)
{
#ifdef __i386__
    return reinterpret_cast<const ULONG_PTR*>(context.Esp);
#else
    return reinterpret_cast<const ULONG_PTR*>(context.Rsp);
#endif
}

// Whether the stack of the fault is the one in use: what a caller of translate makes up is not looked into.
bool isOnThisStack(const ULONG_PTR* stack)
{
    constexpr ULONG_PTR framesOfTranslators = 0x10000;
    const ULONG_PTR here = reinterpret_cast<ULONG_PTR>(&stack);
    return reinterpret_cast<ULONG_PTR>(stack) - here < framesOfTranslators;
}

Details detailsOf(const EXCEPTION_RECORD& record, const CONTEXT& context)
{
    Details details;
    details.place = reinterpret_cast<ULONG_PTR>(record.ExceptionAddress);
    if ((record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION && record.ExceptionCode != EXCEPTION_IN_PAGE_ERROR) ||
        record.NumberParameters < 2)
        return details;
    const ULONG_PTR* const stack = stackOf(context);
    if (!canUnwindFrom(details.place) && isOnThisStack(stack) && placeOf(record, context) == FaultPlace::badCall)
        return {*stack - 1, details.place, Access::executing};
    constexpr ULONG_PTR write = 1, execute = 8;
    details.target = record.ExceptionInformation[1];
    if (details.target != ~ULONG_PTR{0}) // The processor did not say: all bits stand for an address that is none.
        details.access = record.ExceptionInformation[0] == write     ? Access::writing
                         : record.ExceptionInformation[0] == execute ? Access::executing
                                                                     : Access::reading;
    return details;
}

std::string nameOf(unsigned long code)
{
    static constexpr struct {
        DWORD code;
        const char* name;
    } names[] = {
        {EXCEPTION_ACCESS_VIOLATION, "Access violation"},
        {EXCEPTION_IN_PAGE_ERROR, "Page that can't be loaded"},
        {EXCEPTION_INT_DIVIDE_BY_ZERO, "Integer division by zero"},
        {EXCEPTION_INT_OVERFLOW, "Integer overflow"},
        {EXCEPTION_ILLEGAL_INSTRUCTION, "Illegal instruction"},
        {EXCEPTION_PRIV_INSTRUCTION, "Privileged instruction"},
        {EXCEPTION_ARRAY_BOUNDS_EXCEEDED, "Array bounds exceeded"},
        {EXCEPTION_FLT_DENORMAL_OPERAND, "Floating-point denormal operand"},
        {EXCEPTION_FLT_DIVIDE_BY_ZERO, "Floating-point division by zero"},
        {EXCEPTION_FLT_INEXACT_RESULT, "Floating-point inexact result"},
        {EXCEPTION_FLT_INVALID_OPERATION, "Floating-point invalid operation"},
        {EXCEPTION_FLT_OVERFLOW, "Floating-point overflow"},
        {EXCEPTION_FLT_STACK_CHECK, "Floating-point stack check"},
        {EXCEPTION_FLT_UNDERFLOW, "Floating-point underflow"},
        {EXCEPTION_STACK_OVERFLOW, "Stack overflow"},
    };
    for (const auto& known : names)
        if (known.code == code)
            return known.name;
    return "Exception 0x" + toHex(code);
}
} // namespace

SEHError::SEHError(unsigned long code) : SEHError(code, textWith({})) {}
SEHError::SEHError(unsigned long code, const std::string& what) : std::runtime_error(what), code_(code) {}
SEHError::SEHError(const SEHError&) noexcept = default;
SEHError& SEHError::operator=(const SEHError&) noexcept = default;
SEHError::~SEHError() = default;

BasicString<wchar_t> SEHError::whatW() const
{
    const LastErrorKept kept;
    static constexpr const char* accesses[] = {"", " reading 0x", " writing 0x", " executing 0x"};
    const Details details = detailsOf(std::runtime_error::what()); // A derived class may have a text of its own.
    std::string fault = nameOf(code_);
    if (details.access != Access::unknown)
        fault += accesses[static_cast<std::size_t>(details.access)] + toHex(details.target);
    const BasicString<wchar_t> report(fault);
    return details.place ? report + L" at " + codePlace(details.place) : report;
}

std::string SEHError::getReport() const { return BasicString<char>(whatW()); }

void SEHError::translate(unsigned int code, _EXCEPTION_POINTERS* info)
{
    const bool isKnown = info && info->ExceptionRecord && info->ContextRecord;
    const Details details = isKnown ? detailsOf(*info->ExceptionRecord, *info->ContextRecord) : Details();
    throwError(SEHError(code, textWith(details)), details.place ? reinterpret_cast<void*>(details.place + 1) : nullptr);
}
} // namespace tarn
