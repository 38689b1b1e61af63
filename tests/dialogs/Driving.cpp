#include "Test.h"

#include "Driving.h"

namespace support {
namespace {
constexpr DWORD timeoutMs = 20'000;
constexpr DWORD dialogClass = 32770;
Driver* current = nullptr;

BOOL CALLBACK find(HWND hwnd, LPARAM found)
{
    if (GetClassLongW(hwnd, GCW_ATOM) != dialogClass || !IsWindowVisible(hwnd))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = hwnd;
    return FALSE;
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
    CHECK_FALSE(late_);
}

void CALLBACK Driver::onTimer(HWND, UINT, UINT_PTR, DWORD)
{
    Driver* const driver = current;
    if (!driver)
        return;
    driver->late_ = GetTickCount() - driver->start_ > timeoutMs; // Even if a dialog stays after the step.
    if (const HWND dialog = driver->late_ ? visibleDialog() : nullptr) {
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); // What a property sheet needs.
        EndDialog(dialog, -1);
    } else if (!driver->done_ && !driver->late_) {
        driver->done_ = driver->step_();
    }
}

HWND visibleDialog()
{
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), find, reinterpret_cast<LPARAM>(&found));
    return found;
}

std::function<bool()> pressing(WPARAM button)
{
    return [button] {
        const HWND dialog = visibleDialog();
        return dialog && PostMessageW(dialog, WM_COMMAND, button, 0);
    };
}
} // namespace support
