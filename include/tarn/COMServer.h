#pragma once

/// @file
/// A COM server in a DLL, in one line.

#include <tarn/COMModule.h>
#include <tarn/Windows.h>

#include <objbase.h>

/// The linker's name for the beginning of this DLL or program.
extern "C" IMAGE_DOS_HEADER __ImageBase;

/// The linker's option that exports the function `name`, whose arguments take `bytes`; for TARN_COM_SERVER.
#ifdef __i386__
#define TARN_COM_EXPORT(name, bytes) " -export:" #name "=" #name "@" #bytes
#else
#define TARN_COM_EXPORT(name, bytes) " -export:" #name
#endif

/// Makes a DLL a COM server. Put it into one source file of the DLL, outside of namespaces, with the table
/// of classes as its arguments:
///
///     TARN_COM_SERVER({CLSID_Clock, &createClock, L"Clock", tarn::COMModule::both, L"Sample.Clock"});
///
/// It defines and exports, under their plain names, `DllGetClassObject`, `DllCanUnloadNow`,
/// `DllRegisterServer`, `DllUnregisterServer` and `DllInstall`. The last one, called with the text "user"
/// ("regsvr32 /n /i:user clock.dll"), registers for the current user only.
#define TARN_COM_SERVER(...)                                                                                           \
    static tarn::COMModule tarnServerModule(reinterpret_cast<HINSTANCE>(&__ImageBase), {__VA_ARGS__});                 \
    asm(".section .drectve\n\t.ascii \"" TARN_COM_EXPORT(DllGetClassObject, 12) TARN_COM_EXPORT(DllCanUnloadNow, 0)    \
            TARN_COM_EXPORT(DllRegisterServer, 0) TARN_COM_EXPORT(DllUnregisterServer, 0)                              \
                TARN_COM_EXPORT(DllInstall, 8) "\"\n\t.text");                                                         \
    STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)                                                \
    {                                                                                                                  \
        return tarnServerModule.createClassFactory(clsid, iid, object);                                                \
    }                                                                                                                  \
    STDAPI DllCanUnloadNow() { return tarnServerModule.canUnloadNow(); }                                               \
    STDAPI DllRegisterServer() { return tarn::registerCOMServer(tarnServerModule, true, nullptr); }                    \
    STDAPI DllUnregisterServer() { return tarn::registerCOMServer(tarnServerModule, false, nullptr); }                 \
    STDAPI DllInstall(BOOL install, LPCWSTR scope)                                                                     \
    {                                                                                                                  \
        return tarn::registerCOMServer(tarnServerModule, install != FALSE, scope);                                     \
    }                                                                                                                  \
    static_assert(true, "so that a semicolon may follow")

namespace tarn {
/// What the exported functions of registration do. `scope` is "user" or, for all users, null or "".
/// Never throws: any other `scope` is `E_INVALIDARG`.
TARN_API HRESULT registerCOMServer(const COMModule& module, bool install, const wchar_t* scope) noexcept;
} // namespace tarn
