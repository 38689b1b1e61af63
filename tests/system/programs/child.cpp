// What the tests of processes start. Its arguments are commands, obeyed from left to right.

#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {
void writeTo(HANDLE file, const std::string& data)
{
    DWORD written = 0;
    WriteFile(file, data.data(), static_cast<DWORD>(data.size()), &written, nullptr);
}

void write(DWORD stream, const std::string& data) { writeTo(GetStdHandle(stream), data); }

std::string utf8(const wchar_t* text)
{
    std::vector<char> bytes(4 * wcslen(text) + 1);
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    return bytes.data();
}

unsigned long number(const wchar_t* text) { return std::wcstoul(text, nullptr, 10); }

void copyInput()
{
    char buffer[4096];
    DWORD count = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof buffer, &count, nullptr) && count)
        write(STD_OUTPUT_HANDLE, std::string(buffer, count));
}

// So many pieces of 10,000 bytes to output and errors in turn.
void flood(unsigned long pieces)
{
    for (unsigned long piece = 0; piece < pieces; ++piece) {
        write(STD_OUTPUT_HANDLE, std::string(10'000, 'o'));
        write(STD_ERROR_HANDLE, std::string(10'000, 'e'));
    }
}

void listArguments(wchar_t** arguments, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += utf8(arguments[i]) + '\0';
    write(STD_OUTPUT_HANDLE, all);
}

void showFolder()
{
    wchar_t folder[1000] = L"";
    GetCurrentDirectoryW(1000, folder);
    write(STD_OUTPUT_HANDLE, utf8(folder));
}

void showVariable(const wchar_t* name)
{
    wchar_t value[1000] = L"(none)";
    GetEnvironmentVariableW(name, value, 1000);
    write(STD_OUTPUT_HANDLE, utf8(value));
}

void showWindowState()
{
    STARTUPINFOW startup;
    GetStartupInfoW(&startup);
    write(STD_OUTPUT_HANDLE, startup.dwFlags & STARTF_USESHOWWINDOW ? std::to_string(startup.wShowWindow) : "none");
}

// A child of its own that sleeps with the same streams, and whose number it writes.
void startSleeper()
{
    wchar_t line[] = L"system_child.exe sleep 60000";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child{};
    CreateProcessW(nullptr, line, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &child);
    write(STD_OUTPUT_HANDLE, std::to_string(child.dwProcessId) + "\n");
}
} // namespace

int wmain(int argc, wchar_t** argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::wstring command = argv[i];
        const wchar_t* const argument = i + 1 < argc ? argv[i + 1] : L"";
        if (command == L"out")
            write(STD_OUTPUT_HANDLE, utf8(argument));
        else if (command == L"err")
            write(STD_ERROR_HANDLE, utf8(argument));
        else if (command == L"to") // A handle by its number.
            writeTo(reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(number(argument))), "here");
        else if (command == L"copy")
            copyInput();
        else if (command == L"flood")
            flood(number(argument));
        else if (command == L"arguments") {
            listArguments(argv + i + 1, argc - i - 1);
            return 0;
        } else if (command == L"folder")
            showFolder();
        else if (command == L"variable")
            showVariable(argument);
        else if (command == L"window")
            showWindowState();
        else if (command == L"sleeper")
            startSleeper();
        else if (command == L"length")
            return static_cast<int>(std::strlen(GetCommandLineA()));
        else if (command == L"sleep")
            Sleep(number(argument));
        else if (command == L"die")
            TerminateProcess(GetCurrentProcess(), 0xDEAD);
        else if (command == L"exit")
            return static_cast<int>(number(argument));
    }
    return 0;
}
