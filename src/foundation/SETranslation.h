#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// Translation of faults for the process, from load to unload; setSETranslator is the public half.
/// Nothing of the library is called for a fault after stop.
bool startSETranslation();
void stopSETranslation();

// What follows lies between the translation and its part for one processor.

/// What is kept of a fault until it has been thrown.
struct Fault;

enum class FaultPlace {
    elsewhere, ///< in code that cannot be unwound, the system's above all: left alone
    code,      ///< at an instruction of the program or the library
    badCall    ///< by a call or a last jump through a wild pointer: the address to return to is on the stack
};

/// Whether the code at an address belongs to a module that the compiler's unwinder works for. Faults in the
/// system's own code are not ours: it raises some and handles them itself.
bool canUnwindFrom(ULONG_PTR address);
FaultPlace placeOf(const EXCEPTION_RECORD& record, const CONTEXT& context);

/// Lets a thread that faulted go on in tarnRaiseTranslated, as if it had been called at that place.
void callThrower(CONTEXT& context, FaultPlace place, Fault& fault);

#ifdef __i386__
// Entered as if the faulting instruction had called it, so its stack may lie at any multiple of four.
extern "C" __attribute__((fastcall, noreturn, force_align_arg_pointer)) void tarnRaiseTranslated(Fault* raised);
#else
extern "C" [[noreturn]] void tarnRaiseTranslated(Fault* raised);
#endif
} // namespace tarn
