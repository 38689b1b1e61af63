#pragma once

namespace tarn {
/// Deletes a folder with everything in it, at any depth and without a question. What cannot be deleted stays,
/// and so do the folders above it. A link is deleted, never what it leads to; under Wine, which cannot delete
/// links, it stays. Throws only for want of memory.
void deleteTree(const wchar_t* folder);
} // namespace tarn
