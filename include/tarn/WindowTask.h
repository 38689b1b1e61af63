#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <concepts>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace tarn {
/// What WindowTasks::post() and WindowTasks::call() hand to the thread of a window.
class WindowTask {
public:
    WindowTask() = default;
    WindowTask(const WindowTask&) = delete;
    WindowTask& operator=(const WindowTask&) = delete;
    virtual ~WindowTask() = default;

    /// On the window's thread, once at the most.
    virtual void run() = 0;
};

/// A function as a task.
template <class F> class FunctionTask final : public WindowTask {
public:
    /// Takes the function over.
    explicit FunctionTask(F f) : function_(std::move(f)) {}

    void run() override { function_(); }

private:
    F function_;
};

namespace detail {
/// What WindowTasks hands its tasks to.
struct TARN_API WindowTaskQueue {
    /// Has it run later.
    static void post(HWND hwnd, std::unique_ptr<WindowTask> task);
    /// Waits until it has run.
    static void call(HWND hwnd, WindowTask& task);
    /// Its number. `failed` is the text of a failure.
    static WPARAM add(HWND hwnd, std::unique_ptr<WindowTask> task, const char* failed);
};
} // namespace detail

/// What other threads have the thread of a window do. For windows that send their messages to an object: created with a
/// WindowClass, subclassed, or dialogs. A Window has the same without the handle.
class TARN_API WindowTasks {
public:
    /// Has the thread of a window call `f()`, later and in the order of the posts; a modal loop of that thread does so,
    /// too. Any thread may post. If the window ends before, `f` is destroyed without a call, on the thread that ends
    /// it; destroying it must throw nothing. What it throws comes out of the loop, as from a handler. Throws "Can't
    /// post to the window's thread".
    template <std::invocable F> static void post(HWND hwnd, F f)
    {
        detail::WindowTaskQueue::post(hwnd, std::make_unique<FunctionTask<F>>(std::move(f)));
    }
    /// Waits until the thread of a window has called `f()`, after what was posted before, and gives its result or
    /// throws what it threw; on that thread itself it is a plain call. Meanwhile the calling thread answers messages
    /// that others send to its windows. Do not let the other thread wait for this one: it has to handle its messages.
    /// Throws "Can't call on the window's thread", also when the window ends before.
    template <std::invocable F> static auto call(HWND hwnd, F f)
    {
        using Result = std::decay_t<std::invoke_result_t<F&>>;
        if constexpr (std::is_void_v<Result>) {
            FunctionTask<F> task(std::move(f));
            detail::WindowTaskQueue::call(hwnd, task);
        } else {
            std::optional<Result> result;
            const auto keep = [&] { result.emplace(f()); };
            FunctionTask<decltype(keep)> task(keep);
            detail::WindowTaskQueue::call(hwnd, task);
            return std::move(*result);
        }
    }
};
} // namespace tarn
