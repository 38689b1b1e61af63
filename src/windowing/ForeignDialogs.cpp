#include "ForeignDialogs.h"

#include <tarn/Window.h>

#include <string_view>

namespace tarn {
namespace {
BOOL CALLBACK cancel(HWND hwnd, LPARAM owner)
{
    wchar_t className[8];
    const bool isDialog = GetClassNameW(hwnd, className, 8) && std::wstring_view(className) == L"#32770";
    if (isDialog && GetWindow(hwnd, GW_OWNER) == reinterpret_cast<HWND>(owner) &&
        !Window::getWindowFromHandle(hwnd, false))
        PostMessageW(hwnd, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
}
} // namespace

void cancelForeignDialogs(HWND owner) noexcept
{
    EnumThreadWindows(GetCurrentThreadId(), cancel, reinterpret_cast<LPARAM>(owner));
}
} // namespace tarn
