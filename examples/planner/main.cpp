// A month planner: appointments on a calendar's sheet, kept in files of its own and exchanged as iCalendar.
//   planner [--script FILE] [--screenshot FILE]
// The script works the program as a user would (see ScriptPlayer.h); the picture shows the window after it,
// and the program ends. Without a picture to make it stays open.

#include "PlannerWindow.h"
#include "ScriptPlayer.h"

#include <exception>
#include <iostream>
#include <optional>

namespace {
/// Until the window is closed. What a message's handler throws comes out of handleKey or dispatchMessage;
/// the user is told, and the program goes on.
int runLoop(const planner::PlannerWindow& window, const planner::Messages& messages)
{
    MSG msg{};
    while (tarn::Window::getThreadMessage(msg)) {
        try {
            if (window.handleKey(msg))
                continue;
            TranslateMessage(&msg);
            tarn::Window::dispatchMessage(msg);
        } catch (...) {
            messages.error(window);
        }
    }
    return static_cast<int>(msg.wParam);
}
} // namespace

int main(int argc, char** argv)
{
    try {
        const support::Options options = support::parseOptions("planner", argc, argv);
        planner::Messages messages;
        planner::PlannerWindow window(GetModuleHandleW(nullptr), messages);
        window.showAsLeft();
        std::optional<planner::ScriptPlayer> player;
        if (!options.script.empty() || !options.screenshot.empty())
            player.emplace(window, options, messages);
        return runLoop(window, messages);
    } catch (const std::exception& e) {
        std::cerr << "planner: " << e.what() << '\n';
        return 1;
    }
}
