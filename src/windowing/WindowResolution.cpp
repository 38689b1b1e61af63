#include <tarn/Window.h>

#include "../foundation/FunctionOf.h"
#include "ControlPlace.h"
#include "HandlerScope.h"

// Windows that follow the dots of their screen.

namespace tarn {
namespace {
bool isComboBox(HWND control)
{
    wchar_t name[16];
    return GetClassNameW(control, name, 16) && CompareStringOrdinal(name, -1, L"ComboBox", -1, TRUE) == CSTR_EQUAL;
}
} // namespace

Rect placeIn(HWND parent, HWND control)
{
    RECT rect{};
    GetWindowRect(control, &rect);
    if (isComboBox(control)) {
        RECT dropped{};
        const LRESULT isWhole = SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped));
        // Wine's result says that it failed, and its rectangle lacks the height of the field.
        if (!IsRectEmpty(&dropped))
            rect.bottom = (isWhole ? rect.top : rect.bottom) + (dropped.bottom - dropped.top);
    }
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

DPI Window::getDPI() const
{
    // Newer than the oldest Windows that the library runs on.
    static const auto getDpiForWindow =
        functionOf<UINT WINAPI(HWND)>(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
    const UINT dots = getDpiForWindow ? getDpiForWindow(hwnd_) : 0;
    return dots ? DPI(dots) : DPI::ofSystem();
}

void Window::rescaleControls(const DPI& from, const DPI& to, HFONT former, HFONT next) const
{
    const auto scale = [&](LONG length) {
        return MulDiv(length, static_cast<int>(to.getDots()), static_cast<int>(from.getDots()));
    };
    runningHandlers([&] {
        for (HWND child = GetWindow(hwnd_, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            const Rect old = placeIn(hwnd_, child);
            if (former && reinterpret_cast<HFONT>(SendMessageW(child, WM_GETFONT, 0, 0)) == former)
                SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(next), FALSE);
            SetWindowPos(child, nullptr, scale(old.left), scale(old.top), scale(old.right) - scale(old.left),
                         scale(old.bottom) - scale(old.top), SWP_NOZORDER | SWP_NOACTIVATE);
        }
    });
    invalidate(true);
}
} // namespace tarn
