#include "Test.h"

TEST_CASE("The counters of leaks notice what is left over")
{
    const auto makeWindow = [] {
        return CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    };
    const HWND first = makeWindow(); // With it the thread gets some of the system's, as long as it lives.
    const unsigned drawing = drawingObjects(), user = userObjects();
    const HBRUSH brush = CreateSolidBrush(1);
    const HDC context = CreateCompatibleDC(nullptr);
    const HMENU menu = CreateMenu();
    const HWND window = makeWindow();
    CHECK(drawingObjects() >= drawing + 2); // A context may have objects of its own.
    CHECK(userObjects() == user + 2);
    DeleteObject(brush);
    DeleteDC(context);
    DestroyMenu(menu);
    DestroyWindow(window);
    CHECK(drawingObjects() == drawing);
    CHECK(userObjects() == user);
    DestroyWindow(first);

    std::vector<std::unique_ptr<int>> numbers(20000);
    const std::size_t bytes = usedBytes(), needed = numbers.size() * sizeof(int);
    for (auto& number : numbers)
        number = std::make_unique<int>();
    CHECK(usedBytes() >= bytes + needed);
    for (auto& number : numbers)
        number.reset();
    CHECK(usedBytes() < bytes + needed / 2);
}
