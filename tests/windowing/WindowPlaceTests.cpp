#include "Windows.h"

#include <tarn/WindowPlace.h>

namespace {
struct EmptyStore : SettingsStore {
    Values load() const override { return {}; }
    void save(const Values&) override {}
};

struct Places {
    Places(long long left, long long top, long long width, long long height)
    {
        settings.setNumber(L"Window.Left", left);
        settings.setNumber(L"Window.Top", top);
        settings.setNumber(L"Window.Width", width);
        settings.setNumber(L"Window.Height", height);
    }
    Settings settings{std::make_unique<EmptyStore>()};
    WindowPlace place{settings};
};

Rect screen() { return Rect(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)); }
} // namespace

TEST_CASE("WindowPlace: a window begins where the one before it was kept, also minimised")
{
    Places places(0, 0, 0, 0);
    OpenWindow first;
    places.place.show(first);
    CHECK((first.getWindowRectangle() == Rect(10, 20, 210, 120) && IsWindowVisible(first))); // As it was created.
    first.move(Rect(40, 50, 340, 250), false);
    const int state = GENERATE(SW_SHOWNORMAL, SW_SHOWMAXIMIZED, SW_SHOWMINIMIZED);
    first.show(static_cast<unsigned>(state));
    places.place.keep(first);

    OpenWindow second;
    places.place.show(second);
    CHECK(
        ((IsZoomed(second) != FALSE) == (state == SW_SHOWMAXIMIZED) && !second.isIconic() && IsWindowVisible(second)));
    second.show(SW_RESTORE);
    CHECK(second.getWindowRectangle() == Rect(40, 50, 340, 250));
    second.show(SW_SHOWMAXIMIZED);
    second.show(SW_SHOWMINIMIZED);
    places.place.keep(second);
    OpenWindow third;
    places.place.show(third, SW_SHOWMINNOACTIVE);
    CHECK(third.isIconic());
    third.show(SW_RESTORE);
    CHECK(IsZoomed(third));
}

TEST_CASE("WindowPlace: a window of a screen that is gone comes to one that is there")
{
    const auto& [left, top, width, height] = GENERATE_COPY(table<long, long, long, long>({
        {screen().right + 500, 10, 300, 200},
        {-900, -700, 300, 200},
        {50, -100, 300, 200}, // Its title is above the screen.
        {0, screen().bottom + 9, 5000, 5000},
    }));
    const Places places(left, top, width, height);
    OpenWindow window;
    places.place.show(window, SW_SHOWNOACTIVATE);
    const Rect rect = window.getWindowRectangle(), all = screen();
    CHECK((rect.left >= 0 && rect.top >= 0 && rect.right <= all.right && rect.bottom <= all.bottom));
    CHECK((rect.getWidth() == std::min(width, all.right) && rect.getHeight() == std::min(height, all.bottom)));
}

TEST_CASE("WindowPlace: partly outside is where the user put it, and with other dots the size is the same for the eye")
{
    Places places(-50, 30, 300, 200);
    OpenWindow window;
    places.place.show(window, SW_SHOWNOACTIVATE);
    CHECK(window.getWindowRectangle() == Rect(-50, 30, 250, 230));
    places.settings.setNumber(L"Window.Dots", 2 * window.getDPI().getDots());
    places.place.show(window, SW_SHOWNOACTIVATE);
    CHECK(window.getWindowRectangle() == Rect(-50, 30, 100, 130));
}

TEST_CASE("WindowPlace: failures are named, and what a handler throws comes out")
{
    struct Thrower : Window {
        void onSize(UINT, const Size&) override { throw std::runtime_error("in a handler"); }
    } window;
    const Places places(10, 20, 300, 200);
    expectWindowsError([&] { places.place.keep(nullptr); }, "Can't get window placement");
    expectWindowsError([&] { places.place.show(nullptr); }, "Can't set window placement");
    open(window);
    expectError<std::runtime_error>([&] { places.place.show(window); }, "in a handler");
}
