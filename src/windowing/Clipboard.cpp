#include <tarn/Clipboard.h>

#include "../foundation/Check.h"
#include "GlobalData.h"

namespace tarn {
namespace {
constexpr const char* cannotPut = "Can't put data on clipboard";
constexpr const char* cannotGet = "Can't get data from clipboard";
constexpr int attempts = 25;
constexpr DWORD pauseMs = 10;

// The clipboard owns what it has taken.
void put(unsigned format, std::span<const std::byte> data)
{
    GlobalBlock block = globalCopyOf(data, cannotPut);
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
void Clipboard::setText(const wchar_t* text) { put(CF_UNICODETEXT, bytesOfText(text)); }
void Clipboard::setPicture(HBITMAP bitmap)
{
    Bitmap copy(static_cast<HBITMAP>(ensure(CopyImage(bitmap, IMAGE_BITMAP, 0, 0, 0), cannotPut)), true);
    ensure(SetClipboardData(CF_BITMAP, copy.getHandle()), cannotPut);
    copy.detach();
}
void Clipboard::setFiles(std::span<const BasicString<wchar_t>> files) { put(CF_HDROP, bytesOfFiles(files)); }
void Clipboard::setData(unsigned format, std::span<const std::byte> data) { put(format, data); }

std::optional<BasicString<wchar_t>> Clipboard::getText() const
{
    const HANDLE block = find(CF_UNICODETEXT);
    return block ? std::optional(textIn(block, cannotGet)) : std::nullopt;
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
    const HANDLE block = find(CF_HDROP);
    return block ? filesIn(block, cannotGet) : std::vector<BasicString<wchar_t>>();
}
std::optional<std::vector<std::byte>> Clipboard::getData(unsigned format) const
{
    const HANDLE block = find(format);
    return block ? std::optional(bytesIn(block, cannotGet)) : std::nullopt;
}
} // namespace tarn
