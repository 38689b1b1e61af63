#pragma once

#include "FunctionOf.h"

#include <ntsecapi.h>
#include <winternl.h>

#include <string_view>

namespace tarn {
/// Calls a function of the interface below the system's own one. The result is an error code as of the system. Looked
/// up and not linked: the import library has the runtime library's functions, too, in versions of the kernel's.
template <class... Arguments> DWORD callNative(const char* function, Arguments... arguments)
{
    const auto call = functionOf<NTSTATUS NTAPI(Arguments...)>(GetModuleHandleW(L"ntdll.dll"), function);
    if (!call)
        return GetLastError();
    const NTSTATUS status = call(arguments...);
    return status == 0 ? ERROR_SUCCESS : LsaNtStatusToWinError(status);
}

/// A name as the native calls take it.
class CountedName : public UNICODE_STRING {
public:
    explicit CountedName(std::wstring_view name)
        : UNICODE_STRING{static_cast<USHORT>(name.size() * sizeof(wchar_t)),
                         static_cast<USHORT>(name.size() * sizeof(wchar_t)), const_cast<wchar_t*>(name.data())}
    {
    }
};

/// What is called so inside of `parent`.
inline OBJECT_ATTRIBUTES below(HANDLE parent, CountedName& name, ULONG attributes)
{
    OBJECT_ATTRIBUTES result;
    InitializeObjectAttributes(&result, &name, attributes, parent, nullptr);
    return result;
}
} // namespace tarn
