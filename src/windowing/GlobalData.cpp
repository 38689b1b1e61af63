#include "GlobalData.h"

#include "../foundation/Check.h"

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <cwchar>
#include <string>

namespace tarn {
namespace {
/// A block of the global heap while its bytes are used.
class LockedGlobal {
public:
    LockedGlobal(HGLOBAL block, const char* what)
        : block_(block), data_(static_cast<std::byte*>(ensure(GlobalLock(block), what)))
    {
    }
    LockedGlobal(const LockedGlobal&) = delete;
    LockedGlobal& operator=(const LockedGlobal&) = delete;
    ~LockedGlobal() { GlobalUnlock(block_); }

    std::byte* data() const { return data_; }

private:
    HGLOBAL block_;
    std::byte* data_;
};
} // namespace

GlobalBlock globalCopyOf(std::span<const std::byte> data, const char* what)
{
    GlobalBlock block(ensure(GlobalAlloc(GMEM_MOVEABLE, data.size()), what));
    if (!data.empty()) // A block without any bytes cannot be locked.
        std::ranges::copy(data, LockedGlobal(block.get(), what).data());
    return block;
}

Bytes bytesOfText(const wchar_t* text)
{
    const auto bytes = std::as_bytes(std::span(text, std::wcslen(text) + 1));
    return Bytes(bytes.begin(), bytes.end());
}

Bytes bytesOfFiles(std::span<const BasicString<wchar_t>> files)
{
    const DROPFILES head{sizeof(DROPFILES), {0, 0}, FALSE, TRUE};
    std::wstring names;
    for (const BasicString<wchar_t>& file : files)
        names.append(file).append(1, L'\0');
    const auto first = std::as_bytes(std::span(&head, 1));
    const auto rest = std::as_bytes(std::span(names.c_str(), names.size() + 1));
    Bytes bytes(first.size() + rest.size());
    std::ranges::copy(rest, std::ranges::copy(first, bytes.begin()).out);
    return bytes;
}

BasicString<wchar_t> textIn(HGLOBAL block, const char* what)
{
    const LockedGlobal locked(block, what);
    const auto* const text = reinterpret_cast<const wchar_t*>(locked.data());
    return BasicString<wchar_t>(text, wcsnlen(text, GlobalSize(block) / sizeof *text)); // It need not be terminated.
}

std::vector<BasicString<wchar_t>> filesIn(HGLOBAL block, const char* what)
{
    const auto drop = static_cast<HDROP>(block);
    std::vector<BasicString<wchar_t>> files(DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0));
    for (UINT i = 0; i < files.size(); ++i) {
        const auto query = [&](wchar_t* name, UINT size) {
            return ensureGDI([&] { return DragQueryFileW(drop, i, name, size); }, what);
        };
        files[i].resize(query(nullptr, 0));
        query(files[i].data(), static_cast<UINT>(files[i].size() + 1));
    }
    return files;
}

Bytes bytesIn(HGLOBAL block, const char* what)
{
    const std::size_t size = GlobalSize(block);
    if (size == 0)
        return {};
    const LockedGlobal locked(block, what);
    return Bytes(locked.data(), locked.data() + size);
}
} // namespace tarn
