#include <tarn/Window.h>

#include <tarn/Event.h>
#include <tarn/Lock.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"

#include <atomic>
#include <exception>
#include <utility>

// From handles to objects, for windows of any thread, and what other threads hand to the thread of a window.

namespace tarn {
std::map<HWND, Window*> Window::WindowMap;

namespace {
CriticalSection mapLock; // For the map and the tasks.

/// What was looked up or changed last, of the handles that share a place, so that a message takes no lock: that would
/// be a tenth of its time.
struct RecentWindow {
    std::atomic<HWND> hwnd;
    std::atomic<Window*> window;
};
RecentWindow recentWindows[1024];
std::atomic<unsigned> changesOfRecent; // Odd while a place changes: what was read meanwhile is not used.

RecentWindow& placeOf(HWND hwnd)
{
    return recentWindows[reinterpret_cast<ULONG_PTR>(hwnd) / 2 % std::size(recentWindows)];
}

void setRecent(HWND hwnd, Window* window) // With the lock.
{
    ++changesOfRecent;
    placeOf(hwnd).hwnd = hwnd;
    placeOf(hwnd).window = window;
    ++changesOfRecent;
}

using TaskMap = std::map<std::pair<HWND, WPARAM>, std::unique_ptr<WindowTask>>;
TaskMap tasks;
WPARAM lastTask;
const UINT taskMessage = RegisterWindowMessageW(L"Tarn++ task");

std::unique_ptr<WindowTask> takeTask(HWND hwnd, WPARAM number)
{
    const AutoLock lock(mapLock);
    const auto node = tasks.extract({hwnd, number});
    return node ? std::move(node.mapped()) : nullptr;
}

/// A call, on the stack of the thread that waits for it.
struct Call {
    WindowTask& task;
    Event isOver{true, false};
    std::atomic<bool> isOverUntold = false; // Where the event could not be set.
    bool hasReturned = false;
    std::exception_ptr error = nullptr;
};

/// Tells the waiting thread when it is destroyed, with or without having run.
class AwaitedTask final : public WindowTask {
public:
    explicit AwaitedTask(Call& call) : call_(call) {}
    // Once the event is set the call may be gone.
    ~AwaitedTask() override
    {
        if (!SetEvent(call_.isOver.getHandle()))
            call_.isOverUntold = true;
    }

    void run() override
    {
        try {
            call_.task.run();
            call_.hasReturned = true;
        } catch (...) {
            call_.error = std::current_exception();
        }
    }

private:
    Call& call_;
};

// Answers what other threads send meanwhile, or two threads that call each other would wait for ever.
void waitFor(const Call& call, const WindowsHandle& thread)
{
    constexpr DWORD lookMs = 1000;
    const HANDLE either[] = {call.isOver.getHandle(), thread.getHandle()};
    for (;;) {
        const DWORD result = MsgWaitForMultipleObjects(2, either, FALSE, lookMs, QS_SENDMESSAGE);
        if (result == WAIT_OBJECT_0 + 2) {
            MSG msg;
            PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        } else if (result != WAIT_TIMEOUT || call.isOverUntold) {
            break;
        }
    }
}

/// Takes the task back when the message for it cannot be posted.
void postMessageOf(HWND hwnd, WPARAM number, const char* failed)
{
    if (PostMessageW(hwnd, taskMessage, number, 0))
        return;
    const DWORD error = GetLastError();
    takeTask(hwnd, number);
    throwWindowsError(error, failed);
}
} // namespace

Window* Window::WindowInternals::find(HWND hwnd)
{
    const RecentWindow& place = placeOf(hwnd);
    const unsigned changes = changesOfRecent;
    const HWND recent = place.hwnd;
    Window* const window = place.window;
    if (recent == hwnd && changes % 2 == 0 && changes == changesOfRecent)
        return window;
    const AutoLock lock(mapLock);
    const auto found = WindowMap.find(hwnd);
    Window* const bound = found == WindowMap.end() ? nullptr : found->second;
    setRecent(hwnd, bound);
    return bound;
}

// Gives the object that the window was bound to before.
Window* Window::WindowInternals::enter(HWND hwnd, Window* window)
{
    const AutoLock lock(mapLock);
    Window* const former = std::exchange(WindowMap[hwnd], window);
    setRecent(hwnd, window);
    return former;
}

void Window::WindowInternals::leave(HWND hwnd)
{
    TaskMap dropped; // Destroyed without the lock, since they are the program's.
    const AutoLock lock(mapLock);
    WindowMap.erase(hwnd);
    setRecent(hwnd, nullptr);
    for (auto task = tasks.lower_bound({hwnd, 0}); task != tasks.end() && task->first.first == hwnd;)
        dropped.insert(tasks.extract(task++));
}

WPARAM detail::WindowTaskQueue::add(HWND hwnd, std::unique_ptr<WindowTask> task, const char* failed)
{
    const AutoLock lock(mapLock);
    const auto found = Window::WindowMap.find(hwnd);
    if (found == Window::WindowMap.end() || !found->second->listens_)
        throwWindowsError(ERROR_INVALID_WINDOW_HANDLE, failed);
    tasks.emplace(std::pair(hwnd, ++lastTask), std::move(task));
    return lastTask;
}

void detail::WindowTaskQueue::post(HWND hwnd, std::unique_ptr<WindowTask> task)
{
    constexpr const char* failed = "Can't post to the window's thread";
    postMessageOf(hwnd, add(hwnd, std::move(task), failed), failed);
}

void detail::WindowTaskQueue::call(HWND hwnd, WindowTask& task)
{
    constexpr const char* failed = "Can't call on the window's thread";
    const DWORD id = ensureGDI([&] { return GetWindowThreadProcessId(hwnd, nullptr); }, failed);
    if (id == GetCurrentThreadId()) {
        task.run();
        return;
    }
    const WindowsHandle thread(ensure(OpenThread(SYNCHRONIZE, FALSE, id), failed));
    Call call{task};
    const WPARAM number = add(hwnd, std::make_unique<AwaitedTask>(call), failed);
    HandlerScope scope;
    postMessageOf(hwnd, number, failed);
    waitFor(call, thread);
    takeTask(hwnd, number); // Still there when the thread has ended without its windows.
    if (call.error)
        std::rethrow_exception(call.error);
    scope.rethrow();
    if (!call.hasReturned)
        throwWindowsError(ERROR_INVALID_WINDOW_HANDLE, failed);
}

bool Window::WindowInternals::runTask(HWND hwnd, UINT msg, WPARAM number)
{
    if (msg != taskMessage)
        return false;
    if (const auto task = takeTask(hwnd, number))
        task->run();
    return true;
}
} // namespace tarn
