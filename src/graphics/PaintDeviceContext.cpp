#include <tarn/PaintDeviceContext.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../windowing/HandlerScope.h"

#include <utility>

namespace tarn {
// The handle is only borrowed: ending to paint gives it back.
PaintDeviceContext::PaintDeviceContext(HWND window) : DeviceContext(HDC())
{
    HandlerScope scope; // The background is erased meanwhile.
    const HDC context = BeginPaint(window, &paint_);
    if (context && scope.hasKept())
        EndPaint(window, &paint_);
    scope.rethrow();
    borrow(ensure(context, "Error in BeginPaint"));
    window_ = window;
}
PaintDeviceContext::PaintDeviceContext(const PaintDeviceContext& other) : DeviceContext(other), paint_(other.paint_) {}
PaintDeviceContext::PaintDeviceContext(PaintDeviceContext&& other) noexcept
    : DeviceContext(std::move(other)), paint_(other.paint_), window_(std::exchange(other.window_, nullptr))
{
}
PaintDeviceContext& PaintDeviceContext::operator=(PaintDeviceContext&& other) noexcept
{
    PaintDeviceContext taken(std::move(other)); // First, because it may be this object.
    closeQuietly([this] { close(); });
    DeviceContext::operator=(static_cast<DeviceContext&&>(taken));
    paint_ = taken.paint_;
    window_ = std::exchange(taken.window_, nullptr);
    return *this;
}
PaintDeviceContext::~PaintDeviceContext() noexcept(false)
{
    closeAtEnd([this] { close(); });
}

void PaintDeviceContext::close()
{
    const HWND window = std::exchange(window_, nullptr);
    HandlerScope scope;
    const bool ended = !window || EndPaint(window, &paint_);
    DeviceContext::close(); // While painting this makes no call, so the last error stays that of EndPaint.
    scope.rethrow();
    ensure(ended, "Error in EndPaint");
}
} // namespace tarn
