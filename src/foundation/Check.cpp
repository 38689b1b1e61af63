#include "Check.h"

namespace tarn {
void throwWindowsError(unsigned long error, const char* what)
{
    throwError(WindowsError(error, what), __builtin_return_address(0));
}

void throwLastError(const char* what) { throwError(WindowsError(GetLastError(), what), __builtin_return_address(0)); }
} // namespace tarn
