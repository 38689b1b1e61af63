#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

#include <optional>

namespace tarn {
/// A line of text with links in it:
///
///     links.create(window, 101, Rect(10, 10, 210, 30),
///                  L"See <a href=\"https://example.org\">the page</a> or <a id=\"more\">more</a>.");
///
/// The text is that of the window: setText(). It needs the newer controls, for which a program asks in its manifest.
///
/// The parent hears of a click or Enter in its onNotify(), and asks which() link it was. Failures throw WindowsError.
class TARN_API LinkControl : public Window {
public:
    /// A link of the text.
    struct Link {
        /// From 0 on.
        int index = 0;
        /// What the text says of it; either may be empty.
        ///@{
        BasicString<wchar_t> id;
        BasicString<wchar_t> url;
        ///@}
    };

    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id, with its text at once.
    void create(HWND parent, unsigned short id, const RECT& rect, const wchar_t* text,
                unsigned long style = WS_VISIBLE | WS_TABSTOP);

    /// Before a dialog with such controls in its template ("SysLink") is shown. Throws "Can't create window".
    static void loadClass();

    /// The link that the user follows; nothing for other notifications, and for those of other controls.
    static std::optional<Link> which(const NMHDR& notification);
    /// Throws "Can't get link".
    Link getLink(int index) const;
    /// Whether it looks like one that was followed. Throws "Can't change link".
    void setVisited(int index, bool visited) const;
    /// Whether the user can follow it. Throws "Can't change link".
    void setEnabled(int index, bool enabled) const;
    /// In pixels, for the text at its width.
    int getIdealHeight() const;
};
} // namespace tarn
