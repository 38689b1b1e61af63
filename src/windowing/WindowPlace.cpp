#include <tarn/WindowPlace.h>

#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"

#include <algorithm>

namespace tarn {
namespace {
constexpr const wchar_t *left = L".Left", *top = L".Top", *width = L".Width", *height = L".Height", *dots = L".Dots",
                        *maximised = L".Maximised";
constexpr const char* cannotSet = "Can't set window placement";
constexpr long long farthest = 100'000; // Farther than any screen, and so near that no sum of two overflows.

// The part of the nearest screen that windows may use. A placement counts from the corner of that part as if it were
// the screen's, so that it means the same when the task bar moves.
Rect areaAround(const POINT& point)
{
    MONITORINFO info{};
    info.cbSize = sizeof info;
    ensure(GetMonitorInfoW(MonitorFromPoint(point, MONITOR_DEFAULTTONEAREST), &info), cannotSet);
    return Rect(Rect(info.rcMonitor).getPosition(), Rect(info.rcWork).getSize());
}

// By the middle of the title, which the user can take hold of.
Rect onScreen(const Rect& rect)
{
    const Point title(rect.getCenter().x, rect.top);
    const Rect area = areaAround(title);
    if (area.contains(title))
        return rect;
    const Size size(std::min(rect.getWidth(), area.getWidth()), std::min(rect.getHeight(), area.getHeight()));
    return Rect(Point(std::clamp(rect.left, area.left, area.right - size.cx),
                      std::clamp(rect.top, area.top, area.bottom - size.cy)),
                size);
}

void place(HWND window, const Rect& rect, UINT command, bool isMaximised)
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    placement.flags = isMaximised && command != SW_HIDE ? WPF_RESTORETOMAXIMIZED : 0;
    placement.showCmd = command;
    placement.ptMinPosition = placement.ptMaxPosition = Point(-1, -1); // Wherever the system wants them.
    placement.rcNormalPosition = onScreen(rect);
    ensure(runningHandlers([&] { return SetWindowPlacement(window, &placement); }), cannotSet);
}

// What ShowWindow makes of the command.
int asStarted(int command)
{
    STARTUPINFOW info{};
    GetStartupInfoW(&info);
    if (command != SW_SHOWDEFAULT)
        return command;
    const bool isWanted = (info.dwFlags & STARTF_USESHOWWINDOW) && info.wShowWindow != SW_SHOWDEFAULT;
    return isWanted ? info.wShowWindow : SW_SHOWNORMAL;
}
} // namespace

WindowPlace::WindowPlace(Settings& settings, const wchar_t* name) : settings_(settings), name_(name)
{
    for (const wchar_t* const part : {left, top})
        settings_.declareNumber(named(part).c_str(), 0, -farthest, farthest);
    for (const wchar_t* const part : {width, height}) // 0 when nothing was kept.
        settings_.declareNumber(named(part).c_str(), 0, 0, farthest);
    settings_.declareNumber(named(dots).c_str(), 96, 24, 2400);
    settings_.declareFlag(named(maximised).c_str(), false);
}

long WindowPlace::number(const wchar_t* part) const
{
    return static_cast<long>(settings_.getNumber(named(part).c_str()));
}

void WindowPlace::show(HWND window, int command) const
{
    const Rect kept(Point(number(left), number(top)), Size(number(width), number(height)));
    const bool isMaximised = settings_.getFlag(named(maximised).c_str());
    if (kept.getWidth() == 0 || kept.getHeight() == 0) {
        Window(window).show(static_cast<unsigned>(command));
        return;
    }
    place(window, kept, SW_HIDE, false); // A window that comes to a screen with other dots changes its size,
    const auto scale = [&](long length) {
        return MulDiv(length, static_cast<int>(Window(window).getDPI().getDots()), number(dots));
    };
    const Rect rect(kept.getPosition(), Size(scale(kept.getWidth()), scale(kept.getHeight())));
    const int wanted = asStarted(command);
    const bool isFree = wanted == SW_SHOWNORMAL || wanted == SW_SHOW;
    place(window, rect, static_cast<UINT>(isFree && isMaximised ? SW_SHOWMAXIMIZED : wanted), isMaximised); // so again.
}

void WindowPlace::keep(HWND window) const
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    ensure(GetWindowPlacement(window, &placement), "Can't get window placement");
    const Rect rect(placement.rcNormalPosition);
    const auto set = [this](const wchar_t* part, long value) {
        settings_.setNumber(named(part).c_str(), std::clamp<long long>(value, -farthest, farthest));
    };
    set(left, rect.left);
    set(top, rect.top);
    set(width, rect.getWidth());
    set(height, rect.getHeight());
    set(dots, static_cast<long>(Window(window).getDPI().getDots()));
    const bool wasMaximised = placement.showCmd == SW_SHOWMINIMIZED && (placement.flags & WPF_RESTORETOMAXIMIZED);
    settings_.setFlag(named(maximised).c_str(), wasMaximised || placement.showCmd == SW_SHOWMAXIMIZED);
}
} // namespace tarn
