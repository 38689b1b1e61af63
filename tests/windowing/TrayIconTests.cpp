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

/// Whether the task bar knows an icon of this window.
bool isKnown(HWND window, DWORD message = NIM_MODIFY)
{
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof data;
    data.hWnd = window;
    return Shell_NotifyIconW(message, &data) != FALSE;
}
} // namespace

TEST_CASE("TrayIcon: it is in the task bar for as long as the object lives, also when the bar is made anew")
{
    REQUIRE(FindWindowW(L"Shell_TrayWnd", nullptr));
    HWND window = nullptr;
    {
        TrayIcon icon;
        icon.create(picture, nullptr, "Mail");
        window = icon;
        CHECK((icon.isShown() && isKnown(window) && !IsWindowVisible(window)));
        icon.setTip((std::wstring(126, L'x') + L"\xD83D\xDE00").c_str());
        icon.setTip("narrow");
        icon.setPicture(LoadIconW(nullptr, IDI_WARNING));
        icon.setPicture(picture, nullptr);
        icon.showNotice("Mail", "A letter has come", TrayIcon::warning);
        icon.hideNotice();

        CHECK(isKnown(window, NIM_DELETE));
        expectWindowsError([&] { icon.setTip(L"gone"); }, "Can't change tray icon");
        icon.sendMessageA(RegisterWindowMessageW(L"TaskbarCreated"));
        CHECK((icon.isShown() && isKnown(window)));
    }
    CHECK((!IsWindow(window) && !isKnown(window)));
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
