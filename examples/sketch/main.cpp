// A sheet of paper to draw on with the mouse.
//   sketch [--script FILE] [--screenshot FILE]
// The script (see ScriptCommands.h) draws by mouse and key messages; the picture shows the window after it,
// and the program ends. Without a picture to make it stays open.

#include "ScriptCommands.h"
#include "SketchWindow.h"

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
        return support::demonstrate(options, scriptCommands(window), window) ? 0 : tarn::runMessageLoop();
    } catch (const std::exception& e) {
        std::cerr << "sketch: " << e.what() << '\n';
        return 1;
    }
}
