#include "CodePlace.h"

#include "FunctionOf.h"
#include "Hex.h"
#include "SystemLibrary.h"
#include "TypeName.h"

#include <dbghelp.h>

#include <iterator>
#include <mutex>
#include <string>

namespace tarn {
BasicString<wchar_t> codePlace(ULONG_PTR address)
{
    HMODULE module = nullptr;
    BasicString<wchar_t> path(32768, L'\0');
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<const wchar_t*>(address), &module))
        return BasicString<wchar_t>("0x" + toHex(address));
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    path.erase(0, path.find_last_of(L'\\') + 1);
    return path + BasicString<wchar_t>("+0x" + toHex(address - reinterpret_cast<ULONG_PTR>(module)));
}

namespace {
std::mutex oneAtATime; // The functions of "dbghelp.dll" are not to be called by two threads.
} // namespace

struct SymbolNames::Library {
    const std::lock_guard<std::mutex> lock{oneAtATime};
    const HMODULE module = loadSystemLibrary(L"dbghelp.dll");
    decltype(SymInitializeW)* const initialize = functionOf<decltype(SymInitializeW)>(module, "SymInitializeW");
    decltype(SymCleanup)* const cleanup = functionOf<decltype(SymCleanup)>(module, "SymCleanup");
    decltype(SymGetOptions)* const getOptions = functionOf<decltype(SymGetOptions)>(module, "SymGetOptions");
    decltype(SymSetOptions)* const setOptions = functionOf<decltype(SymSetOptions)>(module, "SymSetOptions");
    decltype(SymFromAddrW)* const fromAddress = functionOf<decltype(SymFromAddrW)>(module, "SymFromAddrW");
    decltype(SymGetLineFromAddrW64)* const lineOf =
        functionOf<decltype(SymGetLineFromAddrW64)>(module, "SymGetLineFromAddrW64");
    // A handle of its own, so that a program that uses these functions, too, keeps its session.
    HANDLE process = nullptr;
    DWORD formerOptions = 0;
};

SymbolNames::SymbolNames() : library_(std::make_unique<Library>())
{
    Library& library = *library_;
    if (!library.initialize || !library.cleanup || !library.getOptions || !library.setOptions || !library.fromAddress ||
        !library.lineOf ||
        !DuplicateHandle(GetCurrentProcess(), GetCurrentProcess(), GetCurrentProcess(), &library.process, 0, FALSE,
                         DUPLICATE_SAME_ACCESS))
        return;
    library.formerOptions = library.getOptions();
    library.setOptions(SYMOPT_UNDNAME | SYMOPT_DEFERRED_LOADS | SYMOPT_LOAD_LINES | SYMOPT_FAIL_CRITICAL_ERRORS |
                       SYMOPT_NO_PROMPTS);
    library.initialize(library.process, nullptr, TRUE);
}

SymbolNames::~SymbolNames()
{
    Library& library = *library_;
    if (library.process) {
        library.cleanup(library.process);
        library.setOptions(library.formerOptions);
        CloseHandle(library.process);
    }
    if (library.module)
        FreeLibrary(library.module);
}

BasicString<wchar_t> SymbolNames::nameOf(ULONG_PTR address) const
{
    const Library& library = *library_;
    if (!library.process)
        return {};
    constexpr ULONG maxLength = 1000;
    union {
        SYMBOL_INFOW info{};
        char bytes[sizeof(SYMBOL_INFOW) + maxLength * sizeof(wchar_t)];
    } symbol;
    symbol.info.SizeOfStruct = sizeof symbol.info;
    symbol.info.MaxNameLen = maxLength;
    DWORD64 offset = 0;
    if (!library.fromAddress(library.process, address, &offset, &symbol.info) ||
        (symbol.info.Size != 0 && offset >= symbol.info.Size))
        return {};
    BasicString<wchar_t> name(readableName(BasicString<char>(symbol.info.Name)));
    if (symbol.info.Size == 0 && offset != 0) // The nearest name that is known, be it the right one or not.
        name += BasicString<wchar_t>("+0x" + toHex(offset));

    IMAGEHLP_LINEW64 line{};
    line.SizeOfStruct = sizeof line;
    DWORD column = 0;
    if (!library.lineOf(library.process, address, &column, &line) || !line.FileName)
        return name;
    const BasicString<wchar_t> file(line.FileName);
    return name + L" (" + file.substr(file.find_last_of(L"/\\") + 1) + L":" + std::to_wstring(line.LineNumber) + L")";
}
} // namespace tarn
