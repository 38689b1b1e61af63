#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Icon.h>
#include <tarn/Point.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>
#include <tarn/Windows.h>

namespace tarn {
/// A program's icon beside the clock, with its notices. Derive from it to hear of the user:
///
///     struct MailIcon : TrayIcon {
///         void onSelect(const Point&) override { openMail(); }
///         void onMenu(const Point& position) override
///         {
///             if (showMenu(menu.getSubMenu(0), position) == ID_EXIT)
///                 PostQuitMessage(0);
///         }
///         Menu menu{ID_MAIL, GetModuleHandleW(nullptr)};
///     };
///
/// The icon goes with the object, and comes back by itself when the task bar is made anew. It is a hidden window, so
/// what holds for those holds for it: what handlers throw comes out of the loop, for instance. Texts are copied.
/// Failures throw WindowsError.
class TARN_API TrayIcon : public Window {
public:
    /// What picture a notice has.
    enum notice_kind { plain, information, warning, error };
    /// The message in which the task bar tells of the user, in the platform's fourth version. What has no handler here
    /// (`NIN_POPUPOPEN`, double clicks) comes to onMessage() as this.
    static constexpr UINT message = WM_APP;

    TrayIcon() = default;
    ~TrayIcon() noexcept(false) override;

    /// Shows an icon of the module's resources, in the size for the screen. The tip, what the mouse shows over it, may
    /// have 127 characters. While there is no task bar the icon waits for one. Throws "Can't load icon", "Can't add
    /// tray icon" and what Window::create() throws.
    ///@{
    void create(unsigned icon, HINSTANCE module, const char* tip);
    void create(unsigned icon, HINSTANCE module, const wchar_t* tip);
    ///@}
    /// Whether it is in the task bar.
    bool isShown() const { return isShown_; }

    /// Throws "Can't load icon", "Can't change tray icon".
    void setPicture(unsigned icon, HINSTANCE module);
    /// One that was drawn or loaded otherwise; borrowed. Throws "Can't change tray icon".
    void setPicture(HICON icon);
    /// Throws "Can't change tray icon".
    ///@{
    void setTip(const char* tip);
    void setTip(const wchar_t* tip);
    ///@}

    /// A title of up to 63 characters and a text of up to 255; the system says when, and whether at all. Throws "Can't
    /// change tray icon".
    ///@{
    void showNotice(const char* title, const char* text, notice_kind kind = information) const;
    void showNotice(const wchar_t* title, const wchar_t* text, notice_kind kind = information) const;
    ///@}
    /// Throws the same.
    void hideNotice() const;
    /// Shows a menu at a position on the screen, and gives the command that was chosen, 0 for none. Throws as
    /// trackPopupMenu().
    int showMenu(HMENU menu, const POINT& position) const;

    /// Clicked, or chosen by the keyboard.
    virtual void onSelect(const Point& position);
    /// A menu is wanted.
    virtual void onMenu(const Point& position);
    /// The notice was clicked.
    virtual void onNoticeSelect();

    /// Calls the handlers above.
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

private:
    struct TrayIconInternals; // Derived classes see private names, and should see none that a program has.

    WindowClass class_;
    Icon picture_;
    unsigned resource_ = 0;
    HINSTANCE module_ = nullptr;
    BasicString<wchar_t> tip_;
    bool isShown_ = false;
};
} // namespace tarn
