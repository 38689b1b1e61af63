#include "../windowing/Windows.h"
#include "Driving.h"
#include "ScratchFolder.h"

#include <tarn/FileDialog.h>

#include <commdlg.h>

#include <cderr.h>
#include <dlgs.h>

namespace {
/// Throws at a command.
struct Thrower : Window {
    void onCommand(Window*, unsigned short, unsigned short) override { throw std::runtime_error("in a handler"); }
};

/// A dialog of the program's own, without an object.
INT_PTR CALLBACK countCancels(HWND hwnd, UINT msg, WPARAM wParam, LPARAM)
{
    if (msg == WM_COMMAND && wParam == IDCANCEL)
        SetWindowLongPtrW(hwnd, DWLP_USER, GetWindowLongPtrW(hwnd, DWLP_USER) + 1);
    return FALSE;
}
} // namespace

TEST_CASE("FileDialog: the length of a filter is that of its pairs")
{
    CHECK(FileDialog::getFilterLength("Text\0*.txt\0All\0*.*\0") == 19);
    CHECK(FileDialog::getFilterLength(L"Text\0*.txt\0") == 11);
    CHECK(FileDialog::getFilterLength("Text\0*.txt\0A\0*.*\0") == 11); // A single character ends it.
    CHECK(FileDialog::getFilterLength("Text\0*.txt\0\0More\0") == 11);
    CHECK(FileDialog::getFilterLength(static_cast<const wchar_t*>(nullptr)) == 0);
}

TEST_CASE("FileDialog: a cancelled dialog is no error, and a chosen file has its parts")
{
    const ScratchFolder folder;
    const std::string path = folder.write("chosen.txt", "x");
    FileDialog dialog(static_cast<HWND>(nullptr), GENERATE(false, true), OFN_EXPLORER | OFN_NOCHANGEDIR);
    dialog.setTitle("Choose");
    dialog.setFilter("Text\0*.txt\0");
    dialog.setPath(path.c_str());
    const WPARAM button = static_cast<WPARAM>(GENERATE(IDOK, IDCANCEL));
    const Driver driver(pressing(button));
    CHECK(dialog.showModal() == (button == IDOK));
    CHECK(driver.isDone());
    if (button == IDOK) {
        CHECK(dialog.getPathA() == path);
        CHECK((dialog.getFilenameW() == L"chosen.txt" && dialog.getExtensionA() == "txt"));
    }
    dialog.setPath("C:\\a.b\\name"); // The parts are those of the present path.
    CHECK((dialog.getFilenameA() == "name" && dialog.getExtensionW().empty()));
    dialog.setPath(L"other.c.d");
    CHECK((dialog.getFilenameA() == "other.c.d" && dialog.getExtensionA() == "d"));
}

TEST_CASE("FileDialog: a null title of either width is the system's")
{
    FileDialog dialog(static_cast<HWND>(nullptr), false, OFN_EXPLORER | OFN_NOCHANGEDIR);
    dialog.setTitle("Choose");
    GENERATE(false, true) ? dialog.setTitle(static_cast<const char*>(nullptr))
                          : dialog.setTitle(static_cast<const wchar_t*>(nullptr));
    wchar_t title[100] = L"";
    const Driver driver([&] {
        GetWindowTextW(visibleDialog(), title, 100);
        return pressing(IDCANCEL)();
    });
    dialog.showModal();
    CHECK((title[0] && title != std::wstring(L"Choose")));
}

TEST_CASE("FileDialog: several files are the folder and their names")
{
    const ScratchFolder folder;
    folder.write("a.txt", "");
    folder.write("b.c", "");
    folder.write("d", "");
    FileDialog dialog(static_cast<HWND>(nullptr), false, OFN_EXPLORER | OFN_ALLOWMULTISELECT | OFN_NOCHANGEDIR);
    dialog.setPath(folder.file("a.txt").c_str());
    const Driver driver([] {
        for (const int field : {edt1, cmb13}) // By the dialog's version.
            SetDlgItemTextW(visibleDialog(), field, L"\"a.txt\" \"b.c\" \"d\"");
        return pressing(IDOK)();
    });
    REQUIRE(dialog.showModal());
    const std::wstring expected = folder.path().wstring() + std::wstring(L"\0a.txt\0b.c\0d", 12);
    CHECK(dialog.getPathW() == expected);
    CHECK(dialog.getPathA() == std::string(expected.begin(), expected.end()));
    CHECK(dialog.getFilenameA() == "a.txt");
}

TEST_CASE("FileDialog: a path longer than its buffer and an impossible one are errors")
{
    FileDialog dialog(static_cast<HWND>(nullptr), false, OFN_EXPLORER | OFN_ALLOWMULTISELECT);
    dialog.setFilter("Text\0*.txt\0"); // Lies behind it.
    dialog.setPath(std::string(32767, 'x').c_str());
    CHECK(dialog.getPathW().size() == 32767);
    expectError<CommonDialogError>([&] { dialog.setPath(std::string(32768, 'x').c_str()); },
                                   "Error in file dialog: FNERR_BUFFERTOOSMALL");
    CHECK(dialog.getPathA().size() == 32767);
    dialog.setPath("a|b<>?*:");
    const Driver driver(pressing(IDCANCEL));
    try {
        CHECK(!dialog.showModal());
    } catch (const CommonDialogError& e) { // The system may refuse such a name at once.
        CHECK(e.getError() == FNERR_INVALIDFILENAME);
    }
}

TEST_CASE("CommonDialogError: every code of the platform has its name")
{
    int named = 0;
    for (unsigned long code = 0; code <= CDERR_DIALOGFAILURE; ++code)
        named += CommonDialogError::errorToString(code).startsWith("Unknown") ? 0 : 1;
    CHECK(named == 37);
}

TEST_CASE("FileDialog: what the owner's handler throws cancels it with what it has open")
{
    const ScratchFolder folder;
    Thrower owner, child;
    open(owner, WS_OVERLAPPED | WS_VISIBLE);
    child.create(L"STATIC", L"", WS_CHILD, RECT{0, 0, 9, 9}, owner, nullptr, nullptr);
    const DLGTEMPLATE bare[2]{};
    const HWND bystander = CreateDialogIndirectW(nullptr, bare, nullptr, countCancels);
    const auto& [owners, asks] =
        GENERATE_REF(table<Window*, bool>({{&owner, false}, {&child, true}, {nullptr, false}}));
    FileDialog dialog(owners, true, OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_NOCHANGEDIR);
    dialog.setPath(folder.write("there.txt", "x").c_str());
    HWND first = nullptr;
    const Driver driver([&, asks = asks] {
        const HWND hwnd = visibleDialog();
        if (asks && hwnd && !first) {
            first = hwnd;
            PostMessageW(hwnd, WM_COMMAND, IDOK, 0);
        }
        return hwnd && hwnd != first && owner.postMessageW(WM_COMMAND);
    });
    expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    CHECK((driver.isDone() && !visibleDialog()));
    CHECK(GetWindowLongPtrW(bystander, DWLP_USER) == 0);
    DestroyWindow(bystander);
}
