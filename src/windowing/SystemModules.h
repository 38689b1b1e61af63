#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// The module that the address lies in, null for none: also for what is no address but stands for one.
HMODULE moduleOf(const void* address) noexcept;

/// Whether the address lies in one of the system's modules, or in none.
bool isCodeOfSystem(const void* address) noexcept;
} // namespace tarn
