#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
/// A window is not redrawn while this lives, and once, with its children, afterwards: put it round the filling of a
/// long list or tree, which is many times faster then. Guards of one window may be nested. A hidden window is left
/// alone.
class TARN_API AutoRedraw {
public:
    /// A Window fits. Throws what its handlers throw.
    [[nodiscard]] explicit AutoRedraw(HWND window);
    AutoRedraw(const AutoRedraw&) = delete;
    AutoRedraw& operator=(const AutoRedraw&) = delete;
    /// Throws what the window's handlers throw.
    ~AutoRedraw() noexcept(false);

private:
    HWND window_;
};
} // namespace tarn
