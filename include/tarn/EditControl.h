#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A text field of one or several lines. Its text is that of the window: getTextW(), setText().
class TARN_API EditControl : public Window {
public:
    using Window::Window;

    void setReadonly(bool readonly) const; ///< Throws "Can't set ES_READONLY style".
    /// The style `ES_READONLY`.
    bool getReadonly() const;

    /// Selects the characters from `start` up to, not including, `end`; an `end` of -1 is the text's.
    void setSelection(int start, int end) const;
    /// As setSelection(0, -1).
    void selectAll() const;
    void clearSelection() const; ///< Selects nothing; the text stays.
};
} // namespace tarn
