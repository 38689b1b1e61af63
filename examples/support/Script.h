#pragma once

#include <tarn/Window.h>

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

// What the examples with a window share: they take `--script FILE` and `--screenshot FILE`.

namespace support {
struct Options {
    std::string script, screenshot; ///< Empty when not given.
};

/// Throws `std::runtime_error` with the usage when there is anything else on the command line.
Options parseOptions(const std::string& program, int argc, char** argv);

/// What follows a command on its line of a script.
class Arguments : public std::istringstream {
public:
    using std::istringstream::istringstream;

    /// The next word as a T. Throws "WHAT is missing".
    template <class T> T next(const char* what)
    {
        T value;
        if (!(*this >> value))
            throw std::runtime_error(std::string(what) + " is missing");
        return value;
    }
    std::string rest(); ///< The text up to the line's end.
};

using Commands = std::map<std::string, std::function<void(Arguments&)>>;

/// Carries out a script, one command a line; an empty line or one that begins with # is passed over. The
/// command `wait MS` is always there. Throws `std::runtime_error` that names the line when it fails.
void playScript(const std::string& file, const Commands& commands);

/// Handles the messages of the thread that are waiting.
void handleMessages();

/// Plays the script that the options name, and then writes the picture of the window if they name one. False
/// when they do not: then the program stays open.
bool demonstrate(const Options& options, const Commands& commands, tarn::Window& window);
} // namespace support
