#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A text beside other controls, which the user cannot change, or, by its style (`SS_...`), a line or a frame. A `&` in
/// its text marks the key that leads to the control that is made next.
class TARN_API Label : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id, with a text.
    ///@{
    void create(HWND parent, unsigned short id, const RECT& rect, const char* text, unsigned long style = WS_VISIBLE);
    void create(HWND parent, unsigned short id, const RECT& rect, const wchar_t* text,
                unsigned long style = WS_VISIBLE);
    ///@}
};
} // namespace tarn
