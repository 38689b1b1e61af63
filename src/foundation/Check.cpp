#include "Check.h"

namespace tarn {
void throwWindowsError(unsigned long error, const char* what) { throwError(WindowsError(error, what)); }

void throwLastError(const char* what) { throwWindowsError(GetLastError(), what); }
} // namespace tarn
