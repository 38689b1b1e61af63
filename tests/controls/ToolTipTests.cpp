#include "Controls.h"

#include <tarn/ToolTip.h>

namespace {
std::wstring textOf(const ToolTip& tip, HWND window, UINT_PTR id)
{
    wchar_t text[80] = L"none"; // As many characters as every version of the control writes.
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = window;
    tool.uId = id;
    tool.lpszText = text;
    SendMessageW(tip, TTM_GETTEXTW, 80, reinterpret_cast<LPARAM>(&tool));
    return text;
}
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
    CHECK((tip.getCount() == 2 && textOf(tip, host, id) == L"narrow" && textOf(tip, host, 1) == L"w\u00EFde"));
    tip.setTipText(button, L"\u00F6ther");
    CHECK(textOf(tip, host, id) == L"\u00F6ther");
    tip.setTipText(button, "other");
    CHECK(textOf(tip, host, id) == L"other");
    tip.remove(button);
    CHECK(tip.getCount() == 1);
    tip.remove(host, 1);
    tip.add(host, 2, Rect(50, 0, 60, 10), "part");
    CHECK(textOf(tip, host, 2) == L"part");
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
