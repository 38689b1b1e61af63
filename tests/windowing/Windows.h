#pragma once

#include "Test.h"

#include <tarn/Window.h>
#include <tarn/WindowClass.h>

namespace support {
/// The window class of the tests: no background, so that nothing is painted unasked.
inline const tarn::WindowClass& testClass()
{
    static const tarn::WindowClass windowClass(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr,
                                               GetModuleHandleW(nullptr));
    return windowClass;
}

/// Makes a hidden top-level window of the test class for an object.
template <class W> void open(W& window, unsigned long style = WS_OVERLAPPEDWINDOW, HWND parent = nullptr)
{
    window.create(testClass(), L"test", style, tarn::Rect(10, 20, 210, 120), parent, nullptr,
                  GetModuleHandleW(nullptr));
}

/// A window that is open from the start.
struct OpenWindow : tarn::Window {
    explicit OpenWindow(unsigned long style = WS_OVERLAPPEDWINDOW, HWND parent = nullptr)
    {
        open(*this, style, parent);
    }
};

/// A hidden window of the system's "BUTTON" class in a parent, without an object.
inline HWND makeButton(HWND parent, unsigned short id, unsigned long style = 0)
{
    return CreateWindowExW(0, L"BUTTON", L"push", WS_CHILD | style, 0, 0, 40, 20, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), nullptr, nullptr);
}
} // namespace support
