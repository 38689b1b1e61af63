#pragma once

#include <tarn/Windows.h>

#include <exception>
#include <type_traits>
#include <utility>

// An exception cannot pass through the system's own frames: thrown out of a window procedure it would end
// the program. So every callback from the system keeps the exception (guardedCallback) and returns to the
// system normally, and the library call that made the system run the callback throws it when it comes back
// (runningHandlers, runningLoop, runningSystemLoops).

namespace tarn {
/// What the system called, for the message that explains the end of a program.
struct CallbackOrigin {
    /// Null for a window's or dialog's procedure, which `window` and `msg` tell of.
    const char* name;
    HWND window;
    UINT msg;
};

/// One library call that can run handlers, while it lasts. Scopes nest as calls do, each thread has its
/// own, and an exception is kept in the innermost one.
class HandlerScope {
public:
    HandlerScope() noexcept;
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;
    /// Drops an exception that nobody rethrew.
    ~HandlerScope()
    {
        if (timer_ || hook_)
            stopEndingLoop();
        *slot_ = outer_;
    }

    /// To be called in a catch block: keeps the exception for the calling thread's innermost scope, which
    /// throws it, unless it keeps an earlier one already: the first failure is the one that explains the
    /// others. Without a scope the exception goes on to `caller` when that is code of the program; code of
    /// the system could not let it pass, so that the program ends with a message.
    static void keepCurrentException(const CallbackOrigin& origin, const void* caller);

    /// Leaves the last error of a call that kept nothing as it is.
    void rethrow()
    {
        if (kept_)
            std::rethrow_exception(takeKept());
    }
    bool hasKept() const noexcept { return kept_ != nullptr; }
    std::exception_ptr takeKept() noexcept { return std::exchange(kept_, nullptr); }

protected:
    /// Has endLoop() called again and again by whatever loop runs inside of the call, until the scope ends.
    void keepEndingLoop() noexcept;

private:
    /// An exception was kept: begins to end the modal loop of the call, so that it returns and can throw.
    virtual void onKept() noexcept {}
    virtual void endLoop() noexcept {}
    void stopEndingLoop() noexcept;
    static void endLoops() noexcept;
    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD);
    static LRESULT CALLBACK onMessageTaken(int code, WPARAM wParam, LPARAM lParam);

    HandlerScope** slot_;
    HandlerScope* outer_;
    std::exception_ptr kept_;
    UINT_PTR timer_ = 0;
    HHOOK hook_ = nullptr;
};

/// The scope of a call that does not return until its modal loop ends: `end` makes it end.
template <class End> class LoopScope final : public HandlerScope {
public:
    explicit LoopScope(End end) : end_(std::move(end)) {}

private:
    // At once, for a loop that runs, and repeatedly, for one that is about to begin.
    void onKept() noexcept override
    {
        end_();
        keepEndingLoop();
    }
    void endLoop() noexcept override { end_(); }

    End end_;
};

/// The scope of a call in which the system may run a menu, or let the user move or size a window. Whether it
/// does shows only when a loop inside of the call takes a message: what a handler of an outer menu sends must
/// not end that menu.
class SystemLoopScope final : public HandlerScope {
private:
    void onKept() noexcept override { keepEndingLoop(); }
    void endLoop() noexcept override;
};

/// Calls the system, which may run handlers, in a scope, and throws what a handler threw.
template <class Call> auto callIn(HandlerScope& scope, Call& call)
{
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        scope.rethrow();
    } else {
        auto result = call();
        scope.rethrow();
        return result;
    }
}

/// The same for a call that returns by itself. The last error is that of the call, so that checks go round.
template <class Call> auto runningHandlers(Call call)
{
    HandlerScope scope;
    return callIn(scope, call);
}

/// The same for a call with a modal loop of its own. `end` ends the loop, must not throw, and is called on the
/// thread of the loop after a handler threw, perhaps before the loop has begun and then once more after it has.
template <class Call, class End> auto runningLoop(Call call, End end)
{
    LoopScope<End> scope(std::move(end));
    return callIn(scope, call);
}

/// The same for a call that may come to one of the system's loops, in the default procedure of a window.
template <class Call> auto runningSystemLoops(Call call)
{
    SystemLoopScope scope;
    return callIn(scope, call);
}

/// The body of a callback from the system, to be called by what the system calls: gives its result, or
/// `failed` after it threw.
template <class Result, class Body>
Result guardedCallback(Result failed, const CallbackOrigin& origin, Body body,
                       const void* caller = __builtin_return_address(0))
{
    try {
        return body();
    } catch (...) {
        HandlerScope::keepCurrentException(origin, caller);
        return failed;
    }
}
} // namespace tarn
