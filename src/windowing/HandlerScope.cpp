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

void HandlerScope::keepEndingLoop() noexcept
{
    constexpr UINT intervalMs = 10;
    if (!timer_)
        timer_ = SetTimer(nullptr, 0, intervalMs, onTimer);
}

void HandlerScope::stopEndingLoop() noexcept { KillTimer(nullptr, timer_); }

void CALLBACK HandlerScope::onTimer(HWND, UINT, UINT_PTR, DWORD)
{
    for (HandlerScope* scope = innermost; scope; scope = scope->outer_) {
        if (scope->timer_)
            scope->endLoop();
    }
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
        PostMessageW(info.hwndMoveSize, WM_KEYDOWN, VK_ESCAPE, 0);
}
} // namespace tarn
