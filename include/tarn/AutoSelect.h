#pragma once

#include <tarn/Bitmap.h>
#include <tarn/Brush.h>
#include <tarn/Export.h>
#include <tarn/Font.h>
#include <tarn/Pen.h>
#include <tarn/Windows.h>

namespace tarn {
class DeviceContext;

/// A Pen, Brush, Font or Bitmap is selected into a device context while this lives, and the one used before is again
/// afterwards, also when an exception ends the block: `AutoSelect use(context, pen);`.
///
/// An object of the program's has to live longer than this; a temporary one, `AutoSelect use(context, Pen(colour,
/// PS_SOLID, 1));`, is taken over and deleted at the end. End it before the context. Of several the last one made is
/// the first to end. Failures throw WindowsError as DeviceContext::select() does, also out of the destructor.
template <class Object> class TARN_API AutoSelect {
public:
    /// A DeviceContext fits.
    ///@{
    [[nodiscard]] AutoSelect(HDC context, const Object& object);
    [[nodiscard]] AutoSelect(HDC context, Object&& object);
    ///@}
    /// A temporary context would end first.
    ///@{
    AutoSelect(DeviceContext&& context, const Object& object) = delete;
    AutoSelect(DeviceContext&& context, Object&& object) = delete;
    ///@}
    AutoSelect(const AutoSelect&) = delete;
    AutoSelect& operator=(const AutoSelect&) = delete;
    ~AutoSelect() noexcept(false);

private:
    HDC context_;
    Object object_; // Released last.
    Object former_;
};

extern template class AutoSelect<Pen>;
extern template class AutoSelect<Brush>;
extern template class AutoSelect<Font>;
extern template class AutoSelect<Bitmap>;
} // namespace tarn
