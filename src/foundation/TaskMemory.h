#pragma once

#include <tarn/Windows.h>

#include <objbase.h>

#include <memory>

namespace tarn {
/// Frees what COM and the shell hand out.
struct FreeTaskMemory {
    void operator()(void* memory) const { CoTaskMemFree(memory); }
};

/// A text that the shell has handed out.
using TaskText = std::unique_ptr<wchar_t, FreeTaskMemory>;
} // namespace tarn
