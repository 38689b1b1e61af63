#include "SETranslation.h"

#include "LastErrorKept.h"

#include <tarn/SETranslator.h>
#include <tarn/Windows.h>

#include <atomic>
#include <exception>
#include <iterator>
#include <memory>

// This compiler's runtime has no per-thread translator, so the library brings one: a vectored handler
// that makes a faulting instruction look like a call of a function that throws. The thread goes on in
// that function with the fault's address as its return address, and the unwinder does the rest. How such
// a call is made differs with the processor: see SETranslation32.cpp and SETranslation64.cpp.

namespace tarn {
namespace {
DWORD translatorIndex = TLS_OUT_OF_INDEXES;

SETranslator currentTranslator()
{
    const LastErrorKept kept; // TlsGetValue clears it, and a fault must not change it.
    return reinterpret_cast<SETranslator>(TlsGetValue(translatorIndex));
}
} // namespace

SETranslator setSETranslator(SETranslator translator) noexcept
{
    const SETranslator previous = currentTranslator();
    TlsSetValue(translatorIndex, reinterpret_cast<void*>(translator));
    return previous;
}

/// A copy of what the system knew of the fault: its own is gone when the vectored handler has returned.
struct Fault {
    SETranslator translator;
    EXCEPTION_RECORD record;
    CONTEXT context;
};

namespace {
// Kept for faults, which may come when memory is used up or the heap is broken. Only when more threads
// than these fault at one time, or translators do themselves, is the heap asked.
Fault reserve[16];
std::atomic_flag reserveTaken[std::size(reserve)];

Fault* allocateFault()
{
    for (std::size_t i = 0; i < std::size(reserve); ++i)
        if (!reserveTaken[i].test_and_set())
            return &reserve[i];
    return static_cast<Fault*>(HeapAlloc(GetProcessHeap(), 0, sizeof(Fault)));
}

struct FreeFault {
    void operator()(Fault* fault) const
    {
        for (std::size_t i = 0; i < std::size(reserve); ++i)
            if (fault == &reserve[i])
                return reserveTaken[i].clear();
        HeapFree(GetProcessHeap(), 0, fault);
    }
};

// An overflow of the stack is left alone: it leaves no room to throw in.
bool isTranslated(const EXCEPTION_RECORD& record)
{
    return record.ExceptionCode >> 30 == 3 && record.ExceptionCode != EXCEPTION_STACK_OVERFLOW &&
           !(record.ExceptionFlags & EXCEPTION_NONCONTINUABLE);
}

LONG CALLBACK onException(EXCEPTION_POINTERS* info)
{
    const EXCEPTION_RECORD& record = *info->ExceptionRecord;
    if (!isTranslated(record))
        return EXCEPTION_CONTINUE_SEARCH;
    const SETranslator translator = currentTranslator();
    if (!translator)
        return EXCEPTION_CONTINUE_SEARCH;

    CONTEXT& context = *info->ContextRecord;
    const FaultPlace place = placeOf(record, context);
    if (place == FaultPlace::elsewhere)
        return EXCEPTION_CONTINUE_SEARCH;
    Fault* const fault = allocateFault();
    if (!fault)
        return EXCEPTION_CONTINUE_SEARCH;
    *fault = Fault{translator, record, context};

    constexpr DWORD trapFlag = 0x100, directionFlag = 0x400;
    context.EFlags &= ~(trapFlag | directionFlag);
    callThrower(context, place, *fault);
    return EXCEPTION_CONTINUE_EXECUTION;
}

void* handler = nullptr;
} // namespace

void tarnRaiseTranslated(Fault* raised)
{
    const std::unique_ptr<Fault, FreeFault> fault(raised);
    EXCEPTION_POINTERS pointers{&fault->record, &fault->context};
    fault->translator(fault->record.ExceptionCode, &pointers);
    RaiseException(fault->record.ExceptionCode, EXCEPTION_NONCONTINUABLE, fault->record.NumberParameters,
                   fault->record.ExceptionInformation);
    std::terminate();
}

bool startSETranslation()
{
    translatorIndex = TlsAlloc();
    // The unwinder sorts its tables at the first look-up, which is better not done in the middle of a fault.
    canUnwindFrom(reinterpret_cast<ULONG_PTR>(&onException));
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
} // namespace tarn
