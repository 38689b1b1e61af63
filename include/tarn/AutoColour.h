#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
class DeviceContext;

/// What of a device context has a colour.
enum class ContextColour { text, background };

/// A colour of a device context is another one while this lives, and the former one again afterwards; see the names
/// below. End it before the context. Failures throw WindowsError "Can't set text colour" or "Can't set back colour",
/// also out of the destructor.
template <ContextColour which> class TARN_API AutoColour {
public:
    /// A DeviceContext fits; the colour is an RGB value.
    [[nodiscard]] AutoColour(HDC context, unsigned long colour);
    /// A temporary context would end first.
    AutoColour(DeviceContext&& context, unsigned long colour) = delete;
    AutoColour(const AutoColour&) = delete;
    AutoColour& operator=(const AutoColour&) = delete;
    ~AutoColour() noexcept(false);

private:
    HDC context_;
    unsigned long former_;
};

extern template class AutoColour<ContextColour::text>;
extern template class AutoColour<ContextColour::background>;

/// Of the text, and of what is behind it: `AutoTextColour red(context, RGB(255, 0, 0));`.
///@{
using AutoTextColour = AutoColour<ContextColour::text>;
using AutoBackgroundColour = AutoColour<ContextColour::background>;
///@}
} // namespace tarn
