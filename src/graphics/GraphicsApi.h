#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline HICON loadIcon(HINSTANCE module, const char* name) { return LoadIconA(module, name); }
inline HICON loadIcon(HINSTANCE module, const wchar_t* name) { return LoadIconW(module, name); }

inline HCURSOR loadCursor(HINSTANCE module, const char* name) { return LoadCursorA(module, name); }
inline HCURSOR loadCursor(HINSTANCE module, const wchar_t* name) { return LoadCursorW(module, name); }

inline BOOL textOut(HDC context, int x, int y, const char* text, int length)
{
    return TextOutA(context, x, y, text, length);
}
inline BOOL textOut(HDC context, int x, int y, const wchar_t* text, int length)
{
    return TextOutW(context, x, y, text, length);
}

inline BOOL getTextExtentPoint(HDC context, const char* text, int length, SIZE* size)
{
    return GetTextExtentPointA(context, text, length, size);
}
inline BOOL getTextExtentPoint(HDC context, const wchar_t* text, int length, SIZE* size)
{
    return GetTextExtentPointW(context, text, length, size);
}
} // namespace tarn
