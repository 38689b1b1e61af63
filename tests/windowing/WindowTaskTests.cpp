#include "Diverted.h"
#include "Windows.h"

#include <tarn/MessageLoop.h>

#include <atomic>
#include <future>
#include <thread>

namespace {
/// A thread with a window and a loop, which ends with the window.
class WindowThread {
public:
    WindowThread() { hwnd = ready_.get_future().get(); }
    ~WindowThread()
    {
        if (IsWindow(hwnd))
            Window::call(hwnd, [this] { window_->destroy(); });
        thread_.join();
    }

    HWND hwnd;

private:
    struct Quitting : Window {
        void onDestroy() override { PostQuitMessage(0); }
    };

    void run()
    {
        Quitting window;
        open(window);
        window_ = &window;
        ready_.set_value(window);
        runMessageLoop();
    }

    Window* window_ = nullptr;
    std::promise<HWND> ready_;
    std::thread thread_{[this] { run(); }};
};

BOOL WINAPI refuse(HWND, UINT, WPARAM, LPARAM) { return SetLastError(ERROR_NOT_ENOUGH_QUOTA), FALSE; }

void handleWaitingMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        Window::dispatchMessage(msg);
}
} // namespace

TEST_CASE("Window: a function is called on the thread of the window")
{
    const WindowThread other;
    const DWORD id = Window::call(other.hwnd, [] { return GetCurrentThreadId(); });
    CHECK(id == GetWindowThreadProcessId(other.hwnd, nullptr));
    CHECK(*Window::call(other.hwnd, [] { return std::make_unique<int>(5); }) == 5);
    CHECK_THROWS_WITH(Window::call(other.hwnd, []() -> int { throw std::runtime_error("no"); }), "no");
    std::string calls;
    Window::post(other.hwnd, [&] { calls += 'a'; });
    Window::call(other.hwnd, [&] { calls += 'b'; });
    CHECK(calls == "ab");
    const OpenWindow own;
    CHECK(own.call([] { return GetCurrentThreadId(); }) == GetCurrentThreadId());
}

TEST_CASE("Window: functions are called in their order, and what they throw comes out of the loop")
{
    const OpenWindow window;
    std::string calls;
    window.post([&, owned = std::make_unique<char>('a')] { calls += *owned; });
    std::thread([&] { window.post([&] { calls += 'b'; }); }).join();
    CHECK(calls.empty());
    handleWaitingMessages();
    CHECK(calls == "ab");
    window.post([] { throw std::runtime_error("no"); });
    CHECK_THROWS_WITH(handleWaitingMessages(), "no");
}

TEST_CASE("Window: functions reach a thread whose message box is open")
{
    const OpenWindow window;
    std::thread caller;
    const bool isNarrow = GENERATE(true, false);
    std::wstring shown;
    const auto end = [&] {
        const Window box(GetActiveWindow());
        shown = box.getTextW();
        EndDialog(box, IDRETRY);
    };
    window.post([&] { caller = std::thread([&] { window.call(end); }); });
    CHECK((isNarrow ? window.messageBox("text", "caption", MB_OK) : window.messageBox(L"text", L"caption", MB_OK)) ==
          IDRETRY);
    caller.join();
    CHECK(shown == L"caption");
}

TEST_CASE("Window: a thread that calls answers what is sent to its windows meanwhile")
{
    const WindowThread other;
    const OpenWindow window;
    CHECK(Window::call(other.hwnd, [&] { return SendMessageW(window, WM_GETTEXTLENGTH, 0, 0); }) == 4);
}

TEST_CASE("Window: a call ends with the thread that should answer it")
{
    std::promise<HWND> ready;
    std::unique_ptr<OpenWindow> window;
    std::thread thread([&] {
        window = std::make_unique<OpenWindow>();
        ready.set_value(*window);
        WaitMessage(); // The call has come,
        ExitThread(0); // and is not answered any more.
    });
    const HWND hwnd = ready.get_future().get();
    expectWindowsError([&] { Window::call(hwnd, [] {}); }, ERROR_INVALID_WINDOW_HANDLE,
                       "Can't call on the window's thread");
    thread.join();
}

TEST_CASE("Window: what a window does not live to call is destroyed, and who waits for it hears of it")
{
    const auto witness = std::make_shared<int>();
    const OpenWindow other;
    bool isOtherCalled = false;
    other.post([&] { isOtherCalled = true; });
    Window window;
    open(window);
    const HWND hwnd = window;
    auto waiting = std::async(std::launch::async, [hwnd] { Window::call(hwnd, [] { FAIL("called"); }); });
    MSG msg;
    while (!PeekMessageW(&msg, hwnd, 0, 0, PM_NOREMOVE)) // Until the call is there.
        Sleep(1);
    window.post([witness] { FAIL("called"); });
    window.destroy();
    expectWindowsError([&] { waiting.get(); }, ERROR_INVALID_WINDOW_HANDLE, "Can't call on the window's thread");
    CHECK(witness.use_count() == 1);
    expectWindowsError([&] { Window::post(hwnd, [] {}); }, ERROR_INVALID_WINDOW_HANDLE,
                       "Can't post to the window's thread");
    handleWaitingMessages();
    CHECK(isOtherCalled);
    const Diverted calls(L"user32.dll", "PostMessageW", &refuse); // What cannot be posted is given back.
    expectWindowsError([&] { other.post([witness] {}); }, ERROR_NOT_ENOUGH_QUOTA, "Can't post to the window's thread");
    CHECK(witness.use_count() == 1);
}

TEST_CASE("Window: a window whose messages do not come to an object takes no functions")
{
    const OpenWindow parent;
    makeButton(parent, 300);
    Window attached;
    attached.attach(parent, 300);
    expectWindowsError([&] { attached.post([] {}); }, ERROR_INVALID_WINDOW_HANDLE, "Can't post to the window's thread");
    bool called = false;
    attached.subclass(parent, 300);
    attached.post([&] { called = true; });
    handleWaitingMessages();
    CHECK(called);
    attached.unsubclass();
}

TEST_CASE("Window: threads make, use and end windows of their own at a time")
{
    std::atomic<int> messages = 0;
    const auto work = [&] {
        struct Counting : Window {
            explicit Counting(std::atomic<int>& messages) : count(messages) {}
            void onTimer(UINT_PTR) override { ++count; }
            std::atomic<int>& count;
        };
        for (int i = 0; i < 100; ++i) {
            Counting one(messages), two(messages);
            open(one);
            open(two, WS_CHILD, one);
            one.sendMessageA(WM_TIMER), two.sendMessageA(WM_TIMER);
            if (Window::getWindowFromHandle(two, false).get() != &two)
                throw std::logic_error("another object");
        }
    };
    testClass();
    auto first = std::async(std::launch::async, work), second = std::async(std::launch::async, work);
    work(), first.get(), second.get();
    CHECK(messages == 600);
}
