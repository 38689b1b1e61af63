#pragma once

#include <tarn/Export.h>
#include <tarn/OwnerDrawable.h>
#include <tarn/Window.h>

namespace tarn {
class Bitmap;

/// A push button, check box or radio button. One with the style `BS_OWNERDRAW` is drawn by onDrawItem().
class TARN_API Button : public Window, public OwnerDrawable {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// Of a dialog item, as Window has them.
    ///@{
    using Window::getCheck;
    using Window::setCheck;
    ///@}
    /// Of this button only: the other radio buttons of a group stay as they are (see RadioButtonGroup).
    ///@{
    void setCheck(check state) const;
    check getCheck() const;
    ///@}

    /// Shows a picture in place of the text; the button needs the style `BS_BITMAP`. Gives the picture before,
    /// null for none. The button owns neither: keep the new one as long as it is shown.
    Bitmap setImage(const Bitmap& image) const;
};
} // namespace tarn
