#pragma once

#include <tarn/Windows.h>

#include <exception>
#include <type_traits>
#include <utility>

// An exception cannot pass through the system's own frames: thrown out of a window procedure it would end
// the program. So every callback from the system keeps the exception (guardedCallback) and returns to the
// system normally, and the library call that made the system run the callback throws it when it comes back
// (runningHandlers, runningLoop).

namespace tarn {
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
        if (timer_)
            stopEndingLoop();
        *slot_ = outer_;
    }

    /// To be called in a catch block: keeps the exception for the calling thread's innermost scope, which
    /// throws it, unless it keeps an earlier one already: the first failure is the one that explains the
    /// others. Ends the program when there is no scope.
    static void keepCurrentException() noexcept;

    /// Leaves the last error of a call that kept nothing as it is.
    void rethrow()
    {
        if (kept_)
            std::rethrow_exception(std::exchange(kept_, nullptr));
    }
    bool hasKept() const noexcept { return kept_ != nullptr; }

protected:
    /// Has endLoop() called again and again until the scope ends, because a loop that is about to begin
    /// cannot be ended yet.
    void keepEndingLoop() noexcept;

private:
    /// Ends the modal loop that the call runs, so that it returns and can throw.
    virtual void endLoop() noexcept {}
    void stopEndingLoop() noexcept;
    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD);

    HandlerScope** slot_;
    HandlerScope* outer_;
    std::exception_ptr kept_;
    UINT_PTR timer_ = 0;
};

/// The scope of a call that does not return until its modal loop ends: `end` makes it end.
template <class End> class LoopScope final : public HandlerScope {
public:
    explicit LoopScope(End end) : end_(std::move(end)) {}

private:
    void endLoop() noexcept override
    {
        end_();
        keepEndingLoop();
    }

    End end_;
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

/// The same for a call with a modal loop. `end` ends the loop, must not throw, and is called on the thread
/// of the loop after a handler threw, perhaps before the loop has begun and then once more after it has.
template <class Call, class End> auto runningLoop(Call call, End end)
{
    LoopScope<End> scope(std::move(end));
    return callIn(scope, call);
}

/// Ends a menu or a moving or sizing that the system runs for the calling thread.
void endSystemLoops() noexcept;

/// The body of a callback from the system: gives its result, or `failed` after it threw.
template <class Result, class Body> Result guardedCallback(Result failed, Body body) noexcept
{
    try {
        return body();
    } catch (...) {
        HandlerScope::keepCurrentException();
        return failed;
    }
}
} // namespace tarn
