#include "HandlerScope.h"

#include <tarn/Windows.h>

namespace tarn {
namespace {
thread_local HandlerScope* innermost = nullptr;
}

HandlerScope::HandlerScope() noexcept : slot_(&innermost), outer_(*slot_) { *slot_ = this; }

void HandlerScope::keepCurrentException() noexcept
{
    HandlerScope* const scope = innermost;
    if (!scope)
        std::terminate();
    if (scope->kept_)
        return;
    scope->kept_ = std::current_exception();
    scope->endLoop();
}

void endSystemLoops() noexcept
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!GetGUIThreadInfo(GetCurrentThreadId(), &info))
        return;
    if (info.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE))
        EndMenu();
    if (info.flags & GUI_INMOVESIZE)
        SendMessageW(info.hwndMoveSize, WM_CANCELMODE, 0, 0);
}
} // namespace tarn
