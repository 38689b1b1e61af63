#define WINVER 0x0A00
#define _WIN32_WINNT 0x0A00

// Starts the viewer of docs/package.md and looks at it from outside: visit VIEWER. Fails with a sentence.
#include <tarn/Process.h>
#include <tarn/VersionInfo.h>
#include <tarn/Window.h>
#include <tarn/WindowsModule.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {
void require(bool met, const char* what)
{
    if (!met)
        throw std::runtime_error(what);
}

// This program has its manifest from the same function.
void requireNewControls()
{
    const tarn::WindowsModule controls(L"comctl32.dll", true);
    require(controls.getFilenameW().contains(L"common-controls_6595b64144ccf1df_6."), "the controls are old ones");
}

void requireResources(const wchar_t* viewer)
{
    const auto& version = tarn::VersionInfo(viewer).FileVersion();
    require(version.major == 1 && version.minor == 2, "the version is another");
    const tarn::WindowsModule module(viewer, static_cast<unsigned long>(LOAD_LIBRARY_AS_DATAFILE));
    require(FindResourceW(module.getHandle(), MAKEINTRESOURCEW(1), RT_GROUP_ICON), "there is no icon");
}

// The viewer shows a file, its name in the title, in the dots of the screen.
void requireWindow(const wchar_t* viewer)
{
    const wchar_t* const name = L"\u0416\u6587.txt";
    std::ofstream(std::filesystem::path(name)) << "text";
    tarn::Process process;
    process.create((L'"' + std::wstring(viewer) + L"\" " + name).c_str(), tarn::ProcessOptions());
    const struct Ender { // Or it would stay when something is wrong.
        ~Ender() { TerminateProcess(process.getHandle(), 1); }
        const tarn::Process& process;
    } ender{process};
    HWND window = nullptr, edit = nullptr;
    DWORD_PTR length = 0; // The window is there a little before its text.
    for (int i = 0; i < 500 && length != 4 && process.wait(20) == tarn::WindowsHandle::timeout; ++i) {
        window = FindWindowW(nullptr, name);
        edit = GetDlgItem(window, 1);
        SendMessageTimeoutW(edit, WM_GETTEXTLENGTH, 0, 0, 0, 1000, &length);
    }
    require(window != nullptr, "there is no window of that name");
    require(length == 4, "the text is another");
    require(GetAwarenessFromDpiAwarenessContext(GetWindowDpiAwarenessContext(edit)) == DPI_AWARENESS_PER_MONITOR_AWARE,
            "the system scales the window");
    PostMessageW(window, WM_COMMAND, 100, 0);
    require(process.wait(10000) == tarn::WindowsHandle::signaled, "the menu's command does not end it");
}
} // namespace

int wmain(int argc, wchar_t** argv)
{
    try {
        require(argc == 2, "usage: visit VIEWER");
        require(GetACP() == CP_UTF8, "narrow text is not UTF-8");
        requireNewControls();
        requireResources(argv[1]);
        requireWindow(argv[1]);
        std::cout << "passed: the viewer\n";
        return 0;
    } catch (const std::exception& e) {
        std::cerr << "visit: " << e.what() << '\n';
        return 1;
    }
}
