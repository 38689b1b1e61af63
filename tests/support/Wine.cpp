#include "Wine.h"

#include <tarn/Windows.h>

#include <cstdlib>

bool support::isWine() { return wineVersion() != 0; }

int support::wineVersion()
{
    const FARPROC version = GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version");
    return version ? std::atoi(reinterpret_cast<const char*(CDECL*)()>(reinterpret_cast<void*>(version))()) : 0;
}
