#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A tree view, attached to or subclassing the control.
class TARN_API TreeView : public Window {
public:
    using Window::Window;

    /// A notification of this control, before its parent's handlers: true settles it.
    virtual bool onReflectedNotification(const NMTREEVIEWA& notification);
    /// The wide form is asked first.
    virtual bool onReflectedNotification(const NMTREEVIEWW& notification);
};
} // namespace tarn
