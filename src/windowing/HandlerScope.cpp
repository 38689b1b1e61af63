#include "HandlerScope.h"

#include <tarn/ErrorTrace.h>
#include <tarn/Exception.h>
#include <tarn/Window.h>

#include "../streams/ClassName.h"
#include "SystemModules.h"

#include <cxxabi.h>

#include <cstdio>
#include <string>

namespace tarn {
namespace {
thread_local HandlerScope* innermost = nullptr;

std::string thrown()
{
    std::string text = ClassName::qualifiedName(*abi::__cxa_current_exception_type());
    try {
        throw;
    } catch (const std::exception& e) {
        const auto* const fault = dynamic_cast<const SEHError*>(&e);
        if (const ErrorTrace* const trace = ErrorTrace::of(e))
            text = ClassName::qualifiedName(trace->getErrorType());
        return text + " (\"" + (fault ? fault->getReport() : e.what()) + "\")";
    } catch (...) {
        return text;
    }
}

std::string placeOf(const CallbackOrigin& origin)
{
    if (origin.name)
        return origin.name;
    std::string text = "the handler of " + getWMIdentifier(origin.msg);
    if (const Window* const window = Window::getWindowFromHandle(origin.window, false))
        text += " in " + ClassName::qualifiedName(typeid(*window));
    return text;
}

[[noreturn]] void endProgram(const CallbackOrigin& origin)
{
    const std::string text = "Tarn++: " + thrown() + " left " + placeOf(origin) +
                             ", which the system called with no call of the library around it, and ends the program. "
                             "Catch it there, or use dispatchMessage(), runMessageLoop(), sendMessageA() and the like, "
                             "which throw what handlers throw, instead of the system's functions.\n";
    OutputDebugStringA(text.c_str());
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
    std::terminate();
}
} // namespace

HandlerScope::HandlerScope() noexcept : slot_(&innermost), outer_(*slot_) { *slot_ = this; }

void HandlerScope::keepCurrentException(const CallbackOrigin& origin, const void* caller)
{
    HandlerScope* const scope = innermost;
    if (!scope && isCodeOfSystem(caller))
        endProgram(origin);
    if (!scope)
        throw;
    if (!scope->kept_)
        scope->kept_ = std::current_exception();
    scope->onKept();
}

// The timer has the loop take a message; where painting goes on for ever no timer's turn comes, and where there is no
// timer an empty message does it.
void HandlerScope::keepEndingLoop() noexcept
{
    constexpr UINT intervalMs = 10;
    if (!hook_)
        hook_ = SetWindowsHookExW(WH_GETMESSAGE, onMessageTaken, nullptr, GetCurrentThreadId());
    if (!timer_)
        timer_ = SetTimer(nullptr, 0, intervalMs, onTimer);
    if (!timer_)
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void HandlerScope::stopEndingLoop() noexcept
{
    if (timer_)
        KillTimer(nullptr, timer_);
    if (hook_)
        UnhookWindowsHookEx(hook_);
}

void HandlerScope::endLoops() noexcept
{
    for (HandlerScope* scope = innermost; scope; scope = scope->outer_) {
        if (scope->timer_ || scope->hook_)
            scope->endLoop();
    }
}

void CALLBACK HandlerScope::onTimer(HWND, UINT, UINT_PTR, DWORD) { endLoops(); }

LRESULT CALLBACK HandlerScope::onMessageTaken(int code, WPARAM wParam, LPARAM lParam)
{
    const UINT msg = code == HC_ACTION ? reinterpret_cast<const MSG*>(lParam)->message : WM_APP;
    if (msg == WM_PAINT || msg == WM_NULL)
        endLoops();
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void SystemLoopScope::endLoop() noexcept
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
