#pragma once

#include <tarn/Layout.h>
#include <tarn/Point.h>
#include <tarn/Size.h>
#include <tarn/Windows.h>

namespace tarn {
/// A rectangle whose right and bottom edges lie just outside: a `RECT` that answers questions, so it can be
/// passed wherever a `RECT` (or, by its address, a `RECT*`) is wanted. Nothing is normalised: with the edges
/// swapped, width and height are negative and no point is inside.
struct Rect : RECT {
    constexpr Rect() : RECT{0, 0, 0, 0} {}
    /// From the four edges, from a corner and a size, from two corners, or copied. The default has all edges at 0.
    ///@{
    constexpr Rect(long leftEdge, long topEdge, long rightEdge, long bottomEdge)
        : RECT{leftEdge, topEdge, rightEdge, bottomEdge}
    {
    }
    constexpr Rect(const POINT& topLeft, const SIZE& size)
        : RECT{topLeft.x, topLeft.y, topLeft.x + size.cx, topLeft.y + size.cy}
    {
    }
    constexpr Rect(const POINT& topLeft, const POINT& bottomRight)
        : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y}
    {
    }
    constexpr Rect(const RECT& rect) : RECT(rect) {}
    ///@}

    /// A point on the right or bottom edge is outside.
    constexpr bool contains(const POINT& point) const
    {
        return left <= point.x && point.x < right && top <= point.y && point.y < bottom;
    }

    /// Negative when the edges are swapped.
    ///@{
    constexpr long getWidth() const { return right - left; }
    constexpr long getHeight() const { return bottom - top; }
    constexpr Size getSize() const { return Size(getTopLeft(), getBottomRight()); }
    ///@}

    /// The corners; those on the right and the bottom lie just outside. getPosition() is the one at the top left.
    ///@{
    constexpr Point getTopLeft() const { return Point(left, top); }
    constexpr Point getPosition() const { return getTopLeft(); }
    constexpr Point getTopRight() const { return Point(right, top); }
    constexpr Point getBottomLeft() const { return Point(left, bottom); }
    constexpr Point getBottomRight() const { return Point(right, bottom); }
    ///@}
    /// Halves are rounded toward zero, so the centre of (-3, -3, 0, 0) is (-1, -1).
    constexpr Point getCenter() const { return Point(middle(left, right), middle(top, bottom)); }

    /// The rectangle shifted by `offset`; this one stays where it is.
    constexpr Rect move(const POINT& offset) const
    {
        return Rect(left + offset.x, top + offset.y, right + offset.x, bottom + offset.y);
    }

private:
    // In 64 bits, because the sum of two far coordinates need not fit.
    static constexpr long middle(long a, long b) { return static_cast<long>((static_cast<long long>(a) + b) / 2); }
};

/// Also for a `RECT` on one side.
constexpr bool operator==(const Rect& a, const Rect& b)
{
    return a.getTopLeft() == b.getTopLeft() && a.getBottomRight() == b.getBottomRight();
}

TARN_LAYOUT(Rect, 16, 16);
} // namespace tarn
