#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <utility>
#include <vector>

namespace tarn {
/// Handles the calling thread's messages until `PostQuitMessage`, and returns the exit code given there.
/// What a handler throws comes out of it; it may be called again to go on.
inline int runMessageLoop()
{
    MSG msg{};
    while (Window::getThreadMessage(msg)) {
        TranslateMessage(&msg);
        Window::dispatchMessage(msg);
    }
    return static_cast<int>(msg.wParam);
}

/// What the system's `IsDialogMessage` does: Tab, the arrow keys, Enter, Escape and the letters of labels
/// work in the dialog, or in any other window with controls, and its messages are dispatched. False for a
/// message of another window, or when `dialog` is null. What a handler throws comes out of it, while it
/// would end the program if no library call were waiting for the system's own function. A loop of one's own with
/// modeless dialogs or accelerators is:
///
///     while (tarn::Window::getThreadMessage(msg)) {
///         if (tarn::handleAccelerator(window, accelerators, msg) || tarn::handleDialogMessage(dialog, msg))
///             continue; // Handled: neither translated nor dispatched any more.
///         TranslateMessage(&msg);
///         tarn::Window::dispatchMessage(msg);
///     }
///
/// MessageLoop does that, for all modeless dialogs.
TARN_API bool handleDialogMessage(HWND dialog, MSG& msg);

/// What the system's `TranslateAccelerator` does: a key of the table becomes a `WM_COMMAND` or
/// `WM_SYSCOMMAND` of the window. False for any other message. What a handler throws comes out of it.
TARN_API bool handleAccelerator(HWND window, HACCEL accelerators, MSG& msg);

/// The loop of a program with modeless dialogs, accelerators or work for idle times; derive from it for the latter.
///
///     tarn::MessageLoop loop;
///     loop.addAccelerators(window, accelerators);
///     loop.run();
///
/// The keys of dialogs work in every modeless dialog of the thread. A loop belongs to its thread.
class TARN_API MessageLoop : private boost::noncopyable {
public:
    MessageLoop() = default;
    virtual ~MessageLoop() = default;

    /// Keys pressed in the window or its children become its commands; those pressed in a dialog beside it do not. The
    /// table (AcceleratorTable) has to live as long as the loop runs.
    void addAccelerators(HWND window, HACCEL table) { accelerators_.emplace_back(window, table); }
    /// The keys of dialogs work in this window, too, as they do in dialogs: for windows with controls.
    void addDialog(HWND window) { dialogs_.push_back(window); }

    /// Handles the calling thread's messages until `PostQuitMessage`, and returns the exit code given there. What a
    /// handler throws comes out of it; it may be called again to go on.
    int run();

protected:
    /// Gets each message first. True when that is all that is to be done with it; by default the accelerators and the
    /// keys of dialogs are tried.
    virtual bool onMessage(MSG& msg);
    /// Called when no message waits. True to be called again while none does; false, by default, to wait for one.
    virtual bool onIdle();

private:
    std::vector<std::pair<HWND, HACCEL>> accelerators_;
    std::vector<HWND> dialogs_;
};
} // namespace tarn
