#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <commctrl.h>

#include <boost/noncopyable.hpp>

#include <vector>

namespace tarn {
/// The platform's task dialog, a question with buttons that say what they do, in place of a message box:
///
///     QuestionDialog dialog(window);
///     dialog.setInstruction(L"Save the changes to plan.txt?");
///     dialog.addButton(100, L"&Save");
///     dialog.addButton(101, L"Do&n't save");
///     dialog.setCommonButtons(TDCBF_CANCEL_BUTTON);
///     if (dialog.showModal() == 100)
///         save();
///
/// Derive from it to hear of what happens while it is shown; what a handler throws ends the dialog and comes out of
/// showModal(). An object may be shown again. Texts are copied.
///
/// Only the controls of today have it, which a program made with `tarn_add_program` gets. Elsewhere a message box asks:
/// its text says what its buttons stand for, the radio buttons and the check box stay as they were preset, and there is
/// no progress and no onTimer(). It has room for three buttons; with more, showModal() throws.
///
/// Failures throw COMError or WindowsError as HRESULTHolder::throwOnError does.
class TARN_API QuestionDialog : private boost::noncopyable {
public:
    /// Beside the instruction.
    enum picture { no_picture, warning, error, information, shield };

    /// `owner` is disabled meanwhile, and the dialog appears over it; null for none.
    explicit QuestionDialog(HWND owner = nullptr);
    virtual ~QuestionDialog();

    /// Null or empty has the program's name.
    ///@{
    void setTitle(const char* title);
    void setTitle(const wchar_t* title);
    ///@}
    /// None unless set.
    void setPicture(picture what) { picture_ = what; }

    // The texts, from above to below; while the dialog is shown they change at once.

    /// In one short sentence what it is about.
    ///@{
    void setInstruction(const char* text);
    void setInstruction(const wchar_t* text);
    ///@}
    /// What there is to say beyond that.
    ///@{
    void setContent(const char* text);
    void setContent(const wchar_t* text);
    ///@}
    /// What is seen when the user asks for it.
    ///@{
    void setDetails(const char* text);
    void setDetails(const wchar_t* text);
    ///@}
    /// The line at the bottom.
    ///@{
    void setFooter(const char* text);
    void setFooter(const wchar_t* text);
    ///@}

    // The buttons. Without any there is OK.

    /// Those of the system, `TDCBF_...`, behind those with a text of their own.
    void setCommonButtons(unsigned buttons) { commonButtons_ = buttons; }
    /// With the option `TDF_USE_COMMAND_LINKS` they stand below each other, and what follows on a line break is a note.
    ///@{
    void addButton(int id, const char* text);
    void addButton(int id, const wchar_t* text);
    ///@}
    /// The first one is selected, unless setDefaultRadioButton() says otherwise.
    ///@{
    void addRadioButton(int id, const char* text);
    void addRadioButton(int id, const wchar_t* text);
    ///@}
    /// What Enter presses; the first button unless set.
    void setDefaultButton(int id) { defaultButton_ = id; }
    /// What is selected at first.
    void setDefaultRadioButton(int id) { radioButton_ = id; }
    /// One check box, "Do not ask again" for instance.
    ///@{
    void setCheckBox(const char* text, bool isChecked);
    void setCheckBox(const wchar_t* text, bool isChecked);
    ///@}

    /// Sets and then clears `TDF_...`: `TDF_ALLOW_DIALOG_CANCELLATION` for Escape without a Cancel button,
    /// `TDF_ENABLE_HYPERLINKS` for onLink().
    void setOptions(unsigned set, unsigned clear = 0) { options_ = (options_ | set) & ~clear; }
    /// A bar that shows how much is done: called before the dialog is shown it has one, called again it moves.
    void setProgress(int percent);
    /// A bar that only moves, from the beginning.
    void setEndlessProgress();

    /// What was pressed: the id of a button, `IDOK` and its like for those of the system. Throws "Can't show task
    /// dialog".
    int showModal();
    /// What was selected last, or is to be; 0 without radio buttons.
    int getRadioButton() const;
    /// Whether the check box was checked last, or is to be.
    bool isChecked() const { return isChecked_; }

protected:
    // While it is shown; without a dialog they do nothing.

    /// Null when it is not shown.
    HWND getWindowHandle() const { return hwnd_; }
    /// As if the user pressed it.
    void press(int id) const;
    /// Whether the user can press it.
    void enableButton(int id, bool enable) const;

    /// The dialog is there, and not visible yet.
    virtual void onCreated();
    /// A button is pressed: true ends the dialog, false leaves it open.
    virtual bool onButton(int id);
    /// The user selects another.
    virtual void onRadioButton(int id);
    /// The user changes the check box.
    virtual void onCheck(bool isChecked);
    /// About every 200 milliseconds, with the time since the dialog began.
    virtual void onTimer(unsigned elapsedMs);
    /// The user clicks `<a href="...">` in a text.
    virtual void onLink(const wchar_t* href);
    /// The user presses F1.
    virtual void onHelp();

    /// What showModal() does where there are no task dialogs: a message box with the same meaning. Throws "Can't show
    /// task dialog" for more than three buttons, and "Can't show message box".
    virtual int showMessageBox();

private:
    // Derived classes see private names, and should see none that a program has.
    struct QuestionInternals {
        struct Button {
            int id;
            BasicString<wchar_t> text;
        };

        static HRESULT CALLBACK onNotification(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, LONG_PTR self);
        static HRESULT handle(QuestionDialog& dialog, UINT msg, WPARAM wParam, LPARAM lParam);
        static void send(const QuestionDialog& dialog, UINT msg, WPARAM wParam, LPARAM lParam);
        static void change(const QuestionDialog& dialog, BasicString<wchar_t>& text, BasicString<wchar_t> next,
                           int element);
        static std::vector<Button> answers(const QuestionDialog& dialog);
    };

    HWND owner_;
    HWND hwnd_ = nullptr;
    bool isEnding_ = false; // A handler threw: no handler is asked any more.
    BasicString<wchar_t> title_, instruction_, content_, details_, footer_, checkBox_;
    std::vector<QuestionInternals::Button> buttons_, radioButtons_;
    picture picture_ = no_picture;
    unsigned commonButtons_ = 0;
    unsigned options_;
    int defaultButton_ = 0, radioButton_ = 0, percent_ = 0;
    bool isChecked_ = false;
};
} // namespace tarn
