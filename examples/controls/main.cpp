// The solar system, in a window with every kind of control.
//   controls [--script FILE] [--screenshot FILE]
// The script works the controls by mouse and key messages (see the commands below); the picture shows the
// window after it, and the program ends. Without a picture to make it stays open.

#include "ControlsWindow.h"
#include "Ids.h"

#include <Script.h>

#include <tarn/MessageLoop.h>

#include <exception>
#include <iostream>
#include <string>

namespace {
/// Commands of the script take the name of a control first.
const std::map<std::string, int> names = {
    {"tree", ID_TREE},       {"order", ID_ORDER},         {"colours", ID_COLOURS},
    {"details", ID_DETAILS}, {"list-view", ID_LIST_VIEW}, {"small-icons", ID_SMALL_ICONS},
    {"icons", ID_ICONS},     {"smallest", ID_SMALLEST},   {"width", ID_WIDTH},
    {"note", ID_NOTE},       {"read-only", ID_READ_ONLY}, {"reset", ID_RESET},
    {"swatch", ID_SWATCH},   {"list", ID_BODIES},         {"kinds", ID_KINDS},
    {"tools", ID_TOOLS},     {"power", ID_POWER},         {"day", ID_DAY},
    {"find", ID_FIND},       {"seen", ID_SEEN},           {"follow", ID_FOLLOW}};

const std::map<std::string, WPARAM> keys = {{"left", VK_LEFT}, {"right", VK_RIGHT},  {"up", VK_UP},
                                            {"down", VK_DOWN}, {"pageup", VK_PRIOR}, {"pagedown", VK_NEXT},
                                            {"home", VK_HOME}, {"end", VK_END},      {"space", VK_SPACE}};

template <class Value> Value find(const std::map<std::string, Value>& map, const std::string& name)
{
    const auto found = map.find(name);
    if (found == map.end())
        throw std::runtime_error("no such name: " + name);
    return found->second;
}

/// Works the controls of a window. Everything is posted, because some controls wait for the next message.
class Hand {
public:
    explicit Hand(const ControlsWindow& window) : window_(window) {}

    support::Commands commands() const
    {
        return {// click CONTROL X Y: with the left button, at a position in the control in units of 1/96 inch
                {"click", [this](support::Arguments& arguments) { click(arguments); }},
                // key CONTROL NAME [TIMES]
                {"key", [this](support::Arguments& arguments) { key(arguments); }},
                // type CONTROL TEXT
                {"type", [this](support::Arguments& arguments) { type(arguments); }}};
    }

private:
    HWND target(support::Arguments& arguments) const
    {
        return GetDlgItem(window_, find(names, arguments.next<std::string>("the control")));
    }

    void click(support::Arguments& arguments) const
    {
        const HWND hwnd = target(arguments);
        const int x = arguments.next<int>("x"), y = arguments.next<int>("y");
        const tarn::Point at = window_.getDPI().toPixels(tarn::Point(x, y));
        PostMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
        PostMessageW(hwnd, WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
        support::handleMessages();
    }

    void key(support::Arguments& arguments) const
    {
        const HWND hwnd = target(arguments);
        const WPARAM code = find(keys, arguments.next<std::string>("the key"));
        int times = 1;
        arguments >> times;
        SetFocus(hwnd);
        for (int i = 0; i < times; ++i) {
            PostMessageW(hwnd, WM_KEYDOWN, code, 1);
            PostMessageW(hwnd, WM_KEYUP, code, 0xC0000001);
        }
        support::handleMessages();
    }

    void type(support::Arguments& arguments) const
    {
        const HWND hwnd = target(arguments);
        SetFocus(hwnd);
        for (const wchar_t c : tarn::BasicString<wchar_t>(arguments.rest().c_str()))
            PostMessageW(hwnd, WM_CHAR, c, 1);
        support::handleMessages();
    }

    const ControlsWindow& window_;
};
} // namespace

int main(int argc, char** argv)
{
    try {
        const support::Options options = support::parseOptions("controls", argc, argv);
        ControlsWindow window(GetModuleHandleW(nullptr));
        window.show(SW_SHOW);
        support::handleMessages();
        const Hand hand(window);
        if (support::demonstrate(options, hand.commands(), window))
            return 0;
        tarn::MessageLoop loop;
        loop.addDialog(window); // With the Tab key and the letters of the labels.
        return loop.run();
    } catch (const std::exception& e) {
        std::cerr << "controls: " << e.what() << '\n';
        return 1;
    }
}
