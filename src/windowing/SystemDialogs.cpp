#include "SystemDialogs.h"

#include <tarn/Window.h>

#include "SystemModules.h"

#include <algorithm>
#include <string_view>

namespace tarn {
namespace {
// A dialog's procedure tells whose it is. Null for other windows, and for dialogs with objects of this library.
const void* classProcedureOf(HWND hwnd)
{
    wchar_t className[8];
    const bool isDialog = GetClassNameW(hwnd, className, 8) && std::wstring_view(className) == L"#32770";
    if (!isDialog || Window::getWindowFromHandle(hwnd, false))
        return nullptr;
    return reinterpret_cast<const void*>(GetWindowLongPtrW(hwnd, DWLP_DLGPROC));
}

bool isSystemDialog(const void* procedure) { return procedure && moduleOf(procedure) && isCodeOfSystem(procedure); }

bool isMessageBox(const void* procedure) { return moduleOf(procedure) == GetModuleHandleW(L"user32.dll"); }
} // namespace

void cancelDialog(HWND dialog) noexcept
{
    if (!dialog || EndDialog(dialog, IDCANCEL))
        return;
    if (const HWND owner = GetWindow(dialog, GW_OWNER)) // Which only a dialog that is ended does itself.
        EnableWindow(owner, TRUE);
    DestroyWindow(dialog);
}

SystemDialogs::SystemDialogs() { EnumThreadWindows(GetCurrentThreadId(), note, reinterpret_cast<LPARAM>(this)); }

void SystemDialogs::cancel() const noexcept
{
    EnumThreadWindows(GetCurrentThreadId(), cancelNew, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK SystemDialogs::note(HWND hwnd, LPARAM self)
{
    if (isSystemDialog(classProcedureOf(hwnd)))
        reinterpret_cast<SystemDialogs*>(self)->former_.push_back(hwnd);
    return TRUE;
}

BOOL CALLBACK SystemDialogs::cancelNew(HWND hwnd, LPARAM self)
{
    const void* const procedure = classProcedureOf(hwnd);
    if (!isSystemDialog(procedure) ||
        std::ranges::count(reinterpret_cast<const SystemDialogs*>(self)->former_, hwnd) != 0)
        return TRUE;
    if (isMessageBox(procedure))
        cancelDialog(hwnd); // One without a button to cancel it heeds no command.
    else
        PostMessageW(hwnd, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
}
} // namespace tarn
