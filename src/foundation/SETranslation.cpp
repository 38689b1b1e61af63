#include "SETranslation.h"

#include <tarn/SETranslator.h>
#include <tarn/Windows.h>

#include <atomic>
#include <exception>
#include <memory>

// This compiler's runtime has no per-thread translator, so the library brings one: a vectored handler
// that makes a faulting instruction look like a call of a function that throws. The thread goes on in
// that function with the fault's address as its return address, and the unwinder does the rest.

namespace tarn {
namespace {
DWORD translatorIndex = TLS_OUT_OF_INDEXES;

SETranslator currentTranslator()
{
    const DWORD error = GetLastError(); // TlsGetValue clears it, and a fault must not change it.
    const auto translator = reinterpret_cast<SETranslator>(TlsGetValue(translatorIndex));
    SetLastError(error);
    return translator;
}
} // namespace

SETranslator setSETranslator(SETranslator translator) noexcept
{
    const SETranslator previous = currentTranslator();
    TlsSetValue(translatorIndex, reinterpret_cast<void*>(translator));
    return previous;
}

#ifdef __i386__
namespace {
struct dwarf_eh_bases {
    void *tbase, *dbase, *func;
};
extern "C" const void* _Unwind_Find_FDE(void* pc, dwarf_eh_bases* bases);

// Whether the compiler's unwinder knows the code at an address. System code has no such tables, so that
// faults which it raises and handles itself are left alone.
bool canUnwindFrom(DWORD address)
{
    dwarf_eh_bases bases{};
    return address && _Unwind_Find_FDE(reinterpret_cast<void*>(address), &bases);
}

/// A copy of what the system knew of the fault: its own is gone when the vectored handler has returned.
struct Fault {
    SETranslator translator;
    EXCEPTION_RECORD record;
    CONTEXT context;
};

struct FreeFault {
    void operator()(Fault* fault) const { HeapFree(GetProcessHeap(), 0, fault); }
};

// Entered as if the faulting instruction had called it, so its stack may lie at any multiple of four.
__attribute__((fastcall, noreturn, force_align_arg_pointer)) void raiseTranslated(Fault* raised)
{
    const std::unique_ptr<Fault, FreeFault> fault(raised);
    EXCEPTION_POINTERS pointers{&fault->record, &fault->context};
    fault->translator(fault->record.ExceptionCode, &pointers);
    RaiseException(fault->record.ExceptionCode, EXCEPTION_NONCONTINUABLE, fault->record.NumberParameters,
                   fault->record.ExceptionInformation);
    std::terminate();
}

// An overflow of the stack is left alone: it leaves no room to throw in.
bool isTranslated(DWORD code) { return code >> 30 == 3 && code != EXCEPTION_STACK_OVERFLOW; }

LONG CALLBACK onException(EXCEPTION_POINTERS* info)
{
    const EXCEPTION_RECORD& record = *info->ExceptionRecord;
    if (!isTranslated(record.ExceptionCode) || (record.ExceptionFlags & EXCEPTION_NONCONTINUABLE))
        return EXCEPTION_CONTINUE_SEARCH;
    const SETranslator translator = currentTranslator();
    if (!translator)
        return EXCEPTION_CONTINUE_SEARCH;

    CONTEXT& context = *info->ContextRecord;
    auto* stack = reinterpret_cast<DWORD*>(context.Esp);
    const bool knownCode = canUnwindFrom(context.Eip);
    // A call through a null or wild pointer faults at its target; its caller's address is on the stack.
    const bool badCall = !knownCode && record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION &&
                         record.NumberParameters >= 2 && record.ExceptionInformation[1] == context.Eip &&
                         canUnwindFrom(*stack - 1);
    if (!knownCode && !badCall)
        return EXCEPTION_CONTINUE_SEARCH;

    auto* fault = static_cast<Fault*>(HeapAlloc(GetProcessHeap(), 0, sizeof(Fault)));
    if (!fault)
        return EXCEPTION_CONTINUE_SEARCH;
    *fault = Fault{translator, record, context};

    // The unwinder looks for the instruction before a return address, so that of the fault is one too far.
    if (knownCode)
        *--stack = context.Eip + 1;
    constexpr DWORD trapFlag = 0x100, directionFlag = 0x400;
    context.EFlags &= ~(trapFlag | directionFlag);
    context.Esp = reinterpret_cast<DWORD>(stack);
    context.Ecx = reinterpret_cast<DWORD>(fault);
    context.Eip = reinterpret_cast<DWORD>(&raiseTranslated);
    return EXCEPTION_CONTINUE_EXECUTION;
}

void* handler = nullptr;
} // namespace

bool startSETranslation()
{
    translatorIndex = TlsAlloc();
    // The unwinder sorts its tables at the first look-up, which is better not done in the middle of a fault.
    canUnwindFrom(reinterpret_cast<DWORD>(&onException));
    handler = AddVectoredExceptionHandler(0, onException);
    return translatorIndex != TLS_OUT_OF_INDEXES && handler;
}

void stopSETranslation()
{
    if (handler)
        RemoveVectoredExceptionHandler(handler);
    handler = nullptr;
    if (translatorIndex != TLS_OUT_OF_INDEXES)
        TlsFree(translatorIndex);
    translatorIndex = TLS_OUT_OF_INDEXES;
}
#else
bool startSETranslation()
{
    translatorIndex = TlsAlloc();
    return translatorIndex != TLS_OUT_OF_INDEXES;
}

void stopSETranslation() { TlsFree(translatorIndex); }
#endif
} // namespace tarn
