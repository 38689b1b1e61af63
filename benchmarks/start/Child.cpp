// A program that does next to nothing, for bench_start: with the standard library alone, with the system's DLLs that
// the library uses, or with the library.

#include <string>

#if defined(WITH_LIBRARY)
#include <tarn/BasicString.h>
using Text = tarn::BasicString<char>;
#else
using Text = std::string;
#endif

#if defined(WITH_SYSTEM)
#include <tarn/Windows.h>

#include <commctrl.h>
#include <commdlg.h>
#include <objbase.h>
#include <oleauto.h>
#include <shellapi.h>

// Not called, but linked.
void useSystem()
{
    InitCommonControls();
    CommDlgExtendedError();
    CoUninitialize();
    SysFreeString(nullptr);
    DragFinish(nullptr);
    GetFileVersionInfoSizeW(L"", nullptr);
    RegCloseKey(nullptr);
    GetStockObject(0);
    MessageBeep(0);
}
#endif

int main(int count, char** arguments)
{
#if defined(WITH_SYSTEM)
    if (count == 77)
        useSystem();
#endif
#if defined(WITH_LIBRARY)
    return count > 0 && Text(arguments[0]).toUpper().empty(); // A function of the DLL's.
#else
    return count > 0 && Text(arguments[0]).empty();
#endif
}
