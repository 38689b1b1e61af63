#include "Script.h"

#include "Picture.h"

#include <fstream>
#include <iostream>

namespace support {
namespace {
void wait(Arguments& arguments)
{
    const DWORD end = GetTickCount() + arguments.next<DWORD>("the time");
    for (;;) {
        handleMessages();
        const auto left = static_cast<LONG>(end - GetTickCount());
        if (left <= 0)
            return;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(left), QS_ALLINPUT);
    }
}

void playLine(const std::string& line, const Commands& commands)
{
    Arguments arguments(line);
    std::string name;
    if (!(arguments >> name) || name.front() == '#')
        return;
    const auto command = commands.find(name);
    if (command != commands.end())
        command->second(arguments);
    else if (name == "wait")
        wait(arguments);
    else
        throw std::runtime_error("no such command");
}
} // namespace

Options parseOptions(const std::string& program, int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if ((name != "--script" && name != "--screenshot") || i + 1 == argc)
            throw std::runtime_error("usage: " + program + " [--script FILE] [--screenshot FILE]");
        (name == "--script" ? options.script : options.screenshot) = argv[++i];
    }
    return options;
}

std::string Arguments::rest()
{
    std::string text;
    std::getline(*this >> std::ws, text);
    return text;
}

void playScript(const std::string& file, const Commands& commands)
{
    std::ifstream script(file);
    if (!script)
        throw std::runtime_error("Can't open the script " + file);
    std::string line;
    for (int number = 1; std::getline(script, line); ++number) {
        if (line.ends_with('\r'))
            line.pop_back();
        try {
            playLine(line, commands);
        } catch (const std::exception& e) {
            throw std::runtime_error(file + ", line " + std::to_string(number) + " (" + line + "): " + e.what());
        }
    }
}

void handleMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        tarn::Window::dispatchMessage(msg);
}

bool demonstrate(const Options& options, const Commands& commands, tarn::Window& window)
{
    if (!options.script.empty())
        playScript(options.script, commands);
    if (options.screenshot.empty())
        return false;
    handleMessages();
    window.update();
    savePicture(window, true, tarn::BasicString<wchar_t>(options.screenshot.c_str()));
    std::cout << "The picture is in " << options.screenshot << '\n';
    return true;
}
} // namespace support
