#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/MessageLoop.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>

#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace tarn;

namespace {
constexpr UINT question = WM_USER + 1, posted = WM_USER + 2, called = WM_USER + 3;
const HINSTANCE program = GetModuleHandleW(nullptr);

class Ours : public Window {
public:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == question)
            return answer;
        return Window::onMessage(msg, wParam, lParam);
    }

    LRESULT onNotifyToAnswer(NMHDR&) override { return answer; }

    LRESULT answer = 42;
};

/// What one writes without the library: the object behind the window's user data.
struct Raw {
    static LRESULT CALLBACK procedure(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
    {
        if (msg == WM_NCCREATE) {
            const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
            SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
        }
        auto* const object = reinterpret_cast<Raw*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
        if (object && msg == question)
            return object->answer;
        if (msg == WM_NOTIFY)
            return 42;
        if (msg == called)
            return (*reinterpret_cast<std::function<void()>*>(lParam))(), 0;
        if (msg == posted) {
            const std::unique_ptr<std::function<void()>> f(reinterpret_cast<std::function<void()>*>(lParam));
            return (*f)(), 0;
        }
        return DefWindowProcW(hwnd, msg, wParam, lParam);
    }

    HWND create(HWND parent)
    {
        return CreateWindowExW(0, L"raw", L"", WS_CHILD, 0, 0, 10, 10, parent, nullptr, program, this);
    }

    LRESULT answer = 42;
};

void registerRaw()
{
    WNDCLASSW attributes{};
    attributes.lpfnWndProc = Raw::procedure;
    attributes.hInstance = program;
    attributes.lpszClassName = L"raw";
    RegisterClassW(&attributes);
}

const WindowClass& ourClass()
{
    static const WindowClass windowClass(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, program);
    return windowClass;
}

void create(Window& window, HWND parent)
{
    window.create(ourClass(), L"", WS_CHILD, Rect(0, 0, 10, 10), parent, nullptr, program);
}

/// A thread with a window of either kind, and a loop.
class OtherThread {
public:
    OtherThread()
    {
        std::promise<std::pair<HWND, HWND>> made;
        thread_ = std::jthread([&made] {
            Ours ours;
            create(ours, HWND_MESSAGE);
            Raw raw;
            made.set_value({ours, raw.create(HWND_MESSAGE)});
            runMessageLoop();
        });
        windows_ = made.get_future().get();
        id_ = GetWindowThreadProcessId(windows_.first, nullptr);
    }
    ~OtherThread() { PostThreadMessageW(id_, WM_QUIT, 0, 0); }

    HWND ours() const { return windows_.first; }
    HWND raw() const { return windows_.second; }

private:
    std::pair<HWND, HWND> windows_;
    DWORD id_ = 0;
    std::jthread thread_;
};
} // namespace

