#pragma once

#include <tarn/Layout.h>
#include <tarn/Windows.h>

namespace tarn {
/// A position in pixels or logical units: a `POINT` that can be made in one expression, so it can be passed
/// wherever a `POINT` (or, by its address, a `POINT*`) is wanted.
struct Point : POINT {
    constexpr Point() : POINT{0, 0} {}
    /// Both coordinates given, or copied. The default is (0, 0).
    ///@{
    constexpr Point(long left, long top) : POINT{left, top} {}
    constexpr Point(const POINT& point) : POINT(point) {}
    ///@}
};

/// Also for a `POINT` on one side.
constexpr bool operator==(const Point& a, const Point& b) { return a.x == b.x && a.y == b.y; }

TARN_LAYOUT(Point, 8, 8);
} // namespace tarn
