#include "../windowing/Windows.h"
#include "Driving.h"
#include "Expect.h"
#include "ScratchFolder.h"

#include <tarn/FileDialog.h>
#include <tarn/FolderDialog.h>

#include <commdlg.h>

#include <cderr.h>
#include <dlgs.h>

#include <stdexcept>
#include <string>

using namespace tarn;

TEST_CASE("FileDialog: the length of a filter is that of its pairs", "[filedialog]")
{
    CHECK(FileDialog::getFilterLength("Text\0*.txt\0All\0*.*\0") == 19);
    CHECK(FileDialog::getFilterLength(L"Text\0*.txt\0") == 11);
    CHECK(FileDialog::getFilterLength("T\0*.txt\0") == 0); // A single character ends it.
    CHECK(FileDialog::getFilterLength("Text\0*.txt\0A\0*.*\0") == 11);
    CHECK(FileDialog::getFilterLength("") == 0);
    CHECK(FileDialog::getFilterLength(static_cast<const wchar_t*>(nullptr)) == 0);
}

TEST_CASE("FileDialog: a cancelled dialog is no error, and a chosen file has its parts", "[filedialog]")
{
    const support::ScratchFolder folder;
    const std::string path = folder.write("chosen.txt", "x");
    FileDialog dialog(static_cast<HWND>(nullptr), GENERATE(false, true), OFN_EXPLORER | OFN_NOCHANGEDIR);
    dialog.setTitle("Choose");
    dialog.setFilter("Text\0*.txt\0");
    dialog.setPath(path.c_str());
    const WPARAM button = static_cast<WPARAM>(GENERATE(IDOK, IDCANCEL));
    support::Driver driver([&] {
        const HWND hwnd = support::visibleDialog();
        return hwnd && PostMessageW(hwnd, WM_COMMAND, button, 0);
    });
    CHECK(dialog.showModal() == (button == IDOK));
    CHECK((driver.isDone() && !driver.isLate()));
    if (button == IDOK) {
        CHECK(dialog.getPathA() == path);
        CHECK((dialog.getFilenameW() == L"chosen.txt" && dialog.getExtensionA() == "txt"));
    }
}

TEST_CASE("FileDialog: a path longer than the buffer and an impossible name are errors", "[filedialog]")
{
    FileDialog dialog(static_cast<Window*>(nullptr), false, OFN_EXPLORER);
    support::expectError<CommonDialogError>([&] { dialog.setPath(std::string(40000, 'x').c_str()); },
                                            "Error in file dialog: FNERR_BUFFERTOOSMALL");
    dialog.setPath("a|b<>?*:");
    support::Driver driver([] {
        const HWND hwnd = support::visibleDialog();
        return hwnd && PostMessageW(hwnd, WM_COMMAND, IDCANCEL, 0);
    });
    try {
        CHECK(!dialog.showModal());
    } catch (const CommonDialogError& e) { // The system may refuse such a name at once.
        CHECK(e.getError() == FNERR_INVALIDFILENAME);
    }
}

namespace {
/// Enters a name in an open file dialog and presses its button.
bool choose(HWND dialog, const wchar_t* name)
{
    for (const int field : {edt1, cmb13}) // By the dialog's version.
        SetDlgItemTextW(dialog, field, name);
    return PostMessageW(dialog, WM_COMMAND, IDOK, 0) != FALSE;
}
} // namespace

TEST_CASE("FileDialog: several files are the folder and their names", "[filedialog]")
{
    const support::ScratchFolder folder;
    folder.write("a.txt", "");
    folder.write("b.c", "");
    FileDialog dialog(static_cast<HWND>(nullptr), false, OFN_EXPLORER | OFN_ALLOWMULTISELECT | OFN_NOCHANGEDIR);
    dialog.setPath(folder.file("a.txt").c_str());
    support::Driver driver([&] {
        const HWND hwnd = support::visibleDialog();
        return hwnd && choose(hwnd, L"\"a.txt\" \"b.c\"");
    });
    REQUIRE(dialog.showModal());
    const std::wstring expected = folder.path().wstring() + std::wstring(L"\0a.txt\0b.c", 10);
    CHECK(dialog.getPathW() == expected);
    CHECK(dialog.getPathA() == std::string(expected.begin(), expected.end()));
    CHECK(dialog.getFilenameA() == "a.txt");
    CHECK(!driver.isLate());
}

TEST_CASE("FileDialog: more than the buffer takes", "[filedialog]")
{
    const support::ScratchFolder folder;
    FileDialog dialog(static_cast<HWND>(nullptr), false, OFN_EXPLORER | OFN_ALLOWMULTISELECT | OFN_NOVALIDATE);
    dialog.setPath(folder.file("a.txt").c_str());
    std::wstring names;
    while (names.size() < 40000)
        names += L"\"name.txt\" ";
    support::Driver driver([&] {
        const HWND hwnd = support::visibleDialog();
        return hwnd && choose(hwnd, names.c_str());
    });
    try { // Wine takes as many names as there is room for.
        CHECK(dialog.showModal());
        CHECK(support::isWine());
        CHECK((dialog.getPathW().size() > 32000 && dialog.getPathW().size() < 32768));
    } catch (const CommonDialogError& e) {
        CHECK(e.getError() == FNERR_BUFFERTOOSMALL);
    }
}

