#include <tarn/TrayIcon.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/LastErrorKept.h"
#include "../foundation/Widened.h"

#include <shellapi.h>

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
// Sent to all windows by a task bar that is made; the first one, or another after a crash of the shell.
UINT taskbarCreated()
{
    static const UINT msg = RegisterWindowMessageW(L"TaskbarCreated");
    return msg;
}

// The shell may not have begun yet, or be beginning again.
bool hasTaskBar() { return FindWindowW(L"Shell_TrayWnd", nullptr) != nullptr; }

// As much as there is room for, without the half of a character.
template <std::size_t size> void copyTo(wchar_t (&target)[size], const wchar_t* text)
{
    const std::size_t length = wcsnlen(text, size - 1);
    const bool isHalf = text[length] && IS_HIGH_SURROGATE(text[length - 1]);
    std::copy_n(text, isHalf ? length - 1 : length, target);
}

Point pointOf(WPARAM wParam) { return Point(static_cast<short>(LOWORD(wParam)), static_cast<short>(HIWORD(wParam))); }
} // namespace

struct TrayIcon::TrayIconInternals {
    static bool tell(const TrayIcon& icon, DWORD what, const wchar_t* title = nullptr, const wchar_t* text = L"",
                     unsigned kind = 0);
    static void change(const TrayIcon& icon, const wchar_t* title = nullptr, const wchar_t* text = L"",
                       unsigned kind = 0);
    static void begin(TrayIcon& icon);
    static void add(TrayIcon& icon);
    static void loadPicture(TrayIcon& icon);
};

TrayIcon::~TrayIcon() noexcept(false)
{
    closeAtEnd([this] { destroy(); }); // Before the class of the window.
}

void TrayIcon::onSelect(const Point&) {}
void TrayIcon::onMenu(const Point&) {}
void TrayIcon::onNoticeSelect() {}

void TrayIcon::create(unsigned icon, HINSTANCE module, const char* tip) { create(icon, module, widened(tip).c_str()); }
void TrayIcon::create(unsigned icon, HINSTANCE module, const wchar_t* tip)
{
    destroy();
    resource_ = icon;
    module_ = module;
    tip_ = tip;
    try {
        TrayIconInternals::begin(*this);
    } catch (...) {
        closeQuietly([this] { destroy(); });
        throw;
    }
}

void TrayIcon::TrayIconInternals::begin(TrayIcon& icon)
{
    const HINSTANCE program = GetModuleHandleW(nullptr);
    icon.class_.create(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, program);
    icon.Window::create(icon.class_, L"", WS_POPUP, RECT(), nullptr, nullptr, program, WS_EX_TOOLWINDOW);
    ChangeWindowMessageFilterEx(icon, taskbarCreated(), MSGFLT_ALLOW, nullptr); // Programs with more rights need that.
    loadPicture(icon);
    add(icon);
}

void TrayIcon::TrayIconInternals::loadPicture(TrayIcon& icon)
{
    icon.picture_.load(icon.resource_, icon.module_, icon.getDPI().toPixels(16));
}

void TrayIcon::setPicture(unsigned icon, HINSTANCE module)
{
    resource_ = icon;
    module_ = module;
    TrayIconInternals::loadPicture(*this);
    TrayIconInternals::change(*this);
}
void TrayIcon::setPicture(HICON icon)
{
    picture_ = Icon(icon, false);
    resource_ = 0;
    TrayIconInternals::change(*this);
}
void TrayIcon::setTip(const char* tip) { setTip(widened(tip).c_str()); }
void TrayIcon::setTip(const wchar_t* tip)
{
    tip_ = tip;
    TrayIconInternals::change(*this);
}

void TrayIcon::showNotice(const char* title, const char* text, notice_kind kind) const
{
    showNotice(widened(title).c_str(), widened(text).c_str(), kind);
}
void TrayIcon::showNotice(const wchar_t* title, const wchar_t* text, notice_kind kind) const
{
    TrayIconInternals::change(*this, title, text, kind);
}
void TrayIcon::hideNotice() const { TrayIconInternals::change(*this, L""); }

int TrayIcon::showMenu(HMENU menu, const POINT& position) const
{
    SetForegroundWindow(*this); // Or a click elsewhere does not close the menu.
    const int command = trackPopupMenu(menu, position, TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON);
    postMessageW(WM_NULL); // Or the next menu closes at once.
    if (command == 0)
        TrayIconInternals::tell(*this, NIM_SETFOCUS);
    return command;
}

// With a title, or an empty one, about a notice.
bool TrayIcon::TrayIconInternals::tell(const TrayIcon& icon, DWORD what, const wchar_t* title, const wchar_t* text,
                                       unsigned kind)
{
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof data;
    data.hWnd = icon;
    data.uCallbackMessage = message;
    data.hIcon = icon.picture_;
    data.uVersion = NOTIFYICON_VERSION_4;
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_SHOWTIP;
    copyTo(data.szTip, icon.tip_.c_str());
    if (title) {
        data.uFlags |= NIF_INFO;
        data.dwInfoFlags = kind | NIIF_RESPECT_QUIET_TIME;
        copyTo(data.szInfoTitle, title);
        copyTo(data.szInfo, text);
    }
    return Shell_NotifyIconW(what, &data) != FALSE;
}

void TrayIcon::TrayIconInternals::change(const TrayIcon& icon, const wchar_t* title, const wchar_t* text, unsigned kind)
{
    const auto tellOrWait = [&] { return tell(icon, NIM_MODIFY, title, text, kind) || !hasTaskBar(); };
    if (icon.isShown_)
        ensureGDI(tellOrWait, "Can't change tray icon");
}

// A task bar that is busy reports a failure though it has added the icon.
void TrayIcon::TrayIconInternals::add(TrayIcon& icon)
{
    if (!hasTaskBar())
        return;
    const auto isThere = [&] {
        const LastErrorKept ofAdding;
        return tell(icon, NIM_MODIFY);
    };
    ensureGDI([&] { return tell(icon, NIM_ADD) || isThere(); }, "Can't add tray icon");
    tell(icon, NIM_SETVERSION); // Which a busy one takes later.
    icon.isShown_ = true;
}

LRESULT TrayIcon::onMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == taskbarCreated()) {
        isShown_ = false;
        TrayIconInternals::add(*this);
        return 0;
    }
    if (msg == WM_DESTROY && std::exchange(isShown_, false))
        TrayIconInternals::tell(*this, NIM_DELETE);
    if (msg == WM_DPICHANGED && resource_)
        setPicture(resource_, module_);
    if (msg != message)
        return Window::onMessage(msg, wParam, lParam);
    switch (LOWORD(lParam)) {
    case NIN_SELECT:
    case NIN_KEYSELECT:
        onSelect(pointOf(wParam));
        return 0;
    case WM_CONTEXTMENU:
        onMenu(pointOf(wParam));
        return 0;
    case NIN_BALLOONUSERCLICK:
        onNoticeSelect();
        return 0;
    default:
        return Window::onMessage(msg, wParam, lParam);
    }
}
} // namespace tarn
