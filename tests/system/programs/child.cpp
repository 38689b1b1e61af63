// What the tests of processes start. Its arguments are commands, obeyed from left to right.

#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {
void write(DWORD stream, const char* data, std::size_t size)
{
    DWORD written = 0;
    WriteFile(GetStdHandle(stream), data, static_cast<DWORD>(size), &written, nullptr);
}

void copyInput()
{
    char buffer[4096];
    DWORD count = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof buffer, &count, nullptr) && count)
        write(STD_OUTPUT_HANDLE, buffer, count);
}
} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string command = argv[i];
        const char* const argument = i + 1 < argc ? argv[i + 1] : "";
        if (command == "out")
            write(STD_OUTPUT_HANDLE, argument, std::strlen(argument));
        else if (command == "err")
            write(STD_ERROR_HANDLE, argument, std::strlen(argument));
        else if (command == "copy")
            copyInput();
        else if (command == "length")
            return static_cast<int>(std::strlen(GetCommandLineA()));
        else if (command == "sleep")
            Sleep(std::strtoul(argument, nullptr, 10));
        else if (command == "die")
            TerminateProcess(GetCurrentProcess(), 0xDEAD);
        else if (command == "exit")
            return std::atoi(argument);
    }
    return 0;
}
