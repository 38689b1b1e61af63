#pragma once

#include <tarn/Bitmap.h>
#include <tarn/DeviceContext.h>
#include <tarn/Export.h>
#include <tarn/PaintDeviceContext.h>
#include <tarn/Windows.h>

namespace tarn {
/// A PaintDeviceContext that collects what is drawn, and shows it at its end all at once, so that nothing flickers:
///
///     struct Scope : Window {
///         void onPaint() override
///         {
///             BufferedPaint context(*this);
///             context.fillRectangle(COLOR_WINDOW, context.getUpdateRectangle());
///             context.drawEllipse(Rect(10, 10, 90, 90));
///         }
///     };
///
/// Coordinates are those of the window. The buffer is black at first, so fill it; give the window's class no background
/// brush, or the system still fills the window before. An exception that ends the block shows nothing. Failures throw
/// WindowsError, also out of the destructor.
class TARN_API BufferedPaint : public DeviceContext {
public:
    /// Throws "Error in BeginPaint", "Can't create compatible DC", "Can't create compatible bitmap".
    explicit BufferedPaint(HWND window);
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;
    ~BufferedPaint() noexcept(false);

    /// Shows what was drawn and ends painting. Becomes null in any case. Throws "Can't blit bits", "Error in EndPaint".
    void close();
    /// Nothing else could end the painting.
    HDC detach() = delete;

    /// The part of the window that has to be drawn, which alone is shown.
    Rect getUpdateRectangle() const { return paint_.getUpdateRectangle(); }

private:
    void end();

    PaintDeviceContext paint_;
    Bitmap buffer_;
    Bitmap former_;
};
} // namespace tarn
