#pragma once

#include <tarn/Export.h>

struct _EXCEPTION_POINTERS;

namespace tarn {
/// Turns a structured exception into a thrown object: gets the exception's code and the state of the
/// thread when it happened, valid until the translator ends. It does not return, it throws; one that
/// returns all the same ends the program with the exception it was given.
using SETranslator = void (*)(unsigned int code, _EXCEPTION_POINTERS* info);

/// Makes `translator` the calling thread's (null: faults stay what they are) and returns the one before.
///
/// The library installs SEHError::translate for the thread that loads it and for each thread that starts
/// while it is loaded; threads that existed before have none until they call this. What is translated
/// are errors (codes from 0xC0000000) raised by instructions of code compiled like this library, with
/// `-fnon-call-exceptions`; faults inside system code and the C runtime library (`strlen` of a null
/// pointer) and what `RaiseException` raises are left to the system, which may handle them, and an overflow of the
/// stack leaves no room to throw in. A program that uses nothing else of the library is not linked with it and so not
/// covered: link a call of this function.
///
/// In 32-bit programs code counts that has registered the compiler's unwind tables; in 64-bit programs, where the
/// system's own code has such tables, that of modules which import the compiler's run time or this library.
TARN_API SETranslator setSETranslator(SETranslator translator) noexcept;
} // namespace tarn
