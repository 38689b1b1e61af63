#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

#include <memory>

namespace tarn {
/// For example "planner.exe+0x1234"; the bare address when no module is there, or not any more.
BasicString<wchar_t> codePlace(ULONG_PTR address);

/// The names of functions, from the symbols of the modules that are loaded when it is made. They come from
/// "dbghelp.dll", which is loaded then; without it nothing has a name. One at a time in the process.
class SymbolNames {
public:
    SymbolNames();
    SymbolNames(const SymbolNames&) = delete;
    SymbolNames& operator=(const SymbolNames&) = delete;
    ~SymbolNames();

    /// For example "save(Plan const&) (planner.cpp:120)"; empty when nothing is known.
    BasicString<wchar_t> nameOf(ULONG_PTR address) const;

private:
    struct Library;
    std::unique_ptr<Library> library_;
};
} // namespace tarn
