#include <tarn/RichEdit.h>

#include <tarn/MemoryStream.h>
#include <tarn/StandardStreams.h>

#include "../foundation/Check.h"
#include "../foundation/SystemLibrary.h"
#include "../windowing/HandlerScope.h"
#include "ControlMessages.h"

#include <richedit.h>

#include <cmath>
#include <string>

namespace tarn {
namespace {
constexpr double twipsOfPoint = 20;
constexpr LPARAM longest = 0x7FFFFFFE;

struct Effect {
    DWORD bit;
    std::optional<bool> RichEdit::CharacterFormat::*member;
};
constexpr Effect effects[] = {{CFE_BOLD, &RichEdit::CharacterFormat::isBold},
                              {CFE_ITALIC, &RichEdit::CharacterFormat::isItalic},
                              {CFE_UNDERLINE, &RichEdit::CharacterFormat::isUnderlined},
                              {CFE_STRIKEOUT, &RichEdit::CharacterFormat::isStruckOut}}; // As in the mask.

WPARAM kindOf(RichEdit::text_format kind, bool isSelection)
{
    return (kind == RichEdit::rtf ? SF_RTF : SF_TEXT | SF_UNICODE) | (isSelection ? SFF_SELECTION : 0u);
}

DWORD CALLBACK readPiece(DWORD_PTR stream, BYTE* buffer, LONG size, LONG* count)
{
    return guardedCallback<DWORD>(ERROR_READ_FAULT, {"a stream for a text field", nullptr, 0}, [=] {
        *count = static_cast<LONG>(reinterpret_cast<InputStream*>(stream)->read(buffer, static_cast<unsigned>(size)));
        return ERROR_SUCCESS;
    });
}

DWORD CALLBACK writePiece(DWORD_PTR stream, BYTE* buffer, LONG size, LONG* count)
{
    return guardedCallback<DWORD>(ERROR_WRITE_FAULT, {"a stream for a text field", nullptr, 0}, [=] {
        reinterpret_cast<OutputStream*>(stream)->writeFully(buffer, static_cast<unsigned>(size));
        *count = size;
        return ERROR_SUCCESS;
    });
}

template <class Stream>
void transfer(const RichEdit& control, UINT msg, WPARAM kind, Stream& stream, EDITSTREAMCALLBACK callback,
              const char* what)
{
    EDITSTREAM transfer{reinterpret_cast<DWORD_PTR>(&stream), ERROR_SUCCESS, callback};
    runningHandlers([&] { SendMessageW(control, msg, kind, toLParam(&transfer)); });
    if (transfer.dwError || !IsWindow(control))
        throwWindowsError(transfer.dwError ? transfer.dwError : ERROR_INVALID_WINDOW_HANDLE, what);
}
} // namespace

void RichEdit::loadClass()
{
    static const HMODULE module = loadSystemLibrary(L"msftedit.dll"); // Which has the class, and stays.
    ensure(module, "Can't create window");
}

void RichEdit::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    loadClass();
    createControl(*this, MSFTEDIT_CLASS, parent, id, rect, style);
    sendMessageA(EM_EXLIMITTEXT, 0, longest); // It is no more than 32,767 characters otherwise.
}

// Not every version of the control converts UTF-8 itself.
void RichEdit::load(InputStream& in, text_format kind, bool intoSelection) const
{
    constexpr wchar_t mark = 0xFEFF; // Of the order of bytes, which some programs write.
    const auto loadFrom = [&](InputStream& stream) {
        transfer(*this, EM_STREAMIN, kindOf(kind, intoSelection), stream, readPiece, "Can't load text");
    };
    if (kind == rtf)
        return loadFrom(in);
    const BasicString<wchar_t> text = a2w(readAll(in), CP_UTF8);
    const std::size_t first = !text.empty() && text[0] == mark ? 1 : 0;
    MemoryInputStream wide(text.c_str() + first, static_cast<unsigned>((text.size() - first) * sizeof(wchar_t)));
    loadFrom(wide);
}
void RichEdit::save(OutputStream& out, text_format kind, bool selectionOnly) const
{
    const auto saveTo = [&](OutputStream& stream) {
        transfer(*this, EM_STREAMOUT, kindOf(kind, selectionOnly), stream, writePiece, "Can't save text");
    };
    if (kind == rtf)
        return saveTo(out);
    MemoryOutputStream wide;
    saveTo(wide);
    const std::wstring text(static_cast<const wchar_t*>(wide.getData()),
                            static_cast<std::size_t>(wide.getSize()) / sizeof(wchar_t));
    const BasicString<char> bytes = w2a(text, CP_UTF8);
    if (!bytes.empty())
        out.writeFully(bytes.c_str(), static_cast<unsigned>(bytes.size()));
}

void RichEdit::setSelection(int start, int end) const
{
    CHARRANGE range{start, end};
    sendMessageA(EM_EXSETSEL, 0, toLParam(&range));
}
std::pair<int, int> RichEdit::getSelection() const
{
    CHARRANGE range{};
    sendMessageA(EM_EXGETSEL, 0, toLParam(&range));
    return {range.cpMin, range.cpMax};
}
void RichEdit::replaceSelection(const char* text, bool undoable) const
{
    sendText(*this, EM_REPLACESEL, undoable, text);
}
void RichEdit::replaceSelection(const wchar_t* text, bool undoable) const
{
    sendText(*this, EM_REPLACESEL, undoable, text);
}

void RichEdit::setFormat(const CharacterFormat& wanted) const
{
    CHARFORMAT2W data{};
    data.cbSize = sizeof data;
    for (const Effect& effect : effects) {
        if (const auto isOn = wanted.*effect.member) {
            data.dwMask |= effect.bit;
            data.dwEffects |= *isOn ? effect.bit : 0;
        }
    }
    if (wanted.size) {
        data.dwMask |= CFM_SIZE;
        data.yHeight = static_cast<LONG>(std::lround(*wanted.size * twipsOfPoint));
    }
    if (wanted.colour) {
        data.dwMask |= CFM_COLOR;
        data.crTextColor = *wanted.colour;
    }
    if (wanted.font) {
        data.dwMask |= CFM_FACE;
        wanted.font->copy(data.szFaceName, LF_FACESIZE - 1);
    }
    ensureSent(*this, 0, "Can't set character format", EM_SETCHARFORMAT, SCF_SELECTION, toLParam(&data));
}

RichEdit::CharacterFormat RichEdit::getFormat() const
{
    CHARFORMAT2W data{};
    data.cbSize = sizeof data;
    sendMessageA(EM_GETCHARFORMAT, SCF_SELECTION, toLParam(&data));
    CharacterFormat found;
    for (const Effect& effect : effects)
        if (data.dwMask & effect.bit)
            found.*effect.member = (data.dwEffects & effect.bit) != 0;
    if (data.dwMask & CFM_SIZE)
        found.size = data.yHeight / twipsOfPoint;
    if ((data.dwMask & CFM_COLOR) && !(data.dwEffects & CFE_AUTOCOLOR))
        found.colour = data.crTextColor;
    if (data.dwMask & CFM_FACE)
        found.font = BasicString<wchar_t>(data.szFaceName);
    return found;
}
} // namespace tarn
