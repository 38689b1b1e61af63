#include "Driving.h"

#include <string_view>

namespace support {
namespace {
constexpr DWORD timeoutMs = 5000;
Driver* current = nullptr;

bool isDialog(HWND hwnd)
{
    wchar_t name[8];
    return GetClassNameW(hwnd, name, 8) && std::wstring_view(name) == L"#32770";
}

BOOL CALLBACK find(HWND hwnd, LPARAM found)
{
    if (!isDialog(hwnd) || !IsWindowVisible(hwnd))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = hwnd;
    return FALSE;
}

BOOL CALLBACK end(HWND hwnd, LPARAM)
{
    if (isDialog(hwnd)) {
        PostMessageW(hwnd, WM_COMMAND, IDCANCEL, 0);
        EndDialog(hwnd, -1);
    }
    return TRUE;
}
} // namespace

Driver::Driver(std::function<bool()> step) : step_(std::move(step)), timer_(SetTimer(nullptr, 0, 20, onTimer))
{
    current = this;
}
Driver::~Driver()
{
    KillTimer(nullptr, timer_);
    current = nullptr;
}

void CALLBACK Driver::onTimer(HWND, UINT, UINT_PTR, DWORD)
{
    Driver* const driver = current;
    if (!driver || driver->done_)
        return;
    if (GetTickCount() - driver->start_ > timeoutMs) {
        driver->late_ = true;
        EnumThreadWindows(GetCurrentThreadId(), end, 0);
    } else if (driver->step_()) {
        driver->done_ = true;
    }
}

HWND visibleDialog()
{
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), find, reinterpret_cast<LPARAM>(&found));
    return found;
}

bool isWine() { return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr; }
} // namespace support