TEST_CASE("Windows")
{
    registerRaw();
    bench::Ratios table("Windows, against a window procedure that keeps its object in the user data");
    Window parent;
    parent.create(ourClass(), L"", WS_POPUP, Rect(0, 0, 10, 10), nullptr, nullptr, program);
    Raw raw;
    const HWND rawWindow = raw.create(parent);
    constexpr int sends = 20000;

    std::vector<std::unique_ptr<Ours>> windows;
    const std::pair<std::size_t, double> sizes[] = {{1, 1.3}, {100, 1.3}, {5000, 1.5}};
    for (const auto& [count, limit] : sizes) {
        while (windows.size() < count) {
            windows.push_back(std::make_unique<Ours>());
            create(*windows.back(), parent);
        }
        const HWND ours = *windows[count / 2];
        table.row(
            "20,000 messages sent, bound windows: " + std::to_string(count), limit,
            [&] {
                for (int i = 0; i < sends; ++i)
                    bench::keep(SendMessageW(ours, question, 0, 0));
            },
            [&] {
                for (int i = 0; i < sends; ++i)
                    bench::keep(SendMessageW(rawWindow, question, 0, 0));
            });
    }
    const Window& ours = *windows.front();
    table.row(
        "20,000 messages through sendMessageA", 1.3,
        [&] {
            for (int i = 0; i < sends; ++i)
                bench::keep(ours.sendMessageA(question));
        },
        [&] {
            for (int i = 0; i < sends; ++i)
                bench::keep(SendMessageA(rawWindow, question, 0, 0));
        });
    windows.clear();
    Ours receiver;
    create(receiver, parent);
    NMHDR answered{receiver, 1, 0xFFFF}; // Of no family that has a handler of its own.
    table.row(
        "20,000 notifications answered: onNotifyToAnswer", 1.3,
        [&] {
            for (int i = 0; i < sends; ++i)
                bench::keep(SendMessageW(receiver, WM_NOTIFY, 1, reinterpret_cast<LPARAM>(&answered)));
        },
        [&] {
            for (int i = 0; i < sends; ++i)
                bench::keep(SendMessageW(rawWindow, WM_NOTIFY, 1, reinterpret_cast<LPARAM>(&answered)));
        });

    constexpr int posts = 2000;
    int calls = 0;
    const auto dispatchAll = [](auto dispatch) {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
            dispatch(msg);
    };
    table.row(
        "2,000 functions posted / allocated and sent along by hand", 1.05,
        [&] {
            for (int i = 0; i < posts; ++i)
                receiver.post([&calls] { ++calls; });
            dispatchAll([](const MSG& msg) { Window::dispatchMessage(msg); });
        },
        [&] {
            for (int i = 0; i < posts; ++i) {
                auto f = std::make_unique<std::function<void()>>([&calls] { ++calls; });
                if (PostMessageW(rawWindow, posted, 0, reinterpret_cast<LPARAM>(f.get())))
                    f.release();
            }
            dispatchAll([](const MSG& msg) { DispatchMessageW(&msg); });
        });
    const OtherThread other;
    table.row(
        "1,000 calls of another thread's window / SendMessage", 1.05,
        [&] {
            for (int i = 0; i < posts / 2; ++i)
                bench::keep(Window::call(other.ours(), [&calls] { return ++calls; }));
        },
        [&] {
            for (int i = 0; i < posts / 2; ++i) {
                std::function<void()> f = [&calls] { ++calls; };
                SendMessageW(other.raw(), called, 0, reinterpret_cast<LPARAM>(&f));
            }
        },
        bench::Clock::wall);

    constexpr int creations = 200;
    table.row(
        "200 windows created and destroyed", 1.1,
        [&] {
            for (int i = 0; i < creations; ++i) {
                Ours window;
                create(window, parent);
            }
        },
        [&] {
            for (int i = 0; i < creations; ++i) {
                Raw window;
                DestroyWindow(window.create(parent));
            }
        },
        bench::Clock::wall);
}

TEST_CASE("Windows: growth", "[.growth]")
{
    registerRaw();
    Window parent;
    parent.create(ourClass(), L"", WS_POPUP, Rect(0, 0, 10, 10), nullptr, nullptr, program);

    const bench::Growth sending("A message to each of many windows", "windows");
    sending.line("library", bench::tens(0, 4), [&](unsigned count) {
        std::vector<std::unique_ptr<Ours>> windows(count);
        for (auto& window : windows) {
            window = std::make_unique<Ours>();
            create(*window, parent);
        }
        return [windows = std::move(windows)] {
            for (const auto& window : windows)
                bench::keep(SendMessageW(*window, question, 0, 0));
        };
    });
    sending.line("window procedure by hand", bench::tens(0, 4), [&](unsigned count) {
        auto raw = std::make_unique<Raw>();
        std::vector<HWND> windows(count);
        for (HWND& window : windows)
            window = raw->create(parent);
        return [raw = std::move(raw), windows] {
            for (const HWND window : windows)
                bench::keep(SendMessageW(window, question, 0, 0));
        };
    });
}
