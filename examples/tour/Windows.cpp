#include "Tour.h"

#include <tarn/MessageLoop.h>
#include <tarn/WindowClass.h>

#include <iostream>
#include <stdexcept>

using namespace tarn;

namespace {
/// Reports some of its messages, and fails for one.
class Reporter : public Window {
public:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        ++messages;
        if (msg == WM_CREATE || msg == WM_SETTEXT || msg >= WM_USER)
            std::cout << "  the window got " << getWMIdentifier(msg) << '\n';
        if (msg == WM_USER + 7)
            throw std::runtime_error("the handler could not do it");
        return Window::onMessage(msg, wParam, lParam);
    }
    void onTimer(UINT_PTR id) override
    {
        std::cout << "  timer " << id << " ran; that is all\n";
        stopTimer(id);
        PostQuitMessage(0);
    }
    void onMove(const Point& to) override { std::cout << "  it moved to " << to.x << ", " << to.y << '\n'; }

    int messages = 0;
};

void show()
{
    const HINSTANCE program = GetModuleHandleW(nullptr);
    const WindowClass windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, program);
    Reporter window;
    window.create(windowClass, L"Tour", WS_POPUP, Rect(100, 80, 420, 260), nullptr, nullptr, program);
    std::cout << "Its class is " << window.getClassNameA().left(44) << "...\n";
    window.setText(L"A window that reports");
    const Size size = window.getClientSize();
    std::cout << "\"" << window.getTextA() << "\" is " << size.cx << " x " << size.cy << " pixels\n";
    window.setPosition(Point(150, 120), 0);

    // What a handler throws arrives here, although the system's own code lies between.
    try {
        window.sendMessageA(WM_USER + 7);
    } catch (const std::exception& e) {
        std::cout << "The sender caught: " << e.what() << '\n';
    }
    Window nothing;
    try {
        nothing.getClientRectangle();
    } catch (const std::exception& e) {
        std::cout << "A window that is not there: " << e.what() << '\n';
    }
    window.startTimer(1, 20);
    runMessageLoop();
    std::cout << "Messages handled: " << window.messages << '\n';
}

const tour::Section section(90, "Windows", show);
} // namespace
