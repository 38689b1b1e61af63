#include "Canvas.h"
#include "Expect.h"

#include <tarn/PaintDeviceContext.h>
#include <tarn/Rect.h>

#include <memory>

using namespace tarn;
using namespace support;

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
bool isAlive(HDC context) { return GetObjectType(context) != 0; }
} // namespace

TEST_CASE("DeviceContext: a memory context is deleted by its owner only", "[graphics][context]")
{
    HDC handle;
    {
        DeviceContext owner;
        handle = owner;
        CHECK(GetObjectType(handle) == OBJ_MEMDC);
        DeviceContext borrower(handle);
        borrower.close();
        CHECK(!borrower);
        CHECK(isAlive(handle));
    }
    CHECK_FALSE(isAlive(handle));
}

TEST_CASE("DeviceContext: the copy of a window's context is a memory context", "[graphics][context]")
{
    const TestWindow window = newWindow();
    const DeviceContext original(window.get(), false);
    const DeviceContext copy(original);
    CHECK(WindowFromDC(original) == window.get());
    CHECK(GetObjectType(original) == OBJ_DC);
    CHECK(GetObjectType(copy) == OBJ_MEMDC);
}

TEST_CASE("DeviceContext: of a window's client area, the whole window and the screen", "[graphics][context]")
{
    const TestWindow window = newWindow();
    Rect client, whole;
    GetClipBox(DeviceContext(window.get(), false), &client);
    GetClipBox(DeviceContext(window.get(), true), &whole);
    CHECK(client.getSize() == Size(58, 38));
    CHECK(whole.getSize() == Size(60, 40));
    DeviceContext screen(nullptr, false);
    CHECK(screen.getCapabilities(HORZRES) == GetSystemMetrics(SM_CXSCREEN));
    CHECK_NOTHROW(screen.close());
    expectWindowsError([] { DeviceContext(HWND(0x7FF0), false); }, ERROR_INVALID_WINDOW_HANDLE,
                       "Can't retrieve DC from window");
}

TEST_CASE("DeviceContext: a failing release is reported once, a vanished window's is not", "[graphics][context]")
{
    DeviceContext context;
    DeleteDC(context);
    const auto error = thrownBy<WindowsError>([&] { context.close(); });
    CHECK(std::string(error.getDescription()) == "Can't delete device context");
    CHECK_NOTHROW(context.close());
    TestWindow window = newWindow();
    DeviceContext ofWindow(window.get(), false);
    window.reset();
    CHECK_NOTHROW(ofWindow.close());
}

TEST_CASE("PaintDeviceContext: makes the window valid and ends painting", "[graphics][context]")
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
        const PaintDeviceContext copy(paint);
        CHECK(GetObjectType(copy) == OBJ_MEMDC);
        paint.close();
        CHECK(!paint);
    }
    CHECK_FALSE(GetUpdateRect(window.get(), nullptr, FALSE));
    CHECK(WindowFromDC(handle) != window.get());
    expectWindowsError([] { PaintDeviceContext(HWND(0x7FF0)); }, ERROR_INVALID_WINDOW_HANDLE, "Error in BeginPaint");
}

TEST_CASE("DeviceContext: a bad handle is reported by every member that can fail", "[graphics][context][failure]")
{
    DeviceContext dead{HDC(0x12345678)};
    const Rect rect(0, 0, 4, 4);
    TEXTMETRICA metrics;
    // `reported`: that the platform itself tells of the failure, which Wine's does not everywhere.
    const auto fails = [](const std::string& description, auto call, bool reported = true) {
        INFO(description);
        if (!reported)
            return;
        SetLastError(ERROR_FILE_NOT_FOUND);
        const auto error = thrownBy<WindowsError>(call);
        CHECK(std::string(error.getDescription()) == description);
        CHECK(error.getError() != ERROR_FILE_NOT_FOUND);
    };
    fails("Can't create compatible DC", [&] { DeviceContext copy(dead); });
    const bool fillReports = !FillRect(dead, &rect, GetSysColorBrush(COLOR_WINDOW));
    fails(
        "Can't fill rect with system colour", [&] { dead.fillRectangle(COLOR_WINDOW, rect); }, fillReports);
    fails(
        "Can't fill rect with system colour", [&] { dead.fillRectangle(Brush(red), rect); }, fillReports);
    fails("Can't set back colour", [&] { dead.fillRectangle(red, rect); });
    fails("Can't set back colour", [&] { dead.setBackgroundColour(red); });
    fails(
        "Can't set back colour", [&] { dead.getBackgroundColour(); }, GetBkColor(dead) == CLR_INVALID);
    fails("Can't set text colour", [&] { dead.setTextColour(red); });
    fails(
        "Can't set text colour", [&] { dead.getTextColour(); }, GetTextColor(dead) == CLR_INVALID);
    fails("Can't move drawing position", [&] { dead.moveTo(1, 1); });
    fails("Can't draw line", [&] { dead.lineTo(1, 1); });
    fails("Can't draw line", [&] { dead.drawRectangle3D(rect, true); });
    fails("Can't select pen", [&] { dead.select(Pen(red, PS_SOLID, 1)); });
    fails("Can't select brush", [&] { dead.select(Brush(red)); });
    fails("Can't select bitmap", [&] { dead.select(HBITMAP()); });
    fails("Can't select bitmap", [&] { dead.select(HFONT()); });
    fails("Can't select palette", [&] { dead.select(HPALETTE(), false); });
    fails(
        "Can't realize palette", [&] { dead.realizePalette(); }, RealizePalette(dead) == GDI_ERROR);
    fails("Can't blit bits", [&] { dead.blit(dead, 0, 0, 1, 1, 0, 0, SRCCOPY); });
    fails("Can't create compatible DC", [&] { dead.blitTransparent(HBITMAP(), 0, 0, 1, 1, 0, 0, red); });
    fails("Can't draw icon", [&] { dead.drawIcon(0, 0, LoadIconW(nullptr, IDI_APPLICATION)); });
    fails("Can't retrieve text metrics", [&] { dead.getTextMetrics(metrics); });
    fails("Can't retrieve text extent", [&] { dead.getTextExtent("text"); });
    fails(
        "Can't retrieve text alignment", [&] { dead.getTextAlign(); }, GetTextAlign(dead) == GDI_ERROR);
    fails("Can't set text alignment", [&] { dead.setTextAlign(TA_RIGHT); });
    fails("Can't draw text", [&] { dead.drawText(0, 0, "text"); });
    fails("Can't begin path", [&] { dead.beginPath(); });
    fails("Can't abort path", [&] { dead.abortPath(); });
    fails("Can't end path", [&] { dead.endPath(); });
    fails("Can't fill path", [&] { dead.fillPath(); });
    fails("Can't stroke and fill path", [&] { dead.strokeAndFillPath(); });
    fails("Can't stroke path", [&] { dead.strokePath(); });
    fails("Can't widen path", [&] { dead.widenPath(); });
    fails("Can't flatten path", [&] { dead.flattenPath(); });
    fails("Can't close figure", [&] { dead.closeFigure(); });
    fails(
        "Can't set ROP2", [&] { dead.setROP2(R2_COPYPEN); }, !SetROP2(dead, R2_COPYPEN));
    fails("Can't get ROP2", [&] { dead.getROP2(); });
    fails("Can't set viewport origin", [&] { dead.setViewportOrigin(0, 0); });
    CHECK(dead.getPixel(0, 0) == CLR_INVALID);
}
