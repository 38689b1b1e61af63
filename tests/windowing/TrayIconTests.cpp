#include "Diverted.h"
#include "Windows.h"

#include <tarn/MessageLoop.h>
#include <tarn/TrayIcon.h>

#include <shellapi.h>

namespace {
constexpr unsigned picture = 32512; // The system's, for any program.

struct Noting : TrayIcon {
    void onSelect(const Point& position) override { note("select", position); }
    void onMenu(const Point& position) override { note("menu", position); }
    void onNoticeSelect() override { throw std::runtime_error("in a handler"); }
    void note(const char* what, const Point& position)
    {
        events.push_back(std::string(what) + " " + std::to_string(position.x) + " " + std::to_string(position.y));
    }
    std::vector<std::string> events;
};

std::vector<DWORD> told;
NOTIFYICONDATAW last;
BOOL isTaken;

BOOL WINAPI listen(DWORD what, NOTIFYICONDATAW* data)
{
    told.push_back(what);
    last = *data;
    return isTaken;
}

std::vector<DWORD> takeTold() { return std::exchange(told, {}); }
using Told = std::vector<DWORD>;
} // namespace

TEST_CASE("TrayIcon: the task bar is told of its picture, tip and notices, also one that is made anew, and of its end")
{
    REQUIRE(FindWindowW(L"Shell_TrayWnd", nullptr));
    const Diverted calls(L"shell32.dll", "Shell_NotifyIconW", &listen);
    isTaken = TRUE;
    TrayIcon icon;
    icon.create(picture, nullptr, "Mail");
    CHECK(takeTold() == Told{NIM_ADD, NIM_SETVERSION});
    constexpr UINT flags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_SHOWTIP;
    CHECK((icon.isShown() && !IsWindowVisible(icon)));
    CHECK((last.hWnd == icon && last.uCallbackMessage == TrayIcon::message && last.hIcon && last.uFlags == flags));
    CHECK((last.szTip == std::wstring(L"Mail") && last.uVersion == NOTIFYICON_VERSION_4));
    icon.setTip(std::wstring(200, L'x').c_str());
    CHECK(last.szTip == std::wstring(127, L'x'));
    icon.setTip((std::wstring(126, L'x') + L"\xD83D\xDE00").c_str()); // No half of a character is left.
    CHECK(last.szTip == std::wstring(126, L'x'));
    icon.setTip("narrow");
    CHECK(last.szTip == std::wstring(L"narrow"));
    icon.showNotice("Mail", "A letter", TrayIcon::warning);
    CHECK((last.uFlags == (flags | NIF_INFO) && last.dwInfoFlags == (NIIF_WARNING | NIIF_RESPECT_QUIET_TIME)));
    CHECK((last.szInfoTitle == std::wstring(L"Mail") && last.szInfo == std::wstring(L"A letter")));
    icon.hideNotice();
    CHECK((last.uFlags == (flags | NIF_INFO) && !*last.szInfoTitle && !*last.szInfo));
    CHECK(takeTold() == Told(5, NIM_MODIFY));
    Rect place(0, 0, 9, 9);
    const auto changeDots = [&] { icon.sendMessageA(WM_DPICHANGED, MAKEWPARAM(96, 96), LPARAM(&place)); };
    changeDots(); // The picture of the resource is loaded anew,
    CHECK(takeTold() == Told{NIM_MODIFY});
    const HICON other = LoadIconW(nullptr, IDI_WARNING);
    icon.setPicture(other);
    changeDots(); // a borrowed one stays.
    CHECK((takeTold() == Told{NIM_MODIFY} && last.hIcon == other));
    icon.setPicture(picture, nullptr);
    CHECK((takeTold() == Told{NIM_MODIFY} && last.hIcon != other));
    icon.create(picture, nullptr, "Mail");
    CHECK(takeTold() == Told{NIM_DELETE, NIM_ADD, NIM_SETVERSION});
    icon.sendMessageA(RegisterWindowMessageW(L"TaskbarCreated"));
    CHECK(takeTold() == Told{NIM_ADD, NIM_SETVERSION});
    isTaken = FALSE;
    expectWindowsError([&] { icon.setTip(L"gone"); }, "Can't change tray icon");
    told.clear();
    expectWindowsError([&] { icon.create(picture, nullptr, "Mail"); }, "Can't add tray icon");
    CHECK((takeTold() == Told{NIM_DELETE, NIM_ADD, NIM_MODIFY} && !icon.isOpen() && !icon.isShown()));
}

TEST_CASE("TrayIcon: what the user does comes to its handlers, with the place on the screen")
{
    Noting icon;
    icon.create(picture, nullptr, L"Mail");
    const auto tell = [&](UINT what, short x, short y) {
        icon.sendMessageA(TrayIcon::message, static_cast<WPARAM>(MAKELONG(x, y)), static_cast<LPARAM>(what));
    };
    tell(NIN_SELECT, 1200, 1000);
    tell(WM_LBUTTONDOWN, 1, 1);
    tell(WM_CONTEXTMENU, -20, 5);
    tell(NIN_KEYSELECT, 3, 4);
    CHECK(icon.events == std::vector<std::string>{"select 1200 1000", "menu -20 5", "select 3 4"});
    icon.postMessageW(TrayIcon::message, 0, NIN_BALLOONUSERCLICK);
    expectError<std::runtime_error>([] { runMessageLoop(); }, "in a handler");
}

TEST_CASE("TrayIcon: without its picture nothing is left")
{
    TrayIcon icon;
    expectWindowsError([&] { icon.create(4711, GetModuleHandleW(nullptr), L"Mail"); }, "Can't load icon");
    CHECK((!icon.isOpen() && !icon.isShown()));
    icon.create(picture, nullptr, L"Mail");
    CHECK(icon.isShown());
}
