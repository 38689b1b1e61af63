#include "../tests/windowing/Storm.h"

#include <catch2/catch.hpp>

#include <Counts.h>
#include <Handles.h>

#include <tarn/Dialog.h>
#include <tarn/WindowClass.h>

#include <cstdio>
#include <memory>
#include <vector>

// What a program has open and allocated after some windows, dialogs and messages, and after many more.

using namespace tarn;

namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);

void tellLevels(unsigned count, const char* what)
{
    std::printf("after %u %s: %u windows and menus, %u drawing objects, %lu handles, %u KB\n", count, what,
                support::userObjects(), support::drawingObjects(), support::openHandles(),
                static_cast<unsigned>(support::usedBytes() / 1024));
    std::fflush(stdout);
}

/// Does a tenth first, for what the system makes once.
template <class Work> void measure(unsigned count, const char* what, Work work)
{
    std::printf("\n");
    for (unsigned done = count / 10; done <= count; done += count * 9 / 10) {
        work(done == count ? count * 9 / 10 : done);
        tellLevels(done, what);
    }
}

const WindowClass& ourClass()
{
    static const WindowClass windowClass(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, program);
    return windowClass;
}

void create(Window& window, HWND parent)
{
    window.create(ourClass(), L"load", parent ? WS_CHILD : WS_POPUP, Rect(0, 0, 10, 10), parent, nullptr, program);
}

/// The template is that of the tests: four controls.
struct Passing : Dialog {
    Passing() : Dialog(1, program) {}
    bool onInitDialog(Window&) override
    {
        end(IDOK);
        return true;
    }
};
} // namespace

TEST_CASE("Load")
{
    Window parent;
    create(parent, nullptr);
    measure(10000, "windows, a thousand at a time", [&](unsigned count) {
        for (unsigned made = 0; made < count; made += 1000) {
            std::vector<std::unique_ptr<Window>> windows(1000);
            for (auto& window : windows) {
                window = std::make_unique<Window>();
                create(*window, parent);
            }
        }
    });
    measure(1000, "modal dialogs", [](unsigned count) {
        for (unsigned i = 0; i < count; ++i)
            Passing().showModal();
    });
    measure(1000000, "random messages", [&](unsigned count) { support::sendStorm(parent, static_cast<int>(count)); });

    // What the system's default procedure leaves over by itself.
    const HWND plain =
        CreateWindowExW(0, L"STATIC", L"load", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, program, nullptr);
    SetWindowLongPtrW(plain, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&DefWindowProcW));
    measure(1000000, "random messages to a window without the library",
            [&](unsigned count) { support::sendStorm(Window(plain), static_cast<int>(count)); });
    DestroyWindow(plain);
}
