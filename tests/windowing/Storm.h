#pragma once

#include <tarn/Window.h>

#include <random>
#include <set>

namespace support {
/// Whether the default procedure takes a parameter for a pointer, ends the window or starts a modal loop.
inline bool isUnfit(UINT msg)
{
    // Edit controls, combo and list boxes: the system converts their texts whatever the window is. And DDE.
    const bool isOfControl = (0xB0 <= msg && msg <= 0xDF) || (0x140 <= msg && msg <= 0x1BF);
    if (isOfControl || (0x3E0 <= msg && msg <= 0x3EF))
        return true;
    static const std::set<UINT> unfit = {
        WM_CREATE, WM_NCCREATE, WM_SETTEXT, WM_GETTEXT, WM_GETMINMAXINFO, WM_DRAWITEM, WM_MEASUREITEM, WM_DELETEITEM,
        WM_COMPAREITEM, WM_WINDOWPOSCHANGING, WM_WINDOWPOSCHANGED, WM_COPYDATA, WM_NOTIFY, WM_HELP, WM_STYLECHANGING,
        WM_STYLECHANGED, WM_NCCALCSIZE, WM_SIZING, WM_MOVING, WM_MDICREATE, WM_DROPFILES, WM_NEXTMENU, WM_GETDLGCODE,
        WM_ASKCBFORMATNAME, WM_INPUT, WM_DEVICECHANGE, WM_WININICHANGE, WM_DEVMODECHANGE, WM_GETTITLEBARINFOEX,
        WM_GESTURE, WM_MENUGETOBJECT, WM_DPICHANGED,
        // These end the window or start a modal loop.
        WM_DESTROY, WM_NCDESTROY, WM_CLOSE, WM_SYSCOMMAND, WM_QUERYENDSESSION, WM_ENDSESSION, WM_NCLBUTTONDOWN,
        WM_NCRBUTTONDOWN, WM_NCRBUTTONUP, WM_NCLBUTTONDBLCLK, WM_CONTEXTMENU, 0x313 /* the system menu */, WM_RBUTTONUP,
        WM_SYSKEYDOWN, WM_SYSKEYUP, WM_SYSCHAR, WM_QUIT, WM_ENTERMENULOOP};
    return unfit.contains(msg);
}

/// Sends a window random messages, the same in every program.
inline void sendStorm(const tarn::Window& window, int count)
{
    static std::mt19937 random(20030416);
    int sent = 0;
    while (sent < count) {
        // Mostly messages with names, now and then any number.
        const UINT msg = random() % 4 ? random() % 0x400 : random() % 0x10000;
        const WPARAM wParam = random();
        // What is taken for the handle of a control is no window, or null.
        const LPARAM lParam = static_cast<LPARAM>(random());
        if (isUnfit(msg))
            continue;
        ++sent;
        if (msg == WM_MOUSEMOVE || msg == WM_MOVE || msg == WM_TIMER || msg == WM_COMMAND || msg >= WM_USER)
            SendMessageW(window, msg, wParam, lParam);
        else
            window.sendMessageA(msg, wParam, lParam);
    }
}
} // namespace support
