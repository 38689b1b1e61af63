#pragma once

#include <tarn/Windows.h>

#include <vector>

namespace tarn {
/// Ends a modal dialog, as its own handler would by EndDialog. One that cannot be ended is destroyed, or it would keep
/// who shows it for ever. Null does nothing.
void cancelDialog(HWND dialog) noexcept;

/// The system's own dialogs (message boxes, the dialogs for files) that the calling thread shows since this
/// object was made: what has to end before a call that shows one of them can return.
class SystemDialogs {
public:
    SystemDialogs();

    void cancel() const noexcept;

private:
    static BOOL CALLBACK note(HWND hwnd, LPARAM self);
    static BOOL CALLBACK cancelNew(HWND hwnd, LPARAM self);

    std::vector<HWND> former_;
};
} // namespace tarn
