#include "ScriptPlayer.h"

#include <tarn/Exception.h>

namespace planner {
namespace {
constexpr UINT perform = WM_APP, raise = WM_APP + 1, start = WM_APP + 2;

struct Task {
    const std::function<void()>& action;
    std::exception_ptr error;
    tarn::Event done{true, false};
};
} // namespace

WindowThread::WindowThread(HINSTANCE program)
{
    static const tarn::WindowClass windowClass(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, program);
    create(windowClass, L"", 0, RECT{}, HWND_MESSAGE, nullptr, program);
}

void WindowThread::call(const std::function<void()>& action)
{
    Task task{action, nullptr};
    const HANDLE either[] = {task.done.getHandle(), closed_.getHandle()};
    if (!postMessageW(perform, 0, reinterpret_cast<LPARAM>(&task)) ||
        WaitForMultipleObjects(2, either, FALSE, INFINITE) != WAIT_OBJECT_0)
        throw tarn::Exception("The program has ended");
    if (task.error)
        std::rethrow_exception(task.error);
}

void WindowThread::begin(std::function<void()> action)
{
    begun_ = std::move(action);
    postMessageW(start);
}

void WindowThread::fail(std::exception_ptr error)
{
    error_ = std::move(error);
    postMessageW(raise);
}

LRESULT WindowThread::onMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == raise)
        std::rethrow_exception(error_);
    if (msg == start) {
        std::exchange(begun_, nullptr)();
        return 0;
    }
    if (msg != perform)
        return Window::onMessage(msg, wParam, lParam);
    Task& task = *reinterpret_cast<Task*>(lParam);
    try {
        task.action();
    } catch (...) {
        task.error = std::current_exception();
    }
    task.done.set();
    return 0;
}
} // namespace planner
