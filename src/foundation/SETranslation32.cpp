#ifdef __i386__
#include "SETranslation.h"

// The unwinder looks for the instruction before a return address, so the one that a fault gets is one too far.
// It is pushed here and not in the handler, while the system still uses what lies below the stack of the fault.
asm(R"(
    .text
tarnFaultAtEdx:
    incl %edx
    pushl %edx
    jmp @tarnRaiseTranslated@4
)");

namespace tarn {
namespace {
extern "C" void faultAtEdx() asm("tarnFaultAtEdx");

struct dwarf_eh_bases {
    void *tbase, *dbase, *func;
};
// NOLINTNEXTLINE(bugprone-reserved-identifier): the compiler's own name.
extern "C" const void* _Unwind_Find_FDE(void* pc, dwarf_eh_bases* bases);
} // namespace

bool canUnwindFrom(ULONG_PTR address)
{
    dwarf_eh_bases bases{};
    return address && _Unwind_Find_FDE(reinterpret_cast<void*>(address), &bases);
}

FaultPlace placeOf(const EXCEPTION_RECORD& record, const CONTEXT& context)
{
    if (canUnwindFrom(context.Eip))
        return FaultPlace::code;
    const bool atTarget = record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2 &&
                          record.ExceptionInformation[1] == context.Eip;
    return atTarget && canUnwindFrom(*reinterpret_cast<const DWORD*>(context.Esp) - 1) ? FaultPlace::badCall
                                                                                       : FaultPlace::elsewhere;
}

void callThrower(CONTEXT& context, FaultPlace place, Fault& fault)
{
    context.Ecx = reinterpret_cast<DWORD>(&fault);
    context.Edx = context.Eip;
    context.Eip = place == FaultPlace::code ? reinterpret_cast<DWORD>(&faultAtEdx)
                                            : reinterpret_cast<DWORD>(&tarnRaiseTranslated);
}
} // namespace tarn
#endif
