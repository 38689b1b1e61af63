#include "ForeignDialogs.h"

#include <tarn/Window.h>

#include <string_view>

namespace tarn {
namespace {
bool isOwnedBy(HWND hwnd, HWND owner)
{
    do
        hwnd = GetWindow(hwnd, GW_OWNER);
    while (hwnd && hwnd != owner);
    return hwnd == owner;
}

BOOL CALLBACK cancel(HWND hwnd, LPARAM owner)
{
    wchar_t className[8];
    const bool isDialog = GetClassNameW(hwnd, className, 8) && std::wstring_view(className) == L"#32770";
    if (isDialog && isOwnedBy(hwnd, reinterpret_cast<HWND>(owner)) && !Window::getWindowFromHandle(hwnd, false))
        PostMessageW(hwnd, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
}
} // namespace

void cancelForeignDialogs(HWND owner) noexcept
{
    const HWND top = owner ? GetAncestor(owner, GA_ROOT) : nullptr; // Only such a window owns another.
    EnumThreadWindows(GetCurrentThreadId(), cancel, reinterpret_cast<LPARAM>(top));
}
} // namespace tarn
