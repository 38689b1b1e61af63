#include "../windowing/Windows.h"
#include "Driving.h"
#include "ScratchFolder.h"

#include <tarn/ShellFileDialog.h>

namespace {
BOOL CALLBACK enterName(HWND child, LPARAM name)
{
    wchar_t className[5] = L"";
    GetClassNameW(child, className, 5);
    if (className == std::wstring(L"Edit"))
        SendMessageW(child, WM_SETTEXT, 0, name);
    return TRUE;
}

/// A step that presses a button of the dialog, after it has entered a name if there is one.
std::function<bool()> press(WPARAM button, const wchar_t* name = nullptr)
{
    return [=] {
        const HWND dialog = visibleDialog();
        if (dialog && name)
            EnumChildWindows(dialog, enterName, reinterpret_cast<LPARAM>(name));
        return pressing(button)();
    };
}
} // namespace

TEST_CASE("ShellFileDialog: several files are their full paths, and none after a cancelled dialog")
{
    const ScratchFolder folder;
    const std::wstring a = folder.path().wstring() + L"\\a.txt", b = folder.path().wstring() + L"\\b.c";
    folder.write("a.txt", "");
    folder.write("b.c", "");
    OpenFileDialog dialog;
    dialog.setTitle("Choose");
    dialog.setFilters({{L"Text", L"*.txt"}, {"All files", "*.*"}}, 1);
    dialog.setMultiple(true);
    dialog.addPlace(folder.path().c_str());
    dialog.setStartFolder(folder.path().c_str());
    {
        const Driver driver(press(IDOK, L"\"a.txt\" \"b.c\""));
        REQUIRE(dialog.showModal());
    }
    REQUIRE(dialog.getPaths().size() == 2);
    CHECK((dialog.getPathW() == a && dialog.getPaths()[1] == b && dialog.getSelectedFilter() == 1));
    wchar_t title[8] = L"";
    const Driver driver([&] {
        GetWindowTextW(visibleDialog(), title, 8);
        return press(IDCANCEL)();
    });
    CHECK((!dialog.showModal() && dialog.getPaths().empty() && dialog.getPathA().empty()));
    CHECK(title == std::wstring(L"Choose"));
}

TEST_CASE("SaveFileDialog: a name without an extension gets the default one")
{
    const ScratchFolder folder;
    SaveFileDialog dialog;
    dialog.setStartFolder(folder.path().string().c_str());
    GENERATE(false, true) ? dialog.setDefaultExtension("txt") : dialog.setDefaultExtension(L"txt");
    dialog.setName("n\x80w");
    const Driver driver(press(IDOK));
    REQUIRE(dialog.showModal());
    const BasicString<wchar_t> expected = folder.file(a2w("n\x80w.txt", CP_ACP));
    CHECK((dialog.getPathW() == expected && dialog.getPathA() == w2a(expected.c_str(), CP_ACP)));
}

TEST_CASE("OpenFolderDialog: gives the folder that was entered")
{
    const ScratchFolder folder;
    const std::wstring inner = folder.path().wstring() + L"\\inner";
    CreateDirectoryW(inner.c_str(), nullptr);
    OpenFolderDialog dialog;
    dialog.setStartFolder(folder.path().c_str());
    const Driver driver(press(IDOK, L"inner"));
    REQUIRE(dialog.showModal());
    CHECK(dialog.getPathW() == inner);
}

TEST_CASE("ShellFileDialog: a start folder that does not exist is an error at once")
{
    OpenFileDialog dialog;
    expectWindowsError([&] { dialog.setStartFolder("C:\\not\\there"); }, "Can't find folder for file dialog");
}

TEST_CASE("ShellFileDialog: what the owner's handler throws cancels it with what it has open")
{
    struct Thrower : Window {
        void onCommand(Window*, unsigned short, unsigned short) override { throw std::runtime_error("in a handler"); }
    } owner;
    open(owner, WS_OVERLAPPED | WS_VISIBLE);
    const ScratchFolder folder;
    folder.write("there.txt", "x");
    SaveFileDialog dialog(owner);
    dialog.setStartFolder(folder.path().c_str());
    dialog.setName("there.txt");
    HWND first = nullptr;
    const Driver driver([&] {
        const HWND hwnd = visibleDialog();
        if (hwnd && !first && press(IDOK)()) // It asks whether to replace the file.
            first = hwnd;
        return hwnd && hwnd != first && owner.postMessageW(WM_COMMAND);
    });
    expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    CHECK((driver.isDone() && !visibleDialog() && IsWindowEnabled(owner)));
}
