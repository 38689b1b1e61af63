#include <tarn/PaintDeviceContext.h>

#include "../foundation/Check.h"

#include <utility>

namespace tarn {
// The handle is only borrowed: ending to paint gives it back.
PaintDeviceContext::PaintDeviceContext(HWND window) : DeviceContext(HDC())
{
    borrow(ensure(BeginPaint(window, &paint_), "Error in BeginPaint"));
    window_ = window;
}
PaintDeviceContext::PaintDeviceContext(const PaintDeviceContext& other) : DeviceContext(other), paint_(other.paint_) {}
PaintDeviceContext::~PaintDeviceContext() noexcept(false) { close(); }

void PaintDeviceContext::close()
{
    const HWND window = std::exchange(window_, nullptr);
    const bool ended = !window || EndPaint(window, &paint_);
    DeviceContext::close(); // While painting this makes no call, so the last error stays that of EndPaint.
    ensure(ended, "Error in EndPaint");
}
} // namespace tarn
