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

inline int drawTextIn(HDC context, const char* text, RECT* rectangle, unsigned format)
{
    return DrawTextA(context, text, -1, rectangle, format);
}
inline int drawTextIn(HDC context, const wchar_t* text, RECT* rectangle, unsigned format)
{
    return DrawTextW(context, text, -1, rectangle, format);
}

inline HANDLE loadImage(HINSTANCE module, const char* name, UINT type, int size, UINT flags)
{
    return LoadImageA(module, name, type, size, size, flags);
}
inline HANDLE loadImage(HINSTANCE module, const wchar_t* name, UINT type, int size, UINT flags)
{
    return LoadImageW(module, name, type, size, size, flags);
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
