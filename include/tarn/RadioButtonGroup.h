#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
class Window;

/// Radio buttons of which one is chosen. The group is what the Tab key treats as one: it begins with a
/// button and ends before the next sibling with the style `WS_GROUP`. Siblings between that are no radio
/// buttons do not count. Copies refer to the same buttons.
class TARN_API RadioButtonGroup {
public:
    RadioButtonGroup() = default;

    /// Throws "Can't retrieve radio button handle for group".
    void create(Window& parent, int firstId);
    /// The position of the checked button from 0; -1 for none.
    int getSelection() const;
    /// Checks that button and no other; a position that the group does not have checks none.
    void setSelection(int position) const;

private:
    HWND first_ = nullptr;
};
} // namespace tarn
