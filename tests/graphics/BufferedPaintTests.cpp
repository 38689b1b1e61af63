#include "../windowing/Windows.h"
#include "Canvas.h"

#include <tarn/BufferedPaint.h>

namespace {
struct Painter : Window {
    void onPaint() override
    {
        BufferedPaint context(*this);
        paint(context);
    }
    std::function<void(BufferedPaint&)> paint;
};
} // namespace

TEST_CASE("BufferedPaint: what is drawn appears at the end, where the window is invalid")
{
    Painter window;
    open(window, WS_POPUP | WS_VISIBLE);
    const DeviceContext seen(window, false);
    seen.fillRectangle(white, Rect(0, 0, 200, 100));
    window.paint = [&](BufferedPaint& context) {
        CHECK(context.getUpdateRectangle() == Rect(10, 10, 30, 20));
        context.fillRectangle(red, Rect(0, 0, 200, 100));
        context.setViewportOrigin(5, 5);
        GdiFlush();
        CHECK(seen.getPixel(15, 15) == white);
        context.close();
        CHECK((!context && seen.getPixel(15, 15) == red));
    };
    const Rect part(10, 10, 30, 20);
    MSG msg; // Wine 10 makes the window invalid when it looks for events.
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE | PM_QS_INPUT | PM_QS_POSTMESSAGE)) {
    }
    RedrawWindow(window, nullptr, nullptr, RDW_VALIDATE);
    InvalidateRect(window, &part, FALSE);
    window.update();
    CHECK((seen.getPixel(15, 15) == red && seen.getPixel(9, 15) == white && seen.getPixel(15, 20) == white));
    CHECK(!GetUpdateRect(window, nullptr, FALSE));
}

TEST_CASE("BufferedPaint: an exception shows nothing, and ends painting")
{
    Painter window;
    open(window, WS_POPUP | WS_VISIBLE);
    const DeviceContext seen(window, false);
    seen.fillRectangle(white, Rect(0, 0, 200, 100));
    window.paint = [](BufferedPaint& context) {
        context.fillRectangle(red, Rect(0, 0, 200, 100));
        throw std::runtime_error("while painting");
    };
    for (int i = 0; i < 2; ++i) {
        const unsigned objects = drawingObjects();
        InvalidateRect(window, nullptr, FALSE);
        expectError<std::runtime_error>([&] { window.update(); }, "while painting");
        CHECK((drawingObjects() == objects || i == 0)); // The first time the system makes some that it keeps.
    }
    CHECK((seen.getPixel(15, 15) == white && !GetUpdateRect(window, nullptr, FALSE)));
    expectWindowsError([] { BufferedPaint(HWND(0x7FF0)); }, "Error in BeginPaint");
}
