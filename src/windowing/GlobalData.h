#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

// What the clipboard and dragged objects have in their formats, in blocks of the global heap.

namespace tarn {
struct FreeGlobal {
    void operator()(void* memory) const { GlobalFree(memory); }
};
using GlobalBlock = std::unique_ptr<void, FreeGlobal>;
using Bytes = std::vector<std::byte>;

/// `what` is the text of a failure, here and below.
GlobalBlock globalCopyOf(std::span<const std::byte> data, const char* what);

/// As `CF_UNICODETEXT` has it.
Bytes bytesOfText(const wchar_t* text);
/// As `CF_HDROP` has them.
Bytes bytesOfFiles(std::span<const BasicString<wchar_t>> files);

/// Up to the first zero.
BasicString<wchar_t> textIn(HGLOBAL block, const char* what);
std::vector<BasicString<wchar_t>> filesIn(HGLOBAL block, const char* what);
Bytes bytesIn(HGLOBAL block, const char* what);
} // namespace tarn
