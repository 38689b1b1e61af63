#include "Counts.h"
#include "Driving.h"
#include "Expect.h"

#include <tarn/Dialog.h>

#include <functional>
#include <stdexcept>

using namespace tarn;

namespace {
const HINSTANCE module = GetModuleHandleW(nullptr);

/// A dialog whose start, commands and timer do what the test says.
class Probe : public Dialog {
public:
    explicit Probe(unsigned short resource = 1) : Dialog(resource, module) {}
    bool onInitDialog(Window& focus) override
    {
        focusID = focus.isOpen() ? focus.getID() : 0;
        if (onStart)
            onStart();
        return true;
    }
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        if (msg == WM_APP)
            return 77;
        if (msg == WM_APP + 1)
            throw std::runtime_error("in a handler");
        if (msg == WM_ICONERASEBKGND)
            ++erased;
        return Dialog::onMessage(msg, wParam, lParam);
    }
    using Dialog::end;
    using Dialog::getInstance;

    std::function<void()> onStart;
    int focusID = -1;
    int erased = 0;
};

// A dialog dies just after it has been made.
LRESULT CALLBACK destroyDialog(int code, WPARAM wParam, LPARAM lParam)
{
    const auto* const done = reinterpret_cast<const CWPRETSTRUCT*>(lParam);
    if (code == HC_ACTION && done->message == WM_INITDIALOG)
        DestroyWindow(done->hwnd);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void expectDescription(const WindowsError& error, const char* text)
{
    CHECK(error.getDescription() == std::string(text));
}
} // namespace

TEST_CASE("Dialog: a modal dialog ends with the id of its button and unbinds", "[dialog]")
{
    const int id = GENERATE(IDOK, IDCANCEL, IDCLOSE);
    Probe dialog;
    support::Driver driver([&] {
        SendMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
        return true;
    });
    CHECK(dialog.showModal() == id);
    CHECK((driver.isDone() && !dialog.isOpen()));
    CHECK(dialog.focusID == 10);
}

TEST_CASE("Dialog: 0 and -1 are results of a dialog that ran, whatever the last error", "[dialog]")
{
    const int result = GENERATE(0, -1, 5);
    Probe dialog;
    dialog.onStart = [&] {
        SetLastError(ERROR_GEN_FAILURE);
        dialog.end(result);
        SetLastError(ERROR_GEN_FAILURE);
    };
    CHECK(dialog.showModal() == result);
}

TEST_CASE("Dialog: what a handler throws ends the modal dialog and comes out of it", "[dialog]")
{
    Probe dialog;
    SECTION("from the start")
    {
        dialog.onStart = [] { throw std::runtime_error("in a handler"); };
    }
    SECTION("from a posted message")
    {
        dialog.onStart = [&] { dialog.postMessageW(WM_APP + 1); };
    }
    support::expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    CHECK((!dialog.isOpen() && !support::visibleDialog()));
    dialog.onStart = [&] { dialog.end(3); };
    CHECK(dialog.showModal() == 3);
}

TEST_CASE("Dialog: handled results reach the sender, unhandled messages the dialog manager", "[dialog]")
{
    Probe dialog;
    dialog.create();
    CHECK(SendMessageW(dialog, WM_APP, 0, 0) == 77);
    CHECK(SendMessageW(dialog, WM_APP + 2, 0, 0) == 0);
    CHECK(SendMessageW(dialog, DM_GETDEFID, 0, 0) == MAKELRESULT(IDOK, DC_HASDEFID));
    CHECK(SendMessageW(dialog, WM_GETTEXTLENGTH, 0, 0) == 6);

    const HICON icon = LoadIconW(nullptr, reinterpret_cast<const wchar_t*>(IDI_APPLICATION));
    dialog.setIcon(icon, false);
    CHECK(SendMessageW(dialog, WM_QUERYDRAGICON, 0, 0) == reinterpret_cast<LRESULT>(icon));
    support::expectError<std::runtime_error>([&] { dialog.sendMessageA(WM_APP + 1); }, "in a handler");

    dialog.show(SW_MINIMIZE);
    REQUIRE(dialog.isIconic());
    dialog.erased = 0;
    dialog.sendMessageA(WM_PAINT);
    CHECK(dialog.erased >= 1);
    dialog.setIcon(nullptr, false);
    dialog.erased = 0;
    CHECK(dialog.onQueryDragIcon() == nullptr);
}

TEST_CASE("Dialog: a modeless dialog is owned and its object remembers the template", "[dialog]")
{
    HWND handle = nullptr;
    {
        Dialog none;
        Probe dialog(99);
        dialog.create(nullptr, 1, module);
        handle = dialog;
        CHECK((dialog.getInstance() == module && Window::getWindowFromHandle(handle, false).get() == &dialog));
        dialog.create();
        CHECK((!IsWindow(handle) && dialog.isOpen()));
        handle = dialog;
        dialog.onStart = [] { throw std::runtime_error("in a handler"); };
        support::expectError<std::runtime_error>([&] { dialog.create(); }, "in a handler");
        CHECK((!dialog.isOpen() && !IsWindow(handle)));
        dialog.onStart = nullptr;
        dialog.create();
        handle = dialog;
    }
    CHECK(!IsWindow(handle));
}

TEST_CASE("Dialog: the size is known before the dialog is open, and nothing appears", "[dialog]")
{
    Probe dialog(static_cast<unsigned short>(GENERATE(1, 2)));
    const Size before = dialog.getWindowSize();
    CHECK(!support::visibleDialog());
    dialog.create();
    CHECK(before == dialog.getWindowSize());
    CHECK(before.cx > 100);
}

TEST_CASE("Dialog: each failure has its text", "[dialog]")
{
    Probe missing(99);
    expectDescription(support::thrownBy<WindowsError>([&] { missing.create(); }), "Can't create dialog");
    expectDescription(support::thrownBy<WindowsError>([&] { missing.showModal(); }), "Can't create modal dialog");
    expectDescription(support::thrownBy<WindowsError>([&] { missing.getWindowSize(); }),
                      "Can't create dummy dialog for getSize()");
    expectDescription(support::thrownBy<WindowsError>([&] { missing.end(1); }), "Can't end modal dialog");

    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROCRET, destroyDialog, nullptr, GetCurrentThreadId());
    const auto error = support::thrownBy<WindowsError>([] { Probe().getWindowSize(); });
    UnhookWindowsHookEx(hook);
    // Where the system looks after the dialog it may say itself that there is none.
    expectDescription(error, support::isWine() ? "Can't get window rect for dummy dialog in getSize()"
                                               : error.getDescription());
    CHECK(error.getError() == ERROR_INVALID_WINDOW_HANDLE);
}

TEST_CASE("Dialog: a thousand dialogs leave nothing behind", "[dialog]")
{
    Probe dialog;
    dialog.onStart = [&] { dialog.end(1); };
    dialog.showModal();
    const unsigned before = support::userObjects();
    const std::size_t bytes = support::usedBytes();
    for (int i = 0; i < 1000; ++i)
        dialog.showModal();
    CHECK(support::userObjects() <= before);
    CHECK(support::usedBytes() < bytes + 8000);
    CHECK(!dialog.isOpen());
}
