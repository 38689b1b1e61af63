#pragma once

#include <tarn/DeviceContext.h>
#include <tarn/Export.h>
#include <tarn/Rect.h>
#include <tarn/Windows.h>

namespace tarn {
/// What a window draws on while it handles `WM_PAINT`, and only then: begins painting when constructed,
/// which makes the window's invalid area valid, and ends it on destruction. Elsewhere draw on a
/// DeviceContext of the window.
class TARN_API PaintDeviceContext : public DeviceContext {
public:
    /// Throws "Error in BeginPaint".
    PaintDeviceContext(HWND window);
    /// Not for use while painting: as of any context the copy is a memory context. It ends no painting.
    PaintDeviceContext(const PaintDeviceContext& other);
    /// Takes over what the other one has, which then ends no painting any more.
    PaintDeviceContext(PaintDeviceContext&& other) noexcept;
    PaintDeviceContext& operator=(const PaintDeviceContext&) = delete;
    /// The same; a painting of its own is ended before, but a failure of that is told to the debugger only.
    PaintDeviceContext& operator=(PaintDeviceContext&& other) noexcept;
    ~PaintDeviceContext() noexcept(false);

    /// Ends painting. Becomes null in any case. Throws "Error in EndPaint".
    void close();
    /// Nothing else could end the painting.
    HDC detach() = delete;

    /// As `BeginPaint` filled it in.
    const PAINTSTRUCT& getPaintStruct() const noexcept { return paint_; }
    /// The part of the window that has to be drawn; drawing is clipped to it.
    Rect getUpdateRectangle() const { return paint_.rcPaint; }

private:
    PAINTSTRUCT paint_ = {};
    HWND window_ = nullptr;
};
} // namespace tarn
