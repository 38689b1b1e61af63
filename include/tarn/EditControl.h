#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

#include <utility>

namespace tarn {
/// A text field of one or several lines. Its text is that of the window: getTextW(), setText().
class TARN_API EditControl : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// Throws "Can't set ES_READONLY style".
    void setReadonly(bool readonly) const;
    /// The style `ES_READONLY`.
    bool getReadonly() const;

    /// Selects the characters from `start` up to, not including, `end`; an `end` of -1 is the text's.
    void setSelection(int start, int end) const;
    /// As setSelection(0, -1).
    void selectAll() const;
    /// Selects nothing; the text stays.
    void clearSelection() const;
    /// The first character selected, and the one behind the last; both are the place of the caret when none is.
    std::pair<int, int> getSelection() const;
    /// Puts a text in the place of what is selected; with `undoable` the user can take it back.
    ///@{
    void replaceSelection(const char* text, bool undoable = true) const;
    void replaceSelection(const wchar_t* text, bool undoable = true) const;
    ///@}
    /// How many characters the user can enter, 0 for as many as the control takes. Text set by the program may be
    /// longer.
    ///@{
    void setLimit(unsigned characters) const;
    unsigned getLimit() const;
    ///@}
    /// Lets the user enter digits only. Throws as setStyle() does.
    void setNumbersOnly(bool numbersOnly) const;
    /// A grey text that an empty field of one line shows, also, with `whenFocused`, while the user is in it. It needs
    /// the newer controls, for which a program asks in its manifest. Throws "Can't set hint".
    void setHint(const wchar_t* text, bool whenFocused = false) const;
};
} // namespace tarn
