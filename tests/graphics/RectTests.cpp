#include "Test.h"

#include <tarn/Point.h>
#include <tarn/Rect.h>
#include <tarn/Size.h>

#include <climits>

TEST_CASE("Rect: the right and the bottom edge are outside")
{
    const Rect rect(0, 0, 10, 10);
    CHECK((rect.contains({0, 0}) && rect.contains({9, 9})));
    for (const Point outside : {Point(10, 5), Point(5, 10), Point(-1, 5), Point(5, -1)})
        CHECK_FALSE(rect.contains(outside));
    CHECK_FALSE(Rect(10, 10, 0, 0).contains({5, 5}));
}

TEST_CASE("Rect: corners, extent and shifting")
{
    const Rect rect(Point(1, 2), Size(10, 20));
    CHECK(rect == Rect(Point(1, 2), Point(11, 22)));
    CHECK((rect.getWidth() == 10 && rect.getHeight() == 20 && rect.getSize() == Size(10, 20)));
    CHECK((rect.getPosition() == Point(1, 2) && rect.getBottomRight() == Point(11, 22)));
    CHECK((rect.getTopRight() == Point(11, 2) && rect.getBottomLeft() == Point(1, 22)));
    CHECK(rect.move({-3, 4}) == Rect(-2, 6, 8, 26));
    CHECK(rect == Rect(1, 2, 11, 22));
    CHECK(Size({5, 5}, {3, 9}) == Size(-2, 4));
}

TEST_CASE("Rect: the centre is rounded toward zero and never overflows")
{
    CHECK(Rect(-3, -3, 0, 0).getCenter() == Point(-1, -1));
    CHECK(Rect(0, 1, 3, 4).getCenter() == Point(1, 2));
    CHECK(Rect(LONG_MAX - 2, LONG_MIN, LONG_MAX, LONG_MIN + 2).getCenter() == Point(LONG_MAX - 1, LONG_MIN + 1));
}
