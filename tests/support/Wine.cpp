#include "Wine.h"

#include <tarn/Windows.h>

bool support::isWine() { return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr; }
