#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A row of buttons at the top of a window. A button sends its command to the parent's onCommand(), as a menu does.
///
/// Buttons are known by the ids of their commands. Texts are copied. Failures throw WindowsError.
class TARN_API ToolBar : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// At the top of `parent`, visible; otherwise as ListView::create(). With `TBSTYLE_LIST` the texts stand beside the
    /// pictures, with `TBSTYLE_TOOLTIPS` the parent is asked for tips (`TTN_GETDISPINFO`).
    void create(HWND parent, unsigned short id, unsigned long style = TBSTYLE_FLAT);
    /// Lies at the top again, as high as its buttons need: call it in the parent's onSize(), and after adding buttons.
    void adjust() const;

    /// Gives the list before. The control destroys neither: keep an ImageList as long as it is shown.
    HIMAGELIST setImageList(HIMAGELIST list) const;
    /// The system's pictures, small (16 pixels) or large (24): `image` is one of `STD_FILENEW`, `STD_CUT` and so on.
    void useStandardImages(bool large) const;

    /// At the end; `image` counts in the list of pictures, and `style` is made of `BTNS_...`. Throws "Can't add tool
    /// bar button".
    ///@{
    void addButton(unsigned short id, const char* text, int image = I_IMAGENONE, int style = BTNS_AUTOSIZE) const;
    void addButton(unsigned short id, const wchar_t* text, int image = I_IMAGENONE, int style = BTNS_AUTOSIZE) const;
    void addSeparator() const;
    ///@}
    /// With its separators.
    int getButtonCount() const;
    /// By its place from 0 on. Throws "Can't delete tool bar button".
    void deleteButton(unsigned index) const;
    /// Throws "Can't get tool bar button".
    ///@{
    BasicString<char> getButtonTextA(unsigned short id) const;
    BasicString<wchar_t> getButtonTextW(unsigned short id) const;
    ///@}

    /// Whether the user can press it. Throws "Can't change tool bar button".
    void enableButton(unsigned short id, bool enable) const;
    /// False for one that does not exist, too.
    bool isButtonEnabled(unsigned short id) const;
    /// Of a button with the style `BTNS_CHECK`. Throws "Can't change tool bar button".
    void setButtonChecked(unsigned short id, bool isOn) const;
    /// False for one that does not exist, too.
    bool isButtonChecked(unsigned short id) const;
};
} // namespace tarn
