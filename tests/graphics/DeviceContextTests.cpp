#include "Test.h"

#include "Canvas.h"
#include "Failures.h"

#include <tarn/PaintDeviceContext.h>
#include <tarn/Rect.h>

namespace {
struct DestroyWindowLater {
    void operator()(HWND window) const { DestroyWindow(window); }
};
using TestWindow = std::unique_ptr<std::remove_pointer_t<HWND>, DestroyWindowLater>;

TestWindow newWindow()
{
    return TestWindow(CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP | WS_VISIBLE | WS_BORDER, 20, 20, 60, 40, nullptr,
                                      nullptr, nullptr, nullptr));
}
} // namespace

TEST_CASE("DeviceContext: a memory context is deleted by its owner only")
{
    HDC handle;
    {
        DeviceContext owner;
        handle = owner;
        DeviceContext borrower(handle);
        borrower.close();
        CHECK((!borrower && GetObjectType(handle) == OBJ_MEMDC));
    }
    CHECK_FALSE(isAlive(handle));
}

TEST_CASE("DeviceContext: of a window's client area, the whole window and the screen")
{
    const TestWindow window = newWindow();
    const DeviceContext client(window.get(), false), whole(window.get(), true);
    Rect area;
    GetClipBox(client, &area);
    CHECK(area.getSize() == Size(58, 38));
    GetClipBox(whole, &area);
    CHECK(area.getSize() == Size(60, 40));
    CHECK(GetObjectType(DeviceContext(client)) == OBJ_MEMDC); // What a copy is.
    DeviceContext screen(nullptr, false);
    CHECK(screen.getCapabilities(HORZRES) == GetSystemMetrics(SM_CXSCREEN));
    CHECK_NOTHROW(screen.close());
    expectWindowsError([] { DeviceContext(HWND(0x7FF0), false); }, ERROR_INVALID_WINDOW_HANDLE,
                       "Can't retrieve DC from window");
}

TEST_CASE("DeviceContext: moving hands a context on, and a compatible one is made by name")
{
    DeviceContext memory = DeviceContext::createCompatible(DeviceContext(nullptr, false));
    const HDC handle = memory;
    CHECK(GetObjectType(handle) == OBJ_MEMDC);
    DeviceContext other(std::move(memory));
    CHECK((!memory && other.getHandle() == handle));
    memory = std::move(other);
    other = DeviceContext::createCompatible(nullptr);
    std::swap(memory, other);
    CHECK(other.getHandle() == handle);
    const HDC given = memory.detach();
    memory = std::move(other);
    memory = DeviceContext(given);
    CHECK((!isAlive(handle) && isAlive(given)));
    memory.close(); // It borrows.
    CHECK(DeleteDC(given));
}

TEST_CASE("DeviceContext: a failing release is reported once, a vanished window's is not")
{
    DeviceContext context;
    DeleteDC(context);
    expectWindowsError([&] { context.close(); }, "Can't delete device context");
    CHECK_NOTHROW(context.close());
    DeviceContext moved;
    DeleteDC(moved);
    moved = DeviceContext(); // Which must not throw.
    TestWindow window = newWindow();
    DeviceContext ofWindow(window.get(), false);
    window.reset();
    CHECK_NOTHROW(ofWindow.close());
}

TEST_CASE("PaintDeviceContext: makes the window valid and ends painting")
{
    const TestWindow window = newWindow();
    const Rect invalid(10, 10, 20, 30);
    ValidateRect(window.get(), nullptr);
    InvalidateRect(window.get(), &invalid, FALSE);
    HDC handle;
    {
        PaintDeviceContext paint(window.get());
        handle = paint;
        CHECK(paint.getUpdateRectangle() == invalid);
        CHECK(GetObjectType(PaintDeviceContext(paint)) == OBJ_MEMDC);
        PaintDeviceContext taker(std::move(paint));
        CHECK((!paint && taker.getHandle() == handle));
        taker.close();
        CHECK(!taker);
    }
    CHECK_FALSE(GetUpdateRect(window.get(), nullptr, FALSE));
    CHECK(WindowFromDC(handle) != window.get());
    expectWindowsError([] { PaintDeviceContext(HWND(0x7FF0)); }, ERROR_INVALID_WINDOW_HANDLE, "Error in BeginPaint");
}

