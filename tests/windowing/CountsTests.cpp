#include "Test.h"

TEST_CASE("The counters of leaks notice what is left over")
{
    const unsigned drawing = drawingObjects(), user = userObjects();
    const HBRUSH brush = CreateSolidBrush(1);
    const HMENU menu = CreateMenu();
    CHECK((drawingObjects() == drawing + 1 && userObjects() == user + 1));
    DeleteObject(brush);
    DestroyMenu(menu);
    CHECK((drawingObjects() == drawing && userObjects() == user));

    const std::size_t bytes = usedBytes();
    auto block = std::make_unique<char[]>(100000);
    CHECK(usedBytes() >= bytes + 100000);
    block.reset();
    CHECK(usedBytes() < bytes + 50000);
}
