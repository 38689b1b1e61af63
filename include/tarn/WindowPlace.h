#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Settings.h>
#include <tarn/Windows.h>

namespace tarn {
/// Where a window of the user's lay when the program ended, among the Settings, so that it begins there again:
///
///     WindowPlace place(settings); // Before settings.load().
///     settings.load();
///     place.show(window);
///     // When the window is to end, in its onDestroy():
///     place.keep(window);
///     settings.save();
///
/// On a screen with other dots than before, the window has the same size for the eye. Used by the window's thread.
/// Failures throw WindowsError.
class TARN_API WindowPlace {
public:
    /// Declares "NAME.Left" and so on in `settings`, which have to live as long. Give each window of the program a name
    /// of its own.
    explicit WindowPlace(Settings& settings, const wchar_t* name = L"Window");

    /// Shows a hidden top-level window at its place, maximised if it was, unless `command` (or who started the program,
    /// with `SW_SHOWDEFAULT`) wants it in another way; a window without a place yet as it was created. One whose title
    /// would be on no screen comes to the nearest, and is made no larger than that. Throws "Can't set window placement"
    /// and what handlers throw.
    void show(HWND window, int command = SW_SHOWDEFAULT) const;
    /// The window's present place into the settings, or where it would be if it were not minimised or maximised. Throws
    /// "Can't get window placement".
    void keep(HWND window) const;

private:
    BasicString<wchar_t> named(const wchar_t* part) const { return name_ + part; }
    long number(const wchar_t* part) const;

    Settings& settings_;
    BasicString<wchar_t> name_;
};
} // namespace tarn
