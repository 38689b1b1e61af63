#include "Controls.h"

#include <tarn/ToolTip.h>

namespace {
struct Tool : TTTOOLINFOW {
    Tool(const ToolTip& tip, HWND window, UINT_PTR id) : TTTOOLINFOW()
    {
        cbSize = TTTOOLINFOW_V2_SIZE;
        hwnd = window;
        uId = id;
        lpszText = text;
        SendMessageW(tip, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(this));
    }
    wchar_t text[80] = L"none"; // As many characters as every version of the control writes.
};
} // namespace

TEST_CASE("ToolTip: controls and parts of a window have texts until they are removed")
{
    Host host;
    const HWND button = makeButton(host, 7);
    const auto id = reinterpret_cast<UINT_PTR>(button);
    ToolTip tip;
    tip.create(host);
    tip.add(button, "narrow");
    tip.add(host, 1, Rect(50, 0, 60, 10), L"w\u00EFde");
    const Tool whole(tip, host, id), part(tip, host, 1);
    CHECK((whole.text == std::wstring(L"narrow") && (whole.uFlags & (TTF_IDISHWND | TTF_SUBCLASS)) == 0x11));
    CHECK((part.text == std::wstring(L"w\u00EFde") && Rect(part.rect) == Rect(50, 0, 60, 10)));
    CHECK((tip.getCount() == 2 && (part.uFlags & TTF_SUBCLASS) && !(part.uFlags & TTF_IDISHWND)));
    for (const bool isNarrow : {false, true}) {
        isNarrow ? tip.setTipText(button, "short") : tip.setTipText(button, L"\u00F6ther");
        CHECK(Tool(tip, host, id).text == std::wstring(isNarrow ? L"short" : L"\u00F6ther"));
    }
    tip.remove(button);
    CHECK(tip.getCount() == 1);
    tip.remove(host, 1);
    tip.add(host, 2, Rect(50, 0, 60, 10), "part");
    CHECK(Tool(tip, host, 2).text == std::wstring(L"part"));
    tip.remove(host, 2);
    CHECK(tip.getCount() == 0);
    expectWindowsError([&] { ToolTip().add(button, L"x"); }, "Can't add tool tip");
}

TEST_CASE("ToolTip: it appears when the mouse rests, as wide and as long as it was told")
{
    Host host;
    ToolTip tip;
    tip.create(host, TTS_ALWAYSTIP | TTS_BALLOON);
    tip.setMaxWidth(120);
    tip.setTimes(20'000, 10);
    CHECK(tip.sendMessageA(TTM_GETMAXTIPWIDTH) == 120);
    CHECK((tip.sendMessageA(TTM_GETDELAYTIME, TTDT_AUTOPOP) == 20'000 &&
           tip.sendMessageA(TTM_GETDELAYTIME, TTDT_INITIAL) == 10));
}
