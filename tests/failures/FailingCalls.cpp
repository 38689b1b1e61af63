#include "FailingCalls.h"

#include <commctrl.h>
#include <commdlg.h>
#include <objbase.h>
#include <ole2.h>
#include <oleauto.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <iterator>
#include <new>
#include <stdexcept>
#include <type_traits>

namespace support {
namespace {
constexpr HRESULT injectedResult = __HRESULT_FROM_WIN32(injectedError);
constexpr std::size_t none = static_cast<std::size_t>(-1);

std::size_t target = none;
unsigned firstFailing = 0;
bool untilTheEnd = false;
std::atomic<unsigned> failures;

struct State {
    void* original = nullptr;
    std::atomic<unsigned> count;
};

enum CallIndex : std::size_t {
#define TARN_CALL(name, result, kind) call_##name,
#include "PlatformCalls.inc"
#undef TARN_CALL
    call_operator_new,
    callCount
};

State states[callCount];

bool mustFail(std::size_t call) noexcept
{
    const unsigned nth = ++states[call].count;
    if (call != target || nth < firstFailing || (nth > firstFailing && !untilTheEnd))
        return false;
    ++failures;
    return true;
}

// The result of a failing call, whichever kind of number or pointer it is.
template <class R, class Number> R asResult(Number number) noexcept
{
    if constexpr (std::is_pointer_v<R> && std::is_integral_v<Number>)
        return reinterpret_cast<R>(static_cast<LONG_PTR>(number));
    else if constexpr (std::is_pointer_v<R>)
        return reinterpret_cast<R>(number);
    else
        return static_cast<R>(number);
}

enum Kind { gives, closes, leaves };

// What calls that closed nothing have left open, until the run is over.
struct LeftOpen {
    ULONG_PTR object;
    std::function<void()> close;
};
std::vector<LeftOpen> leftOpen;

template <class First, class... Rest> ULONG_PTR objectOf(First object, Rest...)
{
    if constexpr (std::is_pointer_v<First>)
        return reinterpret_cast<ULONG_PTR>(object);
    else
        return static_cast<ULONG_PTR>(object);
}

void forget(ULONG_PTR object)
{
    std::erase_if(leftOpen, [object](const LeftOpen& left) { return left.object == object; });
}

template <std::size_t call> struct Failed;
#define TARN_CALL(name, result, kind)                                                                                  \
    template <> struct Failed<call_##name> {                                                                           \
        static constexpr Kind how = kind;                                                                              \
        template <class R> static R as() noexcept { return asResult<R>(result); }                                      \
    };
#include "PlatformCalls.inc"
#undef TARN_CALL

template <std::size_t call, class Function> struct Replacement;
template <std::size_t call, class R, class... Args> struct Replacement<call, R(WINAPI*)(Args...)> {
    static R WINAPI run(Args... args)
    {
        const auto original = reinterpret_cast<R(WINAPI*)(Args...)>(states[call].original);
        constexpr bool isClosing = Failed<call>::how == closes;
        if constexpr (isClosing)
            forget(objectOf(args...));
        if (!mustFail(call))
            return original(args...);
        if constexpr (isClosing)
            leftOpen.push_back({objectOf(args...), [=] { original(args...); }});
        SetLastError(injectedError);
        return Failed<call>::template as<R>();
    }
};

void* allocate(std::size_t size)
{
    if (mustFail(call_operator_new))
        throw std::bad_alloc();
    return reinterpret_cast<void* (*)(std::size_t)>(states[call_operator_new].original)(size);
}

struct Entry {
    const char* name;
    void* replacement;
};

// Some types say more than their calls need: which argument is a format, for instance.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-attributes"
// The mangled name is that of `operator new(std::size_t)`.
const Entry entries[] = {
#define TARN_CALL(name, result, kind)                                                                                  \
    {#name, reinterpret_cast<void*>(&Replacement<call_##name, decltype(&::name)>::run)},
#include "PlatformCalls.inc"
#undef TARN_CALL
#ifdef _WIN64
    {"_Znwy", reinterpret_cast<void*>(&allocate)},
#else
    {"_Znwj", reinterpret_cast<void*>(&allocate)},
#endif
};
#pragma GCC diagnostic pop
static_assert(std::size(entries) == callCount);

// These cannot fail, or tell nobody when they do.
constexpr const char* cannotFail[] = {
    "AbortDoc",
    "AcquireSRWLockExclusive",
    "AcquireSRWLockShared",
    "AddVectoredExceptionHandler",
    "CallNextHookEx",
    "CallWindowProcW",
    "CoTaskMemFree",
    "CoUninitialize",
    "CommDlgExtendedError",
    "DefSubclassProc",
    "DefWindowProcW",
    "DeleteCriticalSection",
    "DeleteProcThreadAttributeList",
    "DisableThreadLibraryCalls",
    "DispatchMessageW",
    "DragAcceptFiles",
    "DragFinish",
    "EndMenu",
    "EnterCriticalSection",
    "EnumThreadWindows",
    "ExitThread",
    "GetCapture",
    "GetCommandLineW",
    "GetCurrentProcess",
    "GetCurrentProcessId",
    "GetCurrentThreadId",
    "GetDesktopWindow",
    "GetDeviceCaps",
    "GetFocus",
    "GetGUIThreadInfo",
    "GetLastError",
    "GetProcessHeap",
    "GetStartupInfoW",
    "GetObjectType",
    "GetSysColor",
    "GetSysColorBrush",
    "GetSystemInfo",
    "GetSystemMetrics",
    "GetSystemTimeAsFileTime",
    "GetTickCount64",
    "GlobalFree",
    "GlobalSize",
    "GlobalUnlock",
    "HeapFree",
    "InitializeCriticalSection",
    "IntersectRect",
    "IsChild",
    "IsClipboardFormatAvailable",
    "IsDBCSLeadByteEx",
    "IsDialogMessageW",
    "IsDlgButtonChecked",
    "IsIconic",
    "IsRectEmpty",
    "IsWindow",
    "IsWindowUnicode",
    "IsWindowVisible",
    "LeaveCriticalSection",
    "LsaNtStatusToWinError",
    "MonitorFromPoint",
    "MsgWaitForMultipleObjects", // Of handles that there are.
    "MulDiv",
    "NotifyWinEvent",
    "OleUninitialize",
    "OutputDebugStringA",
    "OutputDebugStringW",
    "PeekMessageW",
    "PostQuitMessage",
    "RaiseException",
    "ReleaseSRWLockExclusive",
    "ReleaseSRWLockShared",
    "ReleaseStgMedium",
    "RemoveVectoredExceptionHandler",
    "ResumeThread", // Wine may end the process with the thread that the library then kills: docs/failing-calls.md.
    "RtlLookupFunctionEntry",
    "RtlPcToFileHeader",
    "RtlVirtualUnwind",
    "SafeArrayGetDim",
    "SendMessageA",
    "SendMessageW",
    "SetCapture",
    "SetLastError",
    "SetScrollInfo",
    "ShowWindow",
    "Sleep",
    "SysFreeString",
    "SysStringLen",
    "TranslateAcceleratorW",
    "TranslateMessage",
    "VarCmp", // Can, but its name stands for two functions here.
    "VariantInit",
    "VirtualProtect",
    "VirtualQuery",
    "lstrcmpiW",
    "wsprintfA",
    "wsprintfW",
};

BYTE* library()
{
    const HMODULE module = GetModuleHandleA(TARN_DLL);
    if (!module)
        throw std::logic_error("the library is not loaded");
    return reinterpret_cast<BYTE*>(module);
}

// Calls `visit(module, name, slot)` for every function that the library imports by name.
template <class Visit> void forEachImport(Visit visit)
{
    BYTE* const base = library();
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos.e_lfanew);
    const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* module = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress); module->Name;
         ++module) {
        auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + module->OriginalFirstThunk);
        auto* slots = reinterpret_cast<IMAGE_THUNK_DATA*>(base + module->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal))
                continue;
            const auto* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            visit(reinterpret_cast<const char*>(base + module->Name), reinterpret_cast<const char*>(name->Name),
                  reinterpret_cast<void**>(&slots->u1.Function));
        }
    }
}

