#include "ScriptCommands.h"

#include "SketchWindow.h"

#include <shlobj.h>

#include <cmath>
#include <cstring>
#include <map>
#include <numbers>
#include <stdexcept>
#include <vector>

namespace {
using support::Arguments;

void mouse(SketchWindow& window, UINT msg, const POINT& units)
{
    const tarn::Point at = window.getDPI().toPixels(units);
    window.sendMessageA(msg, msg == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(at.x, at.y));
}

void stroke(SketchWindow& window, const std::vector<tarn::Point>& points)
{
    mouse(window, WM_LBUTTONDOWN, points.front());
    for (const tarn::Point& point : points)
        mouse(window, WM_MOUSEMOVE, point);
    mouse(window, WM_LBUTTONUP, points.back());
}

void playStroke(SketchWindow& window, Arguments& arguments)
{
    std::vector<tarn::Point> points;
    do {
        const auto x = arguments.next<long>("x");
        points.emplace_back(x, arguments.next<long>("y"));
    } while (arguments >> std::ws, !arguments.eof());
    stroke(window, points);
}

void playArc(SketchWindow& window, Arguments& arguments)
{
    const auto x = arguments.next<double>("x"), y = arguments.next<double>("y");
    const auto radius = arguments.next<double>("the radius");
    const auto from = arguments.next<double>("the first angle"), to = arguments.next<double>("the last angle");
    constexpr int steps = 60;
    std::vector<tarn::Point> points;
    for (int i = 0; i <= steps; ++i) {
        const double angle = (from + (to - from) * i / steps) * std::numbers::pi / 180;
        points.emplace_back(std::lround(x + radius * std::cos(angle)), std::lround(y - radius * std::sin(angle)));
    }
    stroke(window, points);
}

void playSize(SketchWindow& window, Arguments& arguments)
{
    const auto width = arguments.next<int>("the width");
    const auto height = arguments.next<int>("the height");
    const tarn::Size wanted = window.getDPI().toPixels(tarn::Size(width, height));
    const tarn::Size outer = window.getWindowSize(), inner = window.getClientSize();
    window.setSize(wanted.cx + outer.cx - inner.cx, wanted.cy + outer.cy - inner.cy, SWP_NOACTIVATE);
}

void playKey(SketchWindow& window, Arguments& arguments)
{
    static const std::map<std::string, WPARAM> keys = {{"back", VK_BACK},    {"delete", VK_DELETE}, {"left", VK_LEFT},
                                                       {"right", VK_RIGHT},  {"up", VK_UP},         {"down", VK_DOWN},
                                                       {"pageup", VK_PRIOR}, {"pagedown", VK_NEXT}};
    const auto found = keys.find(arguments.next<std::string>("the key"));
    if (found == keys.end())
        throw std::runtime_error("no such key");
    window.sendMessageA(WM_KEYDOWN, found->second, 1);
    window.sendMessageA(WM_KEYUP, found->second, 1);
}

void playWheel(SketchWindow& window, Arguments& arguments)
{
    const auto delta = arguments.next<int>("the number of notches") * WHEEL_DELTA;
    window.sendMessageA(WM_MOUSEWHEEL, MAKEWPARAM(0, delta), 0);
}

// The window releases the memory, as it does for a real drop.
void playDrop(SketchWindow& window, Arguments& arguments)
{
    const std::string path = arguments.rest();
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + path.size() + 2);
    auto* const drop = static_cast<DROPFILES*>(memory ? GlobalLock(memory) : nullptr);
    if (!drop)
        throw std::bad_alloc();
    drop->pFiles = sizeof(DROPFILES);
    std::memcpy(drop + 1, path.data(), path.size());
    GlobalUnlock(memory);
    window.sendMessageA(WM_DROPFILES, reinterpret_cast<WPARAM>(memory));
}
} // namespace

support::Commands scriptCommands(SketchWindow& window)
{
    static const std::map<std::string, void (*)(SketchWindow&, Arguments&)> players = {
        {"size", playSize}, {"stroke", playStroke}, {"arc", playArc},
        {"key", playKey},   {"wheel", playWheel},   {"drop", playDrop}};
    support::Commands commands;
    for (const auto& [name, play] : players)
        commands[name] = [&window, play = play](Arguments& arguments) { play(window, arguments); };
    for (const auto& [name, id] : SketchWindow::choices())
        commands[name] = [&window, id = id](Arguments&) { window.sendMessageA(WM_COMMAND, id); };
    return commands;
}
