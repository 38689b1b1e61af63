#pragma once

#include <tarn/Windows.h>

// One name for each pair of entry points.

namespace tarn {
inline HWND createWindowEx(DWORD extendedStyle, const char* className, const char* title, DWORD style, int x, int y,
                           int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void* parameter)
{
    return CreateWindowExA(extendedStyle, className, title, style, x, y, width, height, parent, menu, instance,
                           parameter);
}
inline HWND createWindowEx(DWORD extendedStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x,
                           int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void* parameter)
{
    return CreateWindowExW(extendedStyle, className, title, style, x, y, width, height, parent, menu, instance,
                           parameter);
}

inline int getWindowText(HWND hwnd, char* text, int size) { return GetWindowTextA(hwnd, text, size); }
inline int getWindowText(HWND hwnd, wchar_t* text, int size) { return GetWindowTextW(hwnd, text, size); }

inline BOOL setWindowText(HWND hwnd, const char* text) { return SetWindowTextA(hwnd, text); }
inline BOOL setWindowText(HWND hwnd, const wchar_t* text) { return SetWindowTextW(hwnd, text); }

inline int getClassName(HWND hwnd, char* name, int size) { return GetClassNameA(hwnd, name, size); }
inline int getClassName(HWND hwnd, wchar_t* name, int size) { return GetClassNameW(hwnd, name, size); }

inline UINT getDlgItemText(HWND hwnd, int id, char* text, int size) { return GetDlgItemTextA(hwnd, id, text, size); }
inline UINT getDlgItemText(HWND hwnd, int id, wchar_t* text, int size) { return GetDlgItemTextW(hwnd, id, text, size); }

inline BOOL setDlgItemText(HWND hwnd, int id, const char* text) { return SetDlgItemTextA(hwnd, id, text); }
inline BOOL setDlgItemText(HWND hwnd, int id, const wchar_t* text) { return SetDlgItemTextW(hwnd, id, text); }

inline int messageBox(HWND owner, const char* text, const char* caption, UINT type)
{
    return MessageBoxA(owner, text, caption, type);
}
inline int messageBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT type)
{
    return MessageBoxW(owner, text, caption, type);
}
} // namespace tarn
