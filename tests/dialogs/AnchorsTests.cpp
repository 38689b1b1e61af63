#include "../controls/Controls.h"

#include <tarn/Anchors.h>

namespace {
/// A window of 200 by 100 with one control, and its anchors.
struct Anchored : Host {
    Anchored(unsigned edges, const RECT& rect)
    {
        resize(200, 100);
        makeChild(*this, L"STATIC", id, 0);
        MoveWindow(child(), rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, FALSE);
        anchors.add(id, edges);
        anchors.begin(*this);
    }
    HWND child() const { return GetDlgItem(*this, id); }
    void resize(int cx, int cy) const
    {
        RECT rect{0, 0, cx, cy};
        AdjustWindowRectEx(&rect, static_cast<DWORD>(GetWindowLongW(*this, GWL_STYLE)), FALSE, 0);
        SetWindowPos(*this, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top, SWP_NOMOVE);
    }
    Rect place() const
    {
        Rect rect = Window(child()).getWindowRectangle();
        MapWindowPoints(nullptr, *this, reinterpret_cast<POINT*>(static_cast<RECT*>(&rect)), 2);
        return rect;
    }
    // What a window does that comes to a screen of twice the resolution.
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == WM_SIZE && endsAtSize)
            anchors.end();
        if (msg != WM_DPICHANGED)
            return Host::onMessage(msg, wParam, lParam);
        const Size size = getWindowSize();
        MoveWindow(child(), 80, 40, 40, 40, FALSE);
        SetWindowPos(*this, nullptr, 0, 0, 2 * size.cx, 2 * size.cy, SWP_NOMOVE);
        return 0;
    }
    Anchors anchors;
    bool endsAtSize = false;
};
} // namespace

TEST_CASE("Anchors: a control keeps its distance to the edges that it has")
{
    const auto& [edges, expected] = GENERATE(table<unsigned, Rect>({
        {Anchors::left | Anchors::top, {40, 20, 60, 40}},
        {Anchors::right | Anchors::bottom, {140, 70, 160, 90}},
        {Anchors::all, {40, 20, 160, 90}},
        {0, {65, 35, 85, 55}}, // A quarter of the way across and three tenths down, as before.
    }));
    const Anchored window(edges, {40, 20, 60, 40});
    window.resize(300, 150);
    CHECK(window.place() == expected);
    window.resize(30, 10); // Too small for it.
    window.resize(200, 100);
    CHECK(window.place() == Rect(40, 20, 60, 40));
    MoveWindow(window.child(), 1, 2, 3, 4, FALSE);
    window.sendMessageA(WM_SIZE, SIZE_MINIMIZED);
    CHECK(window.place() == Rect(1, 2, 4, 6)); // Nobody sees it.
}

TEST_CASE("Anchors: a combo box keeps the height of its list, which has no say in its place")
{
    Host window;
    const Window combo(Host::makeChild(window, L"COMBOBOX", Host::id, CBS_DROPDOWNLIST | CBS_NOINTEGRALHEIGHT));
    Anchors anchors;
    const unsigned vertical = GENERATE(0u, unsigned(Anchors::bottom));
    anchors.add(Host::id, Anchors::left | Anchors::right | vertical);
    anchors.begin(window);
    const auto listHeight = [&] {
        Rect list;
        combo.sendMessageA(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(static_cast<RECT*>(&list)));
        return list.getHeight();
    };
    const int before = listHeight();
    REQUIRE(before > combo.getWindowSize().cy);
    const Size size = window.getWindowSize();
    const int share = MulDiv(50, combo.getWindowSize().cy / 2, window.getClientSize().cy);
    window.setSize(size.cx + 50, size.cy + 50, SWP_NOZORDER);
    CHECK(listHeight() == before);
    CHECK(window.fromScreen(combo.getWindowRectangle().getTopLeft()).y == (vertical ? 50 : share));
}

TEST_CASE("Anchors: the window gets no smaller than it was, also at another resolution")
{
    Anchored window(Anchors::right | Anchors::bottom, {40, 20, 60, 40});
    const Size size = window.getWindowSize();
    const auto smallest = [&] {
        MINMAXINFO info{};
        window.sendMessageA(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
        return Size(info.ptMinTrackSize.x, info.ptMinTrackSize.y);
    };
    CHECK((smallest().cx == size.cx && smallest().cy == size.cy));
    window.sendMessageA(WM_DPICHANGED, MAKEWPARAM(192, 192));
    CHECK((smallest().cx == 2 * size.cx && smallest().cy == 2 * size.cy));
    CHECK(window.place().left == 80);
    const Size client = window.getClientSize();
    window.resize(client.cx + 10, client.cy);
    CHECK(window.place().left == 90);
}

TEST_CASE("Anchors: the object may end before the window and after it, and begin again")
{
    auto window = std::make_unique<Anchored>(Anchors::right, Rect(40, 20, 60, 40));
    window->anchors.end();
    window->resize(300, 100);
    CHECK(window->place().left == 40);
    window->anchors.begin(*window);
    window->endsAtSize = true; // In the middle of its work.
    window->resize(200, 100);
    CHECK(window->place().left == 40);
    window->anchors.begin(*window);
    window->destroy();
    window->anchors.end();
    Host other;
    expectWindowsError([&] { window->anchors.begin(other); }, "Can't find anchored control");
    window.reset();
}
