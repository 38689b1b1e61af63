#include <catch2/catch.hpp>

#include "Counts.h"

#include <tarn/Windows.h>

#include <memory>
#include <vector>

TEST_CASE("The counters of leaks notice what is left over", "[window][load]")
{
    const auto makeWindow = [] {
        return CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    };
    const HWND first = makeWindow(); // With it the thread gets some of the system's, as long as it lives.
    const unsigned drawing = support::drawingObjects(), user = support::userObjects();
    const HBRUSH brush = CreateSolidBrush(1);
    const HDC context = CreateCompatibleDC(nullptr);
    const HMENU menu = CreateMenu();
    const HWND window = makeWindow();
    CHECK(support::drawingObjects() >= drawing + 2); // A context may have objects of its own.
    CHECK(support::userObjects() == user + 2);
    DeleteObject(brush);
    DeleteDC(context);
    DestroyMenu(menu);
    DestroyWindow(window);
    CHECK(support::drawingObjects() == drawing);
    CHECK(support::userObjects() == user);
    DestroyWindow(first);

    std::vector<std::unique_ptr<int>> numbers(20000);
    const std::size_t bytes = support::usedBytes(), needed = numbers.size() * sizeof(int);
    for (auto& number : numbers)
        number = std::make_unique<int>();
    CHECK(support::usedBytes() >= bytes + needed);
    for (auto& number : numbers)
        number.reset();
    CHECK(support::usedBytes() < bytes + needed / 2);
}
