#ifdef __x86_64__
#include "SETranslation.h"

#include <cstring>
#include <initializer_list>

// A function that faults need not have prepared the stack for a call, so the thrower is called from here: with the
// stack aligned, with a home area for its argument, and with unwind data that find the way back through rbp. The
// return address of a fault is pushed here and not in the handler, while the system still uses what lies below.
asm(R"(
    .text
tarnFaultAtRdx:
    pushq %rdx
    .seh_proc tarnFaultAtCall
tarnFaultAtCall:
    pushq %rbp
    .seh_pushreg %rbp
    movq %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    andq $-16, %rsp
    subq $32, %rsp
    call tarnRaiseTranslated
    ud2
    .seh_endproc
)");

namespace tarn {
namespace {
extern "C" void faultAtRdx() asm("tarnFaultAtRdx");
extern "C" void faultAtCall() asm("tarnFaultAtCall");

// System code has unwind data, too, so the module decides: one that uses the compiler's run time, or the library.
bool usesOurRunTime(const char* module)
{
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(module + dos->e_lfanew);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    if (!imports)
        return false;
    for (auto* entry = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(module + imports); entry->Name; ++entry)
        for (const char* ours : {"libgcc_s_", "libstdc++-", "Tarn++U"})
            if (_strnicmp(module + entry->Name, ours, std::strlen(ours)) == 0)
                return true;
    return false;
}

// A jump through memory that the platform's rules mark as a function's last instruction by a prefix without other
// use (REX.W): the stack is the caller's again. Not every unwinder looks for it.
bool isLastJump(DWORD64 address)
{
    const auto* code = reinterpret_cast<const unsigned char*>(address);
    return (code[0] & 0xf8) == 0x48 && code[1] == 0xff && (code[2] >> 3 & 7) == 4;
}

// Where the stack ends for the caller of a function that is at this address.
DWORD64 callersStack(CONTEXT context, DWORD64 address)
{
    DWORD64 module = 0;
    if (RUNTIME_FUNCTION* function = RtlLookupFunctionEntry(address, &module, nullptr)) {
        void* handlerData = nullptr;
        DWORD64 frame = 0;
        RtlVirtualUnwind(UNW_FLAG_NHANDLER, module, address, function, &context, &handlerData, &frame, nullptr);
    }
    return context.Rsp;
}
} // namespace

bool canUnwindFrom(ULONG_PTR address)
{
    void* module = nullptr;
    return RtlPcToFileHeader(reinterpret_cast<void*>(address), &module) && usesOurRunTime(static_cast<char*>(module));
}

FaultPlace placeOf(const EXCEPTION_RECORD& record, const CONTEXT& context)
{
    if (canUnwindFrom(context.Rip))
        return isLastJump(context.Rip) ? FaultPlace::badCall : FaultPlace::code;
    // A target that is no address at all (not canonical) is reported as all bits set.
    const bool atTarget =
        record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2 &&
        (record.ExceptionInformation[1] == context.Rip || record.ExceptionInformation[1] == ~ULONG_PTR{0});
    return atTarget && canUnwindFrom(*reinterpret_cast<const DWORD64*>(context.Rsp) - 1) ? FaultPlace::badCall
                                                                                         : FaultPlace::elsewhere;
}

void callThrower(CONTEXT& context, FaultPlace place, Fault& fault)
{
    constexpr DWORD64 longestInstruction = 15;
    // The unwinder looks for the instruction before a return address, so that of a fault is one too far. There,
    // within an instruction, the bytes may look to it like the end of a function: then it is a little further.
    const DWORD64 stack = callersStack(context, context.Rip);
    DWORD64 tooFar = 1;
    while (tooFar < longestInstruction && callersStack(context, context.Rip + tooFar) != stack)
        ++tooFar;
    context.Rdx = context.Rip + tooFar;
    context.Rcx = reinterpret_cast<DWORD64>(&fault);
    context.Rip =
        place == FaultPlace::code ? reinterpret_cast<DWORD64>(&faultAtRdx) : reinterpret_cast<DWORD64>(&faultAtCall);
}
} // namespace tarn
#endif
