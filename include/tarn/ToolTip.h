#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// The small texts that appear when the mouse rests on a control or a part of a window: one object for all controls of
/// a window. Texts are copied; line breaks in them count after setMaxWidth(). Failures throw WindowsError.
class TARN_API ToolTip : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// A window that `owner` owns and the object destroys; `style` may have `TTS_BALLOON` and other `TTS_...`. Throws
    /// as Window::create() does.
    void create(HWND owner, unsigned long style = TTS_ALWAYSTIP);

    /// Shows the text over a control, or any window. Throws "Can't add tool tip".
    ///@{
    void add(HWND target, const char* text) const;
    void add(HWND target, const wchar_t* text) const;
    ///@}
    /// Shows the text over a part of a window, in client coordinates; `id` tells the window's parts apart. Throws the
    /// same.
    ///@{
    void add(HWND window, UINT_PTR id, const RECT& part, const char* text) const;
    void add(HWND window, UINT_PTR id, const RECT& part, const wchar_t* text) const;
    ///@}
    /// Of a control that was added. Does nothing for another.
    ///@{
    void setTipText(HWND target, const char* text) const;
    void setTipText(HWND target, const wchar_t* text) const;
    ///@}
    /// No text over this control any more.
    void remove(HWND target) const;
    /// No text over this part any more.
    void remove(HWND window, UINT_PTR id) const;
    /// How many controls and parts have a text.
    int getCount() const;

    /// In pixels: longer texts get several lines. -1 for one line, as it is unless set.
    void setMaxWidth(int width) const;
    /// How long a text stays, and after how long it appears; -1 for the system's time.
    void setTimes(int shownMs, int initialMs = -1) const;
    /// Whether texts appear at all.
    void activate(bool active) const;
};
} // namespace tarn
