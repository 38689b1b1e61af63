#include "ControlMessages.h"

#include <tarn/Font.h>
#include <tarn/Lock.h>

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"

#include <map>
#include <string_view>
#include <utility>

namespace tarn {
namespace {
// One for each resolution, which no control outlives. Links have their own, since a link that ends under Wine deletes
// it.
HFONT systemFont(const DPI& dpi, bool isLink)
{
    static CriticalSection lock;
    static auto& fonts = *new std::map<std::pair<unsigned, bool>, Font>;
    const AutoLock locked(lock);
    Font& font = fonts[{dpi.getDots(), isLink}];
    if (GetObjectType(font) != OBJ_FONT) {
        font.detach();
        font = Font::ofSystem(dpi);
    }
    return font;
}
} // namespace

void loadControls(DWORD kinds)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, kinds};
    ensureGDI([&] { return InitCommonControlsEx(&classes); }, "Can't create window");
}

void createControl(Window& control, const wchar_t* className, HWND parent, unsigned short id, const RECT& rect,
                   unsigned long style, const wchar_t* text)
{
    const Window owner(parent);
    const HFONT given = owner.getFont(),
                font = given ? given : systemFont(owner.getDPI(), className == std::wstring_view(WC_LINK));
    loadControls(ICC_WIN95_CLASSES | ICC_DATE_CLASSES);
    control.create(className, text, WS_CHILD | style, rect, parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)),
                   nullptr);
    control.setFont(font, false);
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
