#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// Cancels what the calling thread shows of the system's own dialogs (not: of this library's) for an owner, and
/// what those own in turn.
void cancelForeignDialogs(HWND owner) noexcept;
} // namespace tarn
