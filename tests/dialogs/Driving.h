#pragma once

#include <tarn/Windows.h>

#include <functional>

namespace support {
/// Works on a modal dialog from inside of its loop: calls `step` every few milliseconds until it returns
/// true. After twenty seconds the test has failed, and the thread's dialogs are cancelled, so that it ends.
class Driver {
public:
    explicit Driver(std::function<bool()> step);
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;
    ~Driver();

    bool isDone() const { return done_; }

private:
    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD);

    std::function<bool()> step_;
    UINT_PTR timer_;
    DWORD start_ = GetTickCount();
    bool done_ = false;
    bool late_ = false;
};

/// The visible dialog of the calling thread, null when there is none.
HWND visibleDialog();
/// A step that presses a button of the visible dialog.
std::function<bool()> pressing(WPARAM button);
} // namespace support
