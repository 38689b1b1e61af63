#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
class DeviceContext;

/// Keeps drawing inside of a rectangle or region while it lives, and inside of what it was kept in before; afterwards
/// that alone counts again, also when an exception ends the block: `AutoClip inside(context, rectangle);`.
///
/// End it before the context. Of several the last one made is the first to end. Failures throw WindowsError, "Can't
/// clip drawing", also out of the destructor.
class TARN_API AutoClip {
public:
    /// The rectangle is in logical coordinates.
    [[nodiscard]] AutoClip(HDC context, const RECT& rectangle);
    /// The region (`CreateEllipticRgn` and others make one) is in pixels, and stays the caller's.
    [[nodiscard]] AutoClip(HDC context, HRGN region);
    /// A temporary context would end first.
    ///@{
    AutoClip(DeviceContext&& context, const RECT& rectangle) = delete;
    AutoClip(DeviceContext&& context, HRGN region) = delete;
    ///@}
    AutoClip(const AutoClip&) = delete;
    AutoClip& operator=(const AutoClip&) = delete;
    ~AutoClip() noexcept(false);

private:
    explicit AutoClip(HDC context);

    HDC context_;
    HRGN former_ = nullptr; // None for a context without clipping.
};
} // namespace tarn
