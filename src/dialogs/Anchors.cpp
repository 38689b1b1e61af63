#include <tarn/Anchors.h>

#include "../foundation/Check.h"
#include "../windowing/ControlPlace.h"
#include "../windowing/HandlerScope.h"
#include "../windowing/Subclass.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
// Where the two sides of a control lie when the window has grown by `growth` between the edges `near` and `far`.
void follow(LONG& nearSide, LONG& farSide, LONG growth, bool holdsNear, bool holdsFar, LONG room)
{
    const LONG centre = (nearSide + farSide) / 2;
    const LONG share = room > 0 ? MulDiv(growth, centre, room) : 0;
    nearSide += holdsNear ? 0 : holdsFar ? growth : share;
    farSide += holdsFar ? growth : holdsNear ? 0 : share;
    farSide = std::max(farSide, nearSide);
}
} // namespace

Anchors::Anchors() = default;
Anchors::~Anchors() { end(); }

void Anchors::add(int id, unsigned edges)
{
    std::erase_if(controls_, [id](const Control& control) { return control.id == id; });
    controls_.push_back({id, edges, {}, 0});
}

void Anchors::begin(HWND window)
{
    end();
    measure(window);
    minimum_ = Window(window).getWindowSize();
    subclass_ = std::make_unique<Subclass>(window, onMessage, this, "Can't follow size of window");
}

void Anchors::end()
{
    subclass_.reset();
    if (bool* const ended = std::exchange(ended_, nullptr))
        *ended = true;
}

HWND Anchors::getWindow() const { return subclass_ ? subclass_->getWindow() : nullptr; }
void Anchors::restart() { measure(getWindow()); }

void Anchors::measure(HWND window)
{
    start_ = Window(window).getClientSize();
    for (Control& control : controls_) {
        const HWND hwnd = ensure(GetDlgItem(window, control.id), "Can't find anchored control");
        control.rect = placeIn(window, hwnd);
        control.listHeight = control.rect.getHeight() - Window(hwnd).getWindowSize().cy;
        control.rect.bottom -= control.listHeight;
    }
}

void Anchors::place() const
{
    const HWND window = getWindow();
    const Size size = Window(window).getClientSize();
    HDWP moves = BeginDeferWindowPos(static_cast<int>(controls_.size()));
    for (const Control& control : controls_) {
        Rect rect = control.rect;
        follow(rect.left, rect.right, size.cx - start_.cx, control.edges & left, control.edges & right, start_.cx);
        follow(rect.top, rect.bottom, size.cy - start_.cy, control.edges & top, control.edges & bottom, start_.cy);
        const HWND hwnd = GetDlgItem(window, control.id);
        if (hwnd && moves)
            moves = DeferWindowPos(moves, hwnd, nullptr, rect.left, rect.top, rect.getWidth(),
                                   rect.getHeight() + control.listHeight,
                                   SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS); // The window erases later.
    }
    if (moves)
        EndDeferWindowPos(moves);
}

void Anchors::handled(UINT msg, WPARAM wParam, LPARAM lParam, const Size& former)
{
    if (msg == WM_SIZE && wParam != SIZE_MINIMIZED && !isRescaling_)
        place();
    if (msg == WM_GETMINMAXINFO) {
        POINT& smallest = reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize;
        smallest = {std::max(smallest.x, minimum_.cx), std::max(smallest.y, minimum_.cy)};
    }
    if (msg == WM_DPICHANGED) { // The window's own procedure has given it and its controls their new sizes.
        isRescaling_ = false;
        const Size size = Window(getWindow()).getWindowSize();
        minimum_ = {MulDiv(minimum_.cx, size.cx, former.cx), MulDiv(minimum_.cy, size.cy, former.cy)};
        restart();
    }
}

LRESULT CALLBACK Anchors::onMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR self)
{
    auto* const anchors = reinterpret_cast<Anchors*>(self);
    Size former;
    bool ended = false;
    bool* const outer = std::exchange(anchors->ended_, &ended);
    if (msg == WM_NCDESTROY)
        anchors->end();
    if (msg == WM_DPICHANGED) {
        former = Window(hwnd).getWindowSize();
        anchors->isRescaling_ = true;
    }
    const LRESULT result = DefSubclassProc(hwnd, msg, wParam, lParam);
    if (ended) { // By a handler, and perhaps there is no object any more.
        if (outer)
            *outer = true;
        return result;
    }
    anchors->ended_ = outer;
    return guardedCallback(result, {"the anchors of a window", hwnd, msg},
                           [&] { return anchors->handled(msg, wParam, lParam, former), result; });
}
} // namespace tarn
