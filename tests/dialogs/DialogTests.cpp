#include "Test.h"

#include "Driving.h"

#include <tarn/Dialog.h>

namespace {
const HINSTANCE module = GetModuleHandleW(nullptr);

/// A dialog whose start does what the test says.
class Probe : public Dialog {
public:
    explicit Probe(unsigned short resource = 1) : Dialog(resource, module) {}
    bool onInitDialog(Window& focus) override
    {
        focusID = focus.isOpen() ? focus.getID() : 0;
        onStart();
        return true;
    }
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == WM_APP)
            throw std::runtime_error("in a handler");
        if (msg == WM_ICONERASEBKGND)
            return isErased = true, 77;
        return Dialog::onMessage(msg, wParam, lParam);
    }
    using Dialog::end;

    std::function<void()> onStart = [] {};
    int focusID = -1;
    bool isErased = false;
};

// A dialog dies just after it has been made.
LRESULT CALLBACK destroyDialog(int code, WPARAM wParam, LPARAM lParam)
{
    const auto* const done = reinterpret_cast<const CWPRETSTRUCT*>(lParam);
    if (code == HC_ACTION && done->message == WM_INITDIALOG)
        DestroyWindow(done->hwnd);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}
} // namespace

TEST_CASE("Dialog: a modal dialog ends with the id of its button and unbinds")
{
    const int id = GENERATE(IDOK, IDCANCEL, IDCLOSE);
    Probe dialog;
    Driver driver([&] {
        if (!visibleDialog())
            return false;
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, EN_CHANGE), 0); // It tells of something else.
        CHECK(IsWindowVisible(dialog));
        SendMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
        return true;
    });
    CHECK(dialog.showModal() == id);
    CHECK((!dialog.isOpen() && dialog.focusID == 10));
}

TEST_CASE("Dialog: 0 and -1 are results of a dialog that ran, whatever the last error")
{
    const int result = GENERATE(0, -1, 5);
    Probe dialog;
    dialog.onStart = [&] {
        dialog.end(result);
        SetLastError(ERROR_GEN_FAILURE);
    };
    CHECK(dialog.showModal() == result);
}

TEST_CASE("Dialog: what a handler throws ends the modal dialog and comes out of it")
{
    Probe dialog;
    const bool isPosted = GENERATE(false, true);
    dialog.onStart = [&] { isPosted ? PostMessageW(dialog, WM_APP, 0, 0) : dialog.sendMessageA(WM_APP); };
    expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    CHECK((!dialog.isOpen() && !visibleDialog()));
    dialog.onStart = [&] { dialog.end(3); };
    CHECK(dialog.showModal() == 3);
}

TEST_CASE("Dialog: handled results reach the sender, unhandled messages the dialog manager")
{
    Probe dialog;
    dialog.create();
    CHECK(SendMessageW(dialog, WM_ICONERASEBKGND, 0, 0) == 77);
    CHECK(SendMessageW(dialog, DM_GETDEFID, 0, 0) == MAKELRESULT(IDOK, DC_HASDEFID));
    const HICON icon = LoadIconW(nullptr, reinterpret_cast<const wchar_t*>(IDI_APPLICATION));
    dialog.setIcon(icon, false);
    CHECK(SendMessageW(dialog, WM_QUERYDRAGICON, 0, 0) == reinterpret_cast<LRESULT>(icon));
    dialog.show(SW_MINIMIZE);
    dialog.isErased = false;
    dialog.sendMessageA(WM_PAINT);
    CHECK(dialog.isErased);
}

TEST_CASE("Dialog: a modeless dialog is owned and its object remembers the template")
{
    HWND handle = nullptr;
    {
        Probe dialog(99);
        dialog.create(nullptr, 1, module);
        handle = dialog;
        dialog.create();
        CHECK((!IsWindow(handle) && dialog.isOpen()));
        handle = dialog;
        dialog.onStart = [&] { dialog.sendMessageA(WM_APP); };
        expectError<std::runtime_error>([&] { dialog.create(); }, "in a handler");
        CHECK((!dialog.isOpen() && !IsWindow(handle)));
        dialog.onStart = [&] { dialog.destroy(); };
        try {
            dialog.create();
        } catch (const WindowsError&) { // The system may say itself that there is no dialog.
        }
        CHECK(!dialog.isOpen());
        dialog.onStart = [] {};
        dialog.create();
        handle = dialog;
    }
    CHECK(!IsWindow(handle));
}

TEST_CASE("Dialog: the size is known before the dialog is open, and nothing appears")
{
    Probe dialog(static_cast<unsigned short>(GENERATE(1, 2)));
    const Size before = dialog.getWindowSize();
    CHECK(!visibleDialog());
    dialog.create();
    CHECK((before == dialog.getWindowSize() && before.cx > 100));
}

TEST_CASE("Dialog: font, controls and place follow the dots of the screen, there and back")
{
    Probe dialog;
    dialog.create();
    const auto place = [&](int id) {
        RECT rect;
        GetWindowRect(GetDlgItem(dialog, id), &rect);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
        return Rect(rect);
    };
    const auto fontHeight = [&] {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendDlgItemMessageW(dialog, IDOK, WM_GETFONT, 0, 0)), sizeof font, &font);
        return font.lfHeight;
    };
    const Rect edit = place(10), button = place(IDOK), window = dialog.getWindowRectangle();
    const LONG height = fontHeight();
    const auto change = [&](unsigned dots, const Rect& suggested) {
        dialog.sendMessageA(WM_DPICHANGED, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(&suggested));
        CHECK(dialog.getWindowRectangle() == suggested);
    };
    const unsigned dots = dialog.getDPI().getDots();
    change(dots * 2, Rect(20, 30, 420, 330));
    CHECK((place(10).getSize() == Size(edit.getSize().cx * 2, edit.getSize().cy * 2) && fontHeight() == height * 2));
    CHECK(place(IDOK).getPosition() == Point(button.left * 2, button.top * 2));
    change(dots, window);
    CHECK((place(10) == edit && place(IDOK) == button && fontHeight() == height));
}

TEST_CASE("Dialog: each failure has its text")
{
    Probe missing(99);
    expectWindowsError([&] { missing.create(); }, "Can't create dialog");
    expectWindowsError([&] { missing.showModal(); }, "Can't create modal dialog");
    expectWindowsError([&] { missing.getWindowSize(); }, "Can't create dummy dialog for getSize()");
    expectWindowsError([&] { missing.end(1); }, "Can't end modal dialog");

    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROCRET, destroyDialog, nullptr, GetCurrentThreadId());
    const auto error = thrownBy<WindowsError>([] { Probe().getWindowSize(); });
    UnhookWindowsHookEx(hook);
    CHECK(error.getError() == ERROR_INVALID_WINDOW_HANDLE);
    if (isWine()) // Elsewhere the system may say itself that there is no dialog.
        CHECK(error.getDescription() == std::string("Can't get window rect for dummy dialog in getSize()"));
}
