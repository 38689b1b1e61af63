#pragma once

#include <tarn/Export.h>
#include <tarn/Rect.h>
#include <tarn/Size.h>
#include <tarn/Window.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <memory>
#include <vector>

namespace tarn {
class Subclass;

/// Which edges of a window its controls follow when the user sizes it, so that a dialog can be made larger:
///
///     struct FindDialog : Dialog {
///         bool onInitDialog(Window&) override
///         {
///             anchors.add(101, Anchors::left | Anchors::right | Anchors::top | Anchors::bottom); // The list grows.
///             anchors.add(IDOK, Anchors::right | Anchors::bottom);                               // The button moves.
///             anchors.begin(*this);
///             return true;
///         }
///         Anchors anchors;
///     };
///
/// The window needs a frame that can be dragged: in a dialog's template the style `WS_THICKFRAME` instead of
/// `DS_MODALFRAME` (and the extended style `WS_EX_DLGMODALFRAME`, or the title bar has an icon). Keep the object beside
/// the window's; it may end before the window or after it, and can begin again with the next one. Used by the window's
/// thread. Failures throw WindowsError.
class TARN_API Anchors : private boost::noncopyable {
public:
    /// The distance to these edges stays. With two that face each other the control grows with the window; with neither
    /// of two it stays in the same proportion between them.
    enum edge : unsigned { left = 1, top = 2, right = 4, bottom = 8, all = 15 };

    Anchors();
    ~Anchors();

    /// The edges of a control, by its id, once and for all windows to come; again replaces them. What is not added
    /// stays at the upper left.
    void add(int id, unsigned edges);
    /// Follows the window from now on: its present size and its controls' places are what the anchors start from, and
    /// the user can make it no smaller. Throws "Can't find anchored control", "Can't follow size of window".
    void begin(HWND window);
    /// Another smallest size of the whole window, in pixels, after begin().
    void setMinimumSize(const Size& size) { minimum_ = size; }
    /// Where the window is rescaled (it has come to a screen of another resolution), this follows by itself; call it
    /// after having moved controls yourself, to start from their new places.
    void restart();
    /// Lets the window go.
    void end();

private:
    // A combo box has the height of its list besides.
    struct Control {
        int id;
        unsigned edges;
        Rect rect;
        int listHeight;
    };

    static LRESULT CALLBACK onMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR self);
    void handled(UINT msg, WPARAM wParam, LPARAM lParam, const Size& former);
    HWND getWindow() const;
    void measure(HWND window);
    void place() const;

    std::vector<Control> controls_;
    std::unique_ptr<Subclass> subclass_;
    bool isRescaling_ = false;
    bool* ended_ = nullptr; // While a message is under way: whether the window was let go.
    Size start_, minimum_;
};
} // namespace tarn
