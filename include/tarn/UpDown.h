#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

#include <utility>

namespace tarn {
/// Two arrows that change a number, mostly that of a text field beside them, the buddy. It asks its parent with
/// `UDN_DELTAPOS`, and tells it through onVScroll() or, with the style `UDS_HORZ`, onHScroll(). The styles
/// `UDS_SETBUDDYINT`, `UDS_ALIGNRIGHT` and `UDS_ARROWKEYS` are those for a number in a field.
class TARN_API UpDown : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// With an alignment as its style the control takes its place from the buddy. Gives the buddy before.
    HWND setBuddy(HWND buddy) const;
    /// Null for none.
    HWND getBuddy() const;
    /// 100 down to 0 unless set: with a `min` that is larger the upper arrow counts down.
    void setRange(int min, int max) const;
    /// Its `min` and `max`.
    std::pair<int, int> getRange() const;
    /// Beyond the range it is set to the nearer end. Gives the position before.
    int setPosition(int position) const;
    /// The buddy's number with `UDS_SETBUDDYINT`. Throws "Can't get position of up-down control" when it has none.
    int getPosition() const;
};
} // namespace tarn
