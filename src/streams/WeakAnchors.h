#pragma once

#include <atomic>

namespace tarn {
/// Of the objects that weak_refs refer to: who has none does not look for one.
extern std::atomic<unsigned int> weakAnchorCount;

/// The object of this count is about to be destroyed.
void expireWeakAnchor(const unsigned int* count) noexcept;
} // namespace tarn
