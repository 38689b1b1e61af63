#include <tarn/Debug.h>

#include <tarn/Windows.h>

namespace tarn {
namespace {
bool atLineStart = true;

DebugBuf<char> debugBuf;

int formatPrefix(char* buffer) { return wsprintfA(buffer, "[%u] ", static_cast<unsigned>(GetCurrentThreadId())); }
int formatPrefix(wchar_t* buffer) { return wsprintfW(buffer, L"[%u] ", static_cast<unsigned>(GetCurrentThreadId())); }

void outputDebugString(const char* text) { OutputDebugStringA(text); }
void outputDebugString(const wchar_t* text) { OutputDebugStringW(text); }

template <class Ch> void traceText(const Ch* text)
{
    const Ch empty[] = {Ch()};
    if (!text)
        text = empty;
    if (atLineStart) {
        Ch prefix[16];
        formatPrefix(prefix);
        outputDebugString(prefix);
    }
    outputDebugString(text);
    // An empty text has no last character and clears the flag like any other text without a line feed.
    const std::size_t length = std::char_traits<Ch>::length(text);
    atLineStart = length != 0 && text[length - 1] == Ch('\n');
}
} // namespace

void trace(const char* text) { traceText(text); }
void trace(const wchar_t* text) { traceText(text); }

std::ostream dbg(&debugBuf);

namespace {
DebugBuf<wchar_t> wideDebugBuf;
}

std::wostream wdbg(&wideDebugBuf);
} // namespace tarn
