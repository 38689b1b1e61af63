// A sheet of paper to draw on with the mouse.
//   sketch [--script FILE] [--screenshot FILE]
// The script (see Script.h) draws by mouse and key messages; the picture shows the window after it, and the
// program ends. Without a picture to make it stays open.

#include "Script.h"
#include "SketchWindow.h"

#include <Picture.h>
#include <tarn/MessageLoop.h>

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {
struct Options {
    std::string script, screenshot;
};

Options parse(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if ((name != "--script" && name != "--screenshot") || i + 1 == argc)
            throw std::runtime_error("usage: sketch [--script FILE] [--screenshot FILE]");
        (name == "--script" ? options.script : options.screenshot) = argv[++i];
    }
    return options;
}
} // namespace

int main(int argc, char** argv)
{
    try {
        const Options options = parse(argc, argv);
        SketchWindow window(GetModuleHandleW(nullptr));
        window.show(SW_SHOW);
        if (!options.script.empty())
            playScript(window, options.script);
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