// The runtime libraries of the compiler are no platform.
bool isRuntime(const char* module)
{
    for (const char* runtime : {"msvcrt", "libstdc++", "libgcc", "libwinpthread", "Tarn++"})
        if (!_strnicmp(module, runtime, std::strlen(runtime)))
            return true;
    return false;
}

const Entry* findEntry(const char* name)
{
    for (const Entry& entry : entries)
        if (!std::strcmp(entry.name, name))
            return &entry;
    return nullptr;
}

void setSlot(void** slot, void* function)
{
    DWORD former = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &former);
    *slot = function;
    VirtualProtect(slot, sizeof *slot, former, &former);
}

void start(std::size_t call, unsigned at, bool always)
{
    for (State& state : states)
        state.count = 0;
    failures = 0;
    firstFailing = at;
    untilTheEnd = always;
    target = call;
}
} // namespace

FailingCalls::FailingCalls()
{
    stop();
    forEachImport([](const char*, const char* name, void** slot) {
        if (const Entry* entry = findEntry(name)) {
            states[entry - entries].original = *slot;
            setSlot(slot, entry->replacement);
        }
    });
}

FailingCalls::~FailingCalls()
{
    stop();
    forEachImport([](const char*, const char* name, void** slot) {
        if (const Entry* entry = findEntry(name))
            setSlot(slot, states[entry - entries].original);
    });
}

const std::vector<PlatformCall>& FailingCalls::calls()
{
    static const std::vector<PlatformCall> calls{
#define TARN_CALL(name, result, kind) {#name, kind == leaves},
#include "PlatformCalls.inc"
#undef TARN_CALL
        {"operator new", false},
    };
    return calls;
}

std::vector<std::string> FailingCalls::unknownImports()
{
    std::vector<std::string> unknown;
    forEachImport([&unknown](const char* module, const char* name, void**) {
        const auto isName = [name](const char* other) { return !std::strcmp(name, other); };
        if (!isRuntime(module) && !findEntry(name) &&
            std::none_of(std::begin(cannotFail), std::end(cannotFail), isName))
            unknown.push_back(name);
    });
    return unknown;
}

void FailingCalls::count() { start(none, 0, false); }
void FailingCalls::fail(std::size_t call, unsigned at, bool always) { start(call, at, always); }
void FailingCalls::stop()
{
    target = none;
    for (; !leftOpen.empty(); leftOpen.pop_back())
        leftOpen.back().close();
}
unsigned FailingCalls::counted(std::size_t call) const { return states[call].count; }
unsigned FailingCalls::failed() const { return failures; }
} // namespace support
