#include "Check.h"

namespace tarn {
void throwLastError(const char* what)
{
    const DWORD error = GetLastError();
    throw WindowsError(error, what);
}
} // namespace tarn
