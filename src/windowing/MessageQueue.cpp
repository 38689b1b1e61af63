#include "MessageQueue.h"

#include "HandlerScope.h"

namespace tarn {
namespace {
thread_local std::exception_ptr thrownLate;
}

// Looked for first and only then taken, because what is taken when a handler has thrown could neither be handed
// out together with the exception nor be put back in its place.
bool takeMessage(MSG& msg, HWND hwnd, UINT min, UINT max)
{
    if (thrownLate)
        std::rethrow_exception(std::exchange(thrownLate, nullptr));
    if (!runningHandlers([&] { return PeekMessageW(&msg, hwnd, min, max, PM_NOREMOVE); }))
        return false;
    HandlerScope scope; // Taking a message of the mouse runs handlers, too, and others may have been sent just now.
    const bool isTaken = PeekMessageW(&msg, hwnd, min, max, PM_REMOVE) != FALSE;
    if (!scope.hasKept())
        return isTaken;
    if (isTaken && msg.message == WM_QUIT)
        PostQuitMessage(static_cast<int>(msg.wParam));
    else if (isTaken) {
        thrownLate = scope.takeKept();
        return true;
    }
    scope.rethrow();
    return false;
}
} // namespace tarn
