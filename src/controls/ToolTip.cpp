#include <tarn/ToolTip.h>

#include "ControlMessages.h"
#include "ItemApi.h"

namespace tarn {
namespace {
// Without the fields of later versions, which the older control refuses.
template <class Ch> typename ItemApi<Ch>::Tool toolOf(HWND window, UINT_PTR id, UINT flags, const Ch* text = nullptr)
{
    typename ItemApi<Ch>::Tool tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = flags;
    tool.hwnd = window;
    tool.uId = id;
    tool.lpszText = textOf(text);
    return tool;
}

// A control is known by its handle, below its parent.
template <class Ch> typename ItemApi<Ch>::Tool toolOf(HWND target, const Ch* text = nullptr)
{
    return toolOf(GetParent(target), reinterpret_cast<UINT_PTR>(target), TTF_IDISHWND | TTF_SUBCLASS, text);
}

template <class Ch> void addTool(const ToolTip& tip, const typename ItemApi<Ch>::Tool& tool)
{
    ensureSent(tip, FALSE, "Can't add tool tip", ItemApi<Ch>::addTool, 0, toLParam(&tool));
}

template <class Ch> void addPart(const ToolTip& tip, HWND window, UINT_PTR id, const RECT& part, const Ch* text)
{
    auto tool = toolOf(window, id, TTF_SUBCLASS, text);
    tool.rect = part;
    addTool<Ch>(tip, tool);
}

template <class Ch> void setTextOfTool(const ToolTip& tip, HWND target, const Ch* text)
{
    const auto tool = toolOf(target, text);
    tip.sendMessageA(ItemApi<Ch>::setToolText, 0, toLParam(&tool));
}
} // namespace

void ToolTip::create(HWND owner, unsigned long style)
{
    loadControls(ICC_WIN95_CLASSES);
    constexpr RECT anywhere{CW_USEDEFAULT, CW_USEDEFAULT, 0, 0};
    create(TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_NOPREFIX | style, anywhere, owner, nullptr, nullptr);
}

void ToolTip::add(HWND target, const char* text) const { addTool<char>(*this, toolOf(target, text)); }
void ToolTip::add(HWND target, const wchar_t* text) const { addTool<wchar_t>(*this, toolOf(target, text)); }
void ToolTip::add(HWND window, UINT_PTR id, const RECT& part, const char* text) const
{
    addPart(*this, window, id, part, text);
}
void ToolTip::add(HWND window, UINT_PTR id, const RECT& part, const wchar_t* text) const
{
    addPart(*this, window, id, part, text);
}
void ToolTip::setTipText(HWND target, const char* text) const { setTextOfTool(*this, target, text); }
void ToolTip::setTipText(HWND target, const wchar_t* text) const { setTextOfTool(*this, target, text); }
void ToolTip::remove(HWND target) const
{
    const auto tool = toolOf<wchar_t>(target);
    sendMessageA(TTM_DELTOOLW, 0, toLParam(&tool));
}
void ToolTip::remove(HWND window, UINT_PTR id) const
{
    const auto tool = toolOf<wchar_t>(window, id, 0);
    sendMessageA(TTM_DELTOOLW, 0, toLParam(&tool));
}
int ToolTip::getCount() const { return static_cast<int>(sendMessageA(TTM_GETTOOLCOUNT)); }

void ToolTip::setMaxWidth(int width) const { sendMessageA(TTM_SETMAXTIPWIDTH, 0, width); }
void ToolTip::setTimes(int shownMs, int initialMs) const
{
    sendMessageA(TTM_SETDELAYTIME, TTDT_AUTOPOP, MAKELPARAM(shownMs, 0));
    sendMessageA(TTM_SETDELAYTIME, TTDT_INITIAL, MAKELPARAM(initialMs, 0));
}
void ToolTip::activate(bool active) const { sendMessageA(TTM_ACTIVATE, active); }
} // namespace tarn