namespace {
/// Throws at a message.
class Thrower : public Window {
public:
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == WM_APP)
            throw std::runtime_error("in a handler");
        return Window::onMessage(msg, wParam, lParam);
    }
};
} // namespace

TEST_CASE("FileDialog: what the owner's handler throws cancels it with what it has open", "[filedialog]")
{
    const support::ScratchFolder folder;
    const std::string path = folder.write("there.txt", "x");
    Thrower owner, child;
    support::open(owner, WS_OVERLAPPED | WS_VISIBLE);
    child.create(L"STATIC", L"", WS_CHILD, RECT{0, 0, 9, 9}, owner, nullptr, nullptr);
    const bool asks = GENERATE(false, true);
    FileDialog dialog(GENERATE(false, true) ? &owner : &child, true,
                      OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_NOCHANGEDIR);
    dialog.setPath(path.c_str());
    HWND first = nullptr;
    support::Driver driver([&] {
        const HWND hwnd = support::visibleDialog();
        if (hwnd && !first && asks)
            PostMessageW(hwnd, WM_COMMAND, IDOK, 0);
        if (!first)
            first = hwnd;
        return hwnd && (hwnd != first || !asks) && owner.postMessageW(WM_APP);
    });
    support::expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    CHECK((!driver.isLate() && !support::visibleDialog()));
}

namespace {
class Chooser : public FolderDialog {
public:
    using FolderDialog::FolderDialog;
    void onInitialized() override
    {
        started = true;
        if (throws)
            throw std::runtime_error("in a handler");
        setStatusText("narrow");
        enableOk(true);
        if (button == IDCANCEL)
            postMessageW(WM_COMMAND, button);
    }
    void onSelectionChanged(const ItemIDList& selection) override { path = selection.getPathW(); }

    WPARAM button = IDOK;
    bool started = false;
    bool throws = false;
    BasicString<wchar_t> path;
};

// In a fresh profile Wine's first folder dialog selects nothing; all that come later do.
void showAndCancel(const std::wstring& path)
{
    Chooser dialog(static_cast<HWND>(nullptr), "First", 0);
    dialog.setSelection(path.c_str());
    dialog.button = IDCANCEL;
    CHECK(!dialog.showModal());
}
} // namespace

TEST_CASE("FolderDialog: the folder preselected is chosen, or the dialog cancelled", "[folderdialog]")
{
    const support::ScratchFolder folder;
    const std::wstring wanted = folder.path().wstring();
    Chooser dialog(static_cast<HWND>(nullptr), "Choose", BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT);
    showAndCancel(wanted);
    // The selection may come later than the dialog.
    support::Driver driver(
        [&] { return dialog.started && dialog.path == wanted && dialog.postMessageW(WM_COMMAND, dialog.button); });
    const auto choose = [&] {
        CHECK(dialog.showModal());
        CHECK(dialog.getSelection().getPathW() == wanted);
        CHECK(dialog.getDisplayName().endsWith(folder.path().filename().wstring().c_str())); // Or the whole path.
    };
    SECTION("by its path, below everything")
    {
        dialog.setSelection(wanted.c_str());
        choose();
    }
    SECTION("by its path, below a root")
    {
        dialog.setRoot(CSIDL_DRIVES);
        dialog.setSelection(folder.path().string().c_str());
        choose();
    }
    SECTION("by its item list")
    {
        LPITEMIDLIST list = nullptr;
        REQUIRE(SHParseDisplayName(wanted.c_str(), nullptr, &list, 0, nullptr) == S_OK);
        dialog.setSelection(ItemIDList(list, true)); // Copied.
        choose();
    }
    SECTION("cancelled")
    {
        dialog.button = IDCANCEL;
        CHECK(!dialog.showModal());
        CHECK(!dialog.getSelection());
    }
    SECTION("after an exception")
    {
        dialog.throws = true;
        support::expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    }
    CHECK((dialog.started && !dialog.isOpen() && !driver.isLate()));
}

TEST_CASE("FolderDialog: an unknown root is an error, and COM is released in pairs", "[folderdialog]")
{
    {
        FolderDialog dialog(static_cast<HWND>(nullptr), L"", 0);
        dialog.setRoot(CSIDL_DESKTOP);
        CHECK_THROWS_AS(dialog.setRoot(0x7F), std::runtime_error);
    }
    // Any other model can be chosen only when nothing holds COM any more.
    CHECK(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
    CHECK_THROWS_AS(FolderDialog(static_cast<HWND>(nullptr), L"", 0), COMError);
    CoUninitialize();
    CHECK(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    CoUninitialize();
}
