// A month planner: appointments on a calendar's sheet, kept in files of its own and exchanged as iCalendar.
//   planner [--script FILE] [--screenshot FILE]
// The script works the program as a user would (see ScriptPlayer.h); the picture shows the window after it,
// and the program ends. Without a picture to make it stays open.

#include "PlannerWindow.h"
#include "ScriptPlayer.h"

#include <tarn/MessageLoop.h>

#include <exception>
#include <iostream>
#include <optional>

namespace {
/// Of the keys of dialogs the window wants but one.
class Loop : public tarn::MessageLoop {
public:
    explicit Loop(const planner::PlannerWindow& window) : window_(window) {}

private:
    bool onMessage(MSG& msg) override { return window_.handleKey(msg); }

    const planner::PlannerWindow& window_;
};

/// Until the window is closed. The user is told what a message's handler throws, and the program goes on.
int runLoop(const planner::PlannerWindow& window, const planner::Messages& messages)
{
    Loop loop(window);
    for (;;) {
        try {
            return loop.run();
        } catch (...) {
            messages.error(window);
        }
    }
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
        else
            window.beginReminding();
        return runLoop(window, messages);
    } catch (const std::exception& e) {
        std::cerr << "planner: " << e.what() << '\n';
        return 1;
    }
}
