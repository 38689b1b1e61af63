// A sheet of paper to draw on with the mouse.
//   sketch [--script FILE] [--screenshot FILE]
// The script (see ScriptCommands.h) draws by mouse and key messages; the picture shows the window after it,
// and the program ends. Without a picture to make it stays open.

#include "ScriptCommands.h"
#include "SketchWindow.h"

#include <Picture.h>
#include <Script.h>
#include <tarn/MessageLoop.h>

#include <exception>
#include <iostream>

int main(int argc, char** argv)
{
    try {
        const support::Options options = support::parseOptions("sketch", argc, argv);
        SketchWindow window(GetModuleHandleW(nullptr));
        window.show(SW_SHOW);
        if (!options.script.empty())
            support::playScript(options.script, scriptCommands(window));
        if (options.screenshot.empty())
            return tarn::runMessageLoop();
        window.update();
        support::savePicture(window, true, tarn::BasicString<wchar_t>(options.screenshot.c_str()));
        std::cout << "The picture is in " << options.screenshot << '\n';
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "sketch: " << e.what() << '\n';
        return 1;
    }
}
