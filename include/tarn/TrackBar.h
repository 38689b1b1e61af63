#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

#include <vector>

namespace tarn {
/// A slider. It tells its parent of every move through onHScroll() or onVScroll().
///
/// Positions, ticks and the selection (with the style `TBS_ENABLESELRANGE`) count in the units of the range,
/// 0 to 100 unless set.
class TARN_API TrackBar : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// In the units of the range.
    int getPosition() const;
    /// Beyond the range it is set to the nearer end.
    void setPosition(int position, bool redraw) const;
    /// Both ends, or one of them; the position is moved into the new range. `redraw` draws the bar anew.
    ///@{
    void setRange(short min, short max, bool redraw) const;
    void setRangeMin(int min, bool redraw) const;
    void setRangeMax(int max, bool redraw) const;
    ///@}

    /// The selection's two ends; `redraw` draws the bar anew.
    ///@{
    void setSelection(short start, short end, bool redraw) const;
    void setSelectionStart(int start, bool redraw) const;
    void setSelectionEnd(int end, bool redraw) const;
    int getSelectionStart() const;
    int getSelectionEnd() const;
    void clearSelection(bool redraw) const;
    ///@}

    /// All but those at the two ends.
    void clearTicks(bool redraw) const;
    /// False when the position is not between the two ends.
    bool addTick(int position) const;
    /// With those at the two ends; 0 with the style `TBS_NOTICKS`.
    int getTickCount() const;
    /// The tick `index` from 0, not counting the one at the beginning; -1 when there is none.
    int getTick(unsigned index) const;
    /// The same as a client coordinate along the bar.
    int getTickPosition(unsigned index) const;
    /// All ticks between the two ends.
    std::vector<int> getTicks() const;
    /// Whether the bar shows any: it lacks the style `TBS_NOTICKS`.
    bool hasTicks() const;
};
} // namespace tarn
