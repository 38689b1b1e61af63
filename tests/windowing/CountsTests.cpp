#include <catch2/catch.hpp>

#include "Counts.h"

#include <tarn/Windows.h>

#include <vector>

TEST_CASE("The counters of leaks notice what is left over", "[window][load]")
{
    const unsigned objects = support::drawingObjects();
    const HBRUSH brush = CreateSolidBrush(1);
    CHECK(support::drawingObjects() == objects + 1);
    DeleteObject(brush);
    CHECK(support::drawingObjects() == objects);

    const auto makeWindow = [] {
        return CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    };
    const HWND first = makeWindow(); // With it the thread gets some of the system's, as long as it lives.
    const unsigned before = support::userObjects();
    const HMENU menu = CreateMenu();
    const HWND window = makeWindow();
    CHECK(support::userObjects() == before + 2);
    DestroyWindow(window);
    DestroyMenu(menu);
    CHECK(support::userObjects() == before);
    DestroyWindow(first);

    constexpr int count = 20000;
    std::vector<int*> numbers;
    numbers.reserve(count);
    const auto makeNumbers = [&] {
        for (int i = 0; i < count; ++i)
            numbers.push_back(new int(i));
    };
    const auto dropNumbers = [&] {
        for (const int* number : numbers)
            delete number;
        numbers.clear();
    };
    makeNumbers();
    dropNumbers();
    const std::size_t bytes = support::usedBytes();
    makeNumbers();
    CHECK(support::usedBytes() >= bytes + count * sizeof(int));
    dropNumbers();
    CHECK(support::usedBytes() < bytes + count * sizeof(int) / 10);
}
