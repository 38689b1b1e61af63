#include "Script.h"

#include <shlobj.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <map>
#include <numbers>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {
using Arguments = std::istringstream;

template <class T> T next(Arguments& arguments, const char* what)
{
    T value;
    if (!(arguments >> value))
        throw std::runtime_error(std::string(what) + " is missing");
    return value;
}

void mouse(SketchWindow& window, UINT msg, const POINT& at)
{
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
        const auto x = next<long>(arguments, "x");
        points.emplace_back(x, next<long>(arguments, "y"));
    } while (arguments >> std::ws, !arguments.eof());
    stroke(window, points);
}

void playArc(SketchWindow& window, Arguments& arguments)
{
    const auto x = next<double>(arguments, "x"), y = next<double>(arguments, "y");
    const auto radius = next<double>(arguments, "the radius");
    const auto from = next<double>(arguments, "the first angle"), to = next<double>(arguments, "the last angle");
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
    const auto width = next<int>(arguments, "the width");
    const auto height = next<int>(arguments, "the height");
    const tarn::Size outer = window.getWindowSize(), inner = window.getClientSize();
    window.setSize(width + outer.cx - inner.cx, height + outer.cy - inner.cy, SWP_NOACTIVATE);
}

void playKey(SketchWindow& window, Arguments& arguments)
{
    static const std::map<std::string, WPARAM> keys = {{"back", VK_BACK},    {"delete", VK_DELETE}, {"left", VK_LEFT},
                                                       {"right", VK_RIGHT},  {"up", VK_UP},         {"down", VK_DOWN},
                                                       {"pageup", VK_PRIOR}, {"pagedown", VK_NEXT}};
    const auto found = keys.find(next<std::string>(arguments, "the key"));
    if (found == keys.end())
        throw std::runtime_error("no such key");
    window.sendMessageA(WM_KEYDOWN, found->second, 1);
    window.sendMessageA(WM_KEYUP, found->second, 1);
}

void playWheel(SketchWindow& window, Arguments& arguments)
{
    const auto delta = next<int>(arguments, "the number of notches") * WHEEL_DELTA;
    window.sendMessageA(WM_MOUSEWHEEL, MAKEWPARAM(0, delta), 0);
}

// The window releases the memory, as it does for a real drop.
void playDrop(SketchWindow& window, Arguments& arguments)
{
    std::string path;
    std::getline(arguments >> std::ws, path);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + path.size() + 2);
    auto* const drop = static_cast<DROPFILES*>(memory ? GlobalLock(memory) : nullptr);
    if (!drop)
        throw std::bad_alloc();
    drop->pFiles = sizeof(DROPFILES);
    std::memcpy(drop + 1, path.data(), path.size());
    GlobalUnlock(memory);
    window.sendMessageA(WM_DROPFILES, reinterpret_cast<WPARAM>(memory));
}

void playWait(SketchWindow&, Arguments& arguments)
{
    const DWORD end = GetTickCount() + next<DWORD>(arguments, "the time");
    for (;;) {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
            tarn::Window::dispatchMessage(msg);
        const auto left = static_cast<LONG>(end - GetTickCount());
        if (left <= 0)
            return;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(left), QS_ALLINPUT);
    }
}

void playLine(SketchWindow& window, const std::string& line)
{
    using Player = void (*)(SketchWindow&, Arguments&);
    static const std::map<std::string, Player> players = {
        {"size", playSize},   {"stroke", playStroke}, {"arc", playArc},  {"key", playKey},
        {"wheel", playWheel}, {"drop", playDrop},     {"wait", playWait}};
    Arguments arguments(line);
    std::string command;
    if (!(arguments >> command) || command.front() == '#')
        return;
    if (const auto found = players.find(command); found != players.end())
        found->second(window, arguments);
    else if (const unsigned short id = SketchWindow::commandOf(command))
        window.sendMessageA(WM_COMMAND, id);
    else
        throw std::runtime_error("no such command");
}
} // namespace

void playScript(SketchWindow& window, const std::string& file)
{
    std::ifstream script(file);
    if (!script)
        throw std::runtime_error("Can't open the script " + file);
    std::string line;
    for (int number = 1; std::getline(script, line); ++number) {
        if (line.ends_with('\r'))
            line.pop_back();
        try {
            playLine(window, line);
        } catch (const std::exception& e) {
            throw std::runtime_error(file + ", line " + std::to_string(number) + " (" + line + "): " + e.what());
        }
    }
}
