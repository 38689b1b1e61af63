#include <tarn/Clipboard.h>

#include "../foundation/Check.h"

#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <memory>
#include <string>

namespace tarn {
namespace {
constexpr const char* cannotPut = "Can't put data on clipboard";
constexpr const char* cannotGet = "Can't get data from clipboard";
constexpr int attempts = 25;
constexpr DWORD pauseMs = 10;

struct FreeGlobal {
    void operator()(void* memory) const { GlobalFree(memory); }
};
using GlobalBlock = std::unique_ptr<void, FreeGlobal>;

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

// The clipboard owns what it has taken.
void put(unsigned format, std::span<const std::byte> head, std::span<const std::byte> body)
{
    GlobalBlock block(ensure(GlobalAlloc(GMEM_MOVEABLE, head.size() + body.size()), cannotPut));
    if (!head.empty() || !body.empty()) { // A block without any bytes cannot be locked.
        const LockedGlobal locked(block.get(), cannotPut);
        std::ranges::copy(head, locked.data());
        std::ranges::copy(body, locked.data() + head.size());
    }
    ensure(SetClipboardData(format, block.get()), cannotPut);
    block.release();
}

// Null when there is none.
HANDLE find(unsigned format)
{
    return IsClipboardFormatAvailable(format) ? ensure(GetClipboardData(format), cannotGet) : nullptr;
}
} // namespace

Clipboard::Clipboard(HWND owner)
{
    for (int attempt = 1; !OpenClipboard(owner); ++attempt) {
        if (attempt == attempts)
            throwLastError("Can't open clipboard");
        Sleep(pauseMs);
    }
}
Clipboard::~Clipboard() { CloseClipboard(); }

void Clipboard::clear() { ensure(EmptyClipboard(), "Can't empty clipboard"); }
bool Clipboard::has(unsigned format) { return IsClipboardFormatAvailable(format) != FALSE; }
unsigned Clipboard::registerFormat(const char* name) { return registerFormat(a2w(name, CP_ACP).c_str()); }
unsigned Clipboard::registerFormat(const wchar_t* name)
{
    return ensure(RegisterClipboardFormatW(name), "Can't register clipboard format");
}

void Clipboard::setText(const char* text) { setText(a2w(text, CP_ACP).c_str()); }
void Clipboard::setText(const wchar_t* text)
{
    put(CF_UNICODETEXT, {}, std::as_bytes(std::span(text, std::wcslen(text) + 1)));
}
void Clipboard::setPicture(HBITMAP bitmap)
{
    Bitmap copy(static_cast<HBITMAP>(ensure(CopyImage(bitmap, IMAGE_BITMAP, 0, 0, 0), cannotPut)), true);
    ensure(SetClipboardData(CF_BITMAP, copy.getHandle()), cannotPut);
    copy.detach();
}
void Clipboard::setFiles(std::span<const BasicString<wchar_t>> files)
{
    std::wstring names;
    for (const BasicString<wchar_t>& file : files)
        names.append(file).append(1, L'\0');
    const DROPFILES head{sizeof(DROPFILES), {0, 0}, FALSE, TRUE};
    put(CF_HDROP, std::as_bytes(std::span(&head, 1)), std::as_bytes(std::span(names.c_str(), names.size() + 1)));
}
void Clipboard::setData(unsigned format, std::span<const std::byte> data) { put(format, {}, data); }

std::optional<BasicString<wchar_t>> Clipboard::getText() const
{
    const HANDLE block = find(CF_UNICODETEXT);
    if (!block)
        return std::nullopt;
    const LockedGlobal locked(block, cannotGet);
    const auto* const text = reinterpret_cast<const wchar_t*>(locked.data());
    return BasicString<wchar_t>(text, wcsnlen(text, GlobalSize(block) / sizeof *text)); // It need not be terminated.
}
Bitmap Clipboard::getPicture() const
{
    const HANDLE bitmap = find(CF_BITMAP);
    if (!bitmap)
        return {};
    return {static_cast<HBITMAP>(ensure(CopyImage(bitmap, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION), cannotGet)), true};
}
std::vector<BasicString<wchar_t>> Clipboard::getFiles() const
{
    std::vector<BasicString<wchar_t>> files;
    if (const auto drop = static_cast<HDROP>(find(CF_HDROP))) {
        files.resize(DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0));
        for (UINT i = 0; i < files.size(); ++i) {
            files[i].resize(DragQueryFileW(drop, i, nullptr, 0));
            DragQueryFileW(drop, i, files[i].data(), static_cast<UINT>(files[i].size() + 1));
        }
    }
    return files;
}
std::optional<std::vector<std::byte>> Clipboard::getData(unsigned format) const
{
    const HANDLE block = find(format);
    if (!block)
        return std::nullopt;
    const std::size_t size = GlobalSize(block);
    if (size == 0)
        return std::vector<std::byte>();
    const LockedGlobal locked(block, cannotGet);
    return std::vector<std::byte>(locked.data(), locked.data() + size);
}
} // namespace tarn
