#include "ControlMessages.h"

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"

namespace tarn {
void loadControls(DWORD kinds)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, kinds};
    ensureGDI([&] { return InitCommonControlsEx(&classes); }, "Can't create window");
}

void createControl(Window& control, const wchar_t* className, HWND parent, unsigned short id, const RECT& rect,
                   unsigned long style, const wchar_t* text)
{
    loadControls(ICC_WIN95_CLASSES | ICC_DATE_CLASSES);
    control.create(className, text, WS_CHILD | style, rect, parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)),
                   nullptr);
    const HFONT font = Window(parent).getFont();
    control.setFont(font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)), false);
}

LRESULT ensureSent(const Window& control, LRESULT failed, const char* what, UINT msg, WPARAM wParam, LPARAM lParam)
{
    return ensureClearing([&] { return control.sendMessageA(msg, wParam, lParam); },
                          [&](LRESULT result) { return isFailure(control, result, failed); }, what);
}

LRESULT sendText(const Window& control, UINT msg, WPARAM wParam, const char* text)
{
    return control.sendMessageA(msg, wParam, toLParam(text));
}

LRESULT sendText(const Window& control, UINT msg, WPARAM wParam, const wchar_t* text)
{
    return runningSystemLoops([&] { return SendMessageW(control, msg, wParam, toLParam(text)); });
}
} // namespace tarn
