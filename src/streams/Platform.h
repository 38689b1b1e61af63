#pragma once

// What streams ask of the platform. The fuzzers, which run on the host, have answers of their own.

#include <cstddef>

namespace tarn {
/// Whether the calling thread's stack has room for more: a quarter of it is left, or 256 KB.
bool stackHasRoom() noexcept;

/// Whether memory of the runtime library's heap could be made larger, or has been, without being moved.
bool growsInPlace(void* memory, std::size_t size) noexcept;

/// Whether the address lies in a module that may be unloaded while the program goes on.
bool liesInLibrary(const void* address) noexcept;
} // namespace tarn