TEST_CASE("DeviceContext: a bad handle is reported by every member that can fail")
{
    DeviceContext dead{HDC(0x12345678)};
    const Rect rect(0, 0, 4, 4);
    TEXTMETRICA metrics;
    expectFailures({
        {"Can't create compatible DC", [&] { DeviceContext copy(dead); }},
        {"Can't fill rect with system colour", [&] { dead.fillRectangle(COLOR_WINDOW, rect); }, silentOnWine},
        {"Can't fill rect with system colour", [&] { dead.fillRectangle(Brush(red), rect); }, silentOnWine},
        {"Can't set back colour", [&] { dead.fillRectangle(red, rect); }},
        {"Can't set back colour", [&] { dead.setBackgroundColour(red); }},
        {"Can't set back colour", [&] { dead.getBackgroundColour(); }},
        {"Can't set text colour", [&] { dead.setTextColour(red); }},
        {"Can't set text colour", [&] { dead.getTextColour(); }, silentOnWine},
        {"Can't move drawing position", [&] { dead.moveTo(1, 1); }},
        {"Can't draw line", [&] { dead.lineTo(1, 1); }},
        {"Can't draw line", [&] { dead.drawRectangle3D(rect, true); }},
        {"Can't select pen", [&] { dead.select(Pen(red, PS_SOLID, 1)); }},
        {"Can't select brush", [&] { dead.select(Brush(red)); }},
        {"Can't select bitmap", [&] { dead.select(HBITMAP()); }},
        {"Can't select bitmap", [&] { dead.select(HFONT()); }},
        {"Can't select palette", [&] { dead.select(HPALETTE(), false); }},
        {"Can't realize palette", [&] { dead.realizePalette(); }, silentOnWine},
        {"Can't blit bits", [&] { dead.blit(dead, 0, 0, 1, 1, 0, 0, SRCCOPY); }},
        {"Can't create compatible DC", [&] { dead.blitTransparent(HBITMAP(), 0, 0, 1, 1, 0, 0, red); }},
        {"Can't draw icon", [&] { dead.drawIcon(0, 0, LoadIconW(nullptr, IDI_APPLICATION)); }},
        {"Can't retrieve text metrics", [&] { dead.getTextMetrics(metrics); }},
        {"Can't retrieve text extent", [&] { dead.getTextExtent("text"); }},
        {"Can't retrieve text alignment", [&] { dead.getTextAlign(); }, silentOnWine},
        {"Can't set text alignment", [&] { dead.setTextAlign(TA_RIGHT); }},
        {"Can't draw text", [&] { dead.drawText(0, 0, "text"); }},
        {"Can't begin path", [&] { dead.beginPath(); }},
        {"Can't abort path", [&] { dead.abortPath(); }},
        {"Can't end path", [&] { dead.endPath(); }},
        {"Can't fill path", [&] { dead.fillPath(); }},
        {"Can't stroke and fill path", [&] { dead.strokeAndFillPath(); }},
        {"Can't stroke path", [&] { dead.strokePath(); }},
        {"Can't widen path", [&] { dead.widenPath(); }},
        {"Can't flatten path", [&] { dead.flattenPath(); }},
        {"Can't close figure", [&] { dead.closeFigure(); }},
        {"Can't set ROP2", [&] { dead.setROP2(R2_COPYPEN); }},
        {"Can't get ROP2", [&] { dead.getROP2(); }},
        {"Can't set viewport origin", [&] { dead.setViewportOrigin(0, 0); }},
    });
    CHECK((dead.getPixel(0, 0) == CLR_INVALID && dead.setPixel(0, 0, 0) == CLR_INVALID));
}
