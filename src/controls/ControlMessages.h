#pragma once

#include <tarn/Window.h>

// How the controls' classes send their messages.

namespace tarn {
inline LPARAM toLParam(const void* address) { return reinterpret_cast<LPARAM>(address); }
inline void* toPointer(LRESULT value) { return reinterpret_cast<void*>(value); }

/// Has the system make the window classes of these kinds of controls (`ICC_...`). Throws "Can't create window".
void loadControls(DWORD kinds);

/// Makes a child window of one of the system's classes for an object, which owns it, in the font of the parent (or,
/// where it has none, in Font::ofSystem for its screen).
void createControl(Window& control, const wchar_t* className, HWND parent, unsigned short id, const RECT& rect,
                   unsigned long style, const wchar_t* text = L"");

/// Whether a control answered `failed`. A window that is gone answers every message with zero.
inline bool isFailure(const Window& control, LRESULT result, LRESULT failed)
{
    return result == failed || (result == 0 && !IsWindow(control));
}

/// Sends a message that fails with the result `failed` and then throws. The last error is cleared before,
/// because controls need not set it.
LRESULT ensureSent(const Window& control, LRESULT failed, const char* what, UINT msg, WPARAM wParam = 0,
                   LPARAM lParam = 0);

/// Sends a message with a text of this width to a control that converts texts (the combo, list and edit
/// boxes). The newer controls have a message for each width instead.
LRESULT sendText(const Window& control, UINT msg, WPARAM wParam, const char* text);
LRESULT sendText(const Window& control, UINT msg, WPARAM wParam, const wchar_t* text);
} // namespace tarn
