#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A bar that fills up while something goes on.
class TARN_API ProgressBar : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// 0 to 100 unless set.
    void setRange(int min, int max) const;
    /// The range that setRange() made.
    ///@{
    PBRANGE getRange() const;
    int getMin() const;
    int getMax() const;
    ///@}
    /// The position before. Beyond the range it is set to the nearer end.
    int setPos(int position) const;
    /// In the units of the range.
    int getPos() const;
    /// For work whose end is not known: with the style `PBS_MARQUEE` a piece of the bar moves on every so often.
    void setMarquee(bool moving, unsigned intervalMs = 30) const;
};
} // namespace tarn
