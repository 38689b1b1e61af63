// A handler throws while only the system's own functions are at work, or faults when there is an argument. Exits with
// 70 when that exception terminates the program.

#include <tarn/Window.h>
#include <tarn/WindowClass.h>

#include <cstdlib>
#include <exception>
#include <stdexcept>

namespace {
class Failing : public tarn::Window {
public:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == WM_USER)
            throw std::logic_error("handler failed");
        if (msg == WM_USER + 1)
            return *static_cast<volatile int*>(nullptr);
        return Window::onMessage(msg, wParam, lParam);
    }
};

[[noreturn]] void tell()
{
    try {
        if (std::current_exception())
            std::rethrow_exception(std::current_exception());
    } catch (const std::exception&) {
        std::_Exit(70);
    }
    std::_Exit(1);
}
} // namespace

int main(int count, char**)
{
    std::set_terminate(tell);
    const tarn::WindowClass windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, GetModuleHandleW(nullptr));
    Failing window;
    window.create(windowClass, L"", WS_POPUP, tarn::Rect(0, 0, 10, 10), nullptr, nullptr, nullptr);
    SendMessageW(window, count > 1 ? WM_USER + 1 : WM_USER, 0, 0);
    return 0;
}
