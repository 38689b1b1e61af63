#pragma once

#include <tarn/Layout.h>
#include <tarn/Windows.h>

namespace tarn {
/// A width and a height, `cx` and `cy`: a `SIZE` that can be made in one expression, so it can be passed
/// wherever a `SIZE` (or, by its address, a `SIZE*`) is wanted.
struct Size : SIZE {
    constexpr Size() : SIZE{0, 0} {}
    /// Both lengths given, or copied. The default is (0, 0).
    ///@{
    constexpr Size(int width, int height) : SIZE{width, height} {}
    constexpr Size(const SIZE& size) : SIZE(size) {}
    ///@}
    /// The way from one point to the other, negative where `to` lies left of or above `from`.
    constexpr Size(const POINT& from, const POINT& to) : SIZE{to.x - from.x, to.y - from.y} {}
};

/// Also for a `SIZE` on one side.
constexpr bool operator==(const Size& a, const Size& b) { return a.cx == b.cx && a.cy == b.cy; }

TARN_LAYOUT(Size, 8, 8);
} // namespace tarn
