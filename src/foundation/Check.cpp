#include "Check.h"

namespace tarn {
void throwWindowsError(unsigned long error, const char* what)
{
    throwNew<WindowsError>(__builtin_return_address(0), error, what);
}

void throwLastError(const char* what) { throwNew<WindowsError>(__builtin_return_address(0), GetLastError(), what); }
} // namespace tarn
