#pragma once

#include <utility>

namespace tarn {
/// What Window::post() and Window::call() hand to the thread of a window.
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
} // namespace tarn
