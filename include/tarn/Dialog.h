#pragma once

#include <tarn/Export.h>
#include <tarn/Font.h>
#include <tarn/Window.h>
#include <tarn/Windows.h>

namespace tarn {
/// A dialog made from a template in a module's resources, shown modally or beside other windows.
///
/// Derive from it, fill the controls in onInitDialog(), and override onCommand() for the buttons. As it
/// stands, `IDOK`, `IDCANCEL` and `IDCLOSE` end the dialog with their id. Default processing is the dialog
/// manager's: a handler's defaultWindowProc() hands the message to it when the handler is done.
///
/// A dialog of create() is owned and dies with the object; that of showModal() is bound to the object
/// while it is open. Do not call either on an open dialog. Failures throw WindowsError, and what a handler
/// throws ends a modal dialog and comes out of its showModal().
///
/// Of a handled message the value is the message's result, with one exception that the system makes and this
/// class does not: where the system takes the result from the dialog procedure itself (`WM_COMPAREITEM`,
/// `WM_CTLCOLOR...`, `WM_CHARTOITEM`, `WM_VKEYTOITEM`), a handled message gives 1 whatever the handler
/// returned. Sort the items of a list before adding them, and answer the others in a procedure of
/// `SetWindowSubclass`. `WM_QUERYDRAGICON` gives its icon.
class TARN_API Dialog : public Window {
public:
    Dialog() = default;
    /// What create() and showModal() use: the template's number, the module that has it, and the window that owns the
    /// dialog (null: none).
    ///@{
    Dialog(unsigned short resource, HINSTANCE instance) : Dialog(nullptr, resource, instance) {}
    Dialog(HWND parent, unsigned short resource, HINSTANCE instance)
        : resource_(resource), instance_(instance), parent_(parent)
    {
    }
    ///@}

    /// Hands the message being handled to the dialog manager; it runs when the handler has returned.
    void defaultWindowProc() override;
    void onCommand(Window* sender, unsigned short code, unsigned short id) override;
    /// Draws the icon of a minimised dialog.
    void onPaint() override;
    /// The big icon, else the small one, else the default's.
    HICON onQueryDragIcon() override;
    /// Gives font, controls and dialog the size for the new screen.
    void onDPIChanged(const DPI& dpi, const Rect& suggested) override;
    /// All controls are there, nothing is visible yet. True lets the dialog manager set the focus, to
    /// `focus` (which is not open when no control can have it); false when the handler set it itself.
    virtual bool onInitDialog(Window& focus);

    /// A modeless dialog; an open one of the object is destroyed before. Override onCommand() and use
    /// destroy() there, because end() only hides such a dialog. For the keyboard the program needs a MessageLoop, or a
    /// loop that passes messages through handleDialogMessage(). What is given here is what the shorter forms and
    /// showModal() use from then on. Throw "Can't create dialog".
    ///@{
    void create(HWND parent, unsigned short resource, HINSTANCE instance);
    void create(HWND parent);
    void create();
    ///@}
    /// Runs the dialog until end() and returns what was given there. Throws "Can't create modal dialog".
    int showModal() const;
    /// Of the whole window, in pixels. Before the dialog is open it is that of a hidden one made from the
    /// template. Throws "Can't create dummy dialog for getSize()",
    /// "Can't get window rect for dummy dialog in getSize()".
    Size getWindowSize() const;

protected:
    /// Throws "Can't end modal dialog".
    void end(int result) const;
    /// What was given last to the constructor or create(); null and 0 at first.
    ///@{
    HINSTANCE getInstance() const { return instance_; }
    unsigned short getResource() const { return resource_; }
    ///@}

    /// Binds the window and calls onInitDialog(): the body of dialog procedures for `WM_INITDIALOG`.
    INT_PTR initialize(HWND hwnd, HWND focus);
    /// The dialog procedure of all dialogs.
    static INT_PTR CALLBACK dlgProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);

private:
    friend class PropertyPage; // Its procedure differs in the first message.

    struct DialogInternals {
        static INT_PTR route(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
    };

    unsigned short resource_ = 0;
    HINSTANCE instance_ = nullptr;
    HWND parent_ = nullptr;
    DPI dpi_;   // What the controls have the size for.
    Font font_; // What they have since the dots have changed; the template's belongs to the system.
};
} // namespace tarn
