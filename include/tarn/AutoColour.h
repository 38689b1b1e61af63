#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
class DeviceContext;

/// Text is drawn in an RGB colour while this lives, and in the former colour again afterwards. End it before the
/// context. Failures throw WindowsError "Can't set text colour", also out of the destructor.
class TARN_API AutoTextColour {
public:
    /// A DeviceContext fits.
    [[nodiscard]] AutoTextColour(HDC context, unsigned long colour);
    /// A temporary context would end first.
    AutoTextColour(DeviceContext&& context, unsigned long colour) = delete;
    AutoTextColour(const AutoTextColour&) = delete;
    AutoTextColour& operator=(const AutoTextColour&) = delete;
    ~AutoTextColour() noexcept(false);

private:
    HDC context_;
    unsigned long former_;
};

/// The same for the colour behind text. Failures throw WindowsError "Can't set back colour", also out of the
/// destructor.
class TARN_API AutoBackgroundColour {
public:
    /// A DeviceContext fits.
    [[nodiscard]] AutoBackgroundColour(HDC context, unsigned long colour);
    /// A temporary context would end first.
    AutoBackgroundColour(DeviceContext&& context, unsigned long colour) = delete;
    AutoBackgroundColour(const AutoBackgroundColour&) = delete;
    AutoBackgroundColour& operator=(const AutoBackgroundColour&) = delete;
    ~AutoBackgroundColour() noexcept(false);

private:
    HDC context_;
    unsigned long former_;
};
} // namespace tarn
