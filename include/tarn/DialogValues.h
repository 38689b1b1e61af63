#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

#include <boost/noncopyable.hpp>

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace tarn {
/// The values that a dialog or page asks for: shows variables in its controls, checks what the user has entered, and
/// puts it into the variables, all of it or nothing.
///
/// Name each control and its variable once, show() them in onInitDialog(), and take() them when `IDOK` comes to
/// onCommand() (in a PropertyPage in onDeactivate()):
///
///     struct PersonDialog : Dialog {
///         PersonDialog(HWND owner) : Dialog(owner, 100, GetModuleHandleW(nullptr))
///         {
///             values.addRequiredText(101, name, L"Enter a name.");
///             values.addNumber(102, age, 0, 150);
///         }
///         bool onInitDialog(Window&) override { return values.show(*this), true; }
///         void onCommand(Window* sender, unsigned short code, unsigned short id) override
///         {
///             if (id != IDOK || values.take(*this))
///                 Dialog::onCommand(sender, code, id);
///         }
///         BasicString<wchar_t> name;
///         int age = 0;
///         DialogValues values;
///     };
///
/// The variables have to live as long as the object uses them. A sentence tells the user what to enter; without one
/// there is an English sentence for the check. Ids are those of the controls; one that the dialog does not have throws
/// WindowsError "Can't retrieve dialog item ID" when it is to be shown or read.
class TARN_API DialogValues : private boost::noncopyable {
public:
    /// What the user has entered wrongly.
    struct Refusal {
        /// Of the control.
        int id;
        /// For the user.
        BasicString<wchar_t> sentence;
    };

    /// A text field; any text will do.
    ///@{
    void addText(int id, std::string& value);
    void addText(int id, std::wstring& value);
    ///@}
    /// A text field that has to have more than blanks.
    ///@{
    void addRequiredText(int id, std::string& value, const wchar_t* sentence = nullptr);
    void addRequiredText(int id, std::wstring& value, const wchar_t* sentence = nullptr);
    ///@}
    /// A text field with a whole number from `min` to `max`.
    template <detail::Number T>
    void addNumber(int id, T& value, std::type_identity_t<T> min, std::type_identity_t<T> max,
                   const wchar_t* sentence = nullptr)
    {
        static_assert(std::numeric_limits<T>::digits <= std::numeric_limits<long long>::digits,
                      "a number of 64 bits has to have a sign");
        addInteger(
            id, [&value] { return static_cast<long long>(value); },
            [&value](long long number) { value = static_cast<T>(number); }, min, max, sentence);
    }
    /// A text field with a number from `min` to `max`, with a decimal point whatever the locale.
    void addNumber(int id, double& value, double min, double max, const wchar_t* sentence = nullptr);
    /// A check box.
    void addCheck(int id, bool& value);
    /// A list or combo box in which one item can be selected: its index, -1 for none, which is refused if there is a
    /// sentence. Fill the box before show().
    void addChoice(int id, int& index, const wchar_t* sentence = nullptr);
    /// Radio buttons with ids from `first` to `last`: which one is checked, counted from 0; -1 for none.
    void addRadio(int first, int last, int& index);

    /// Puts the variables into the controls.
    void show(const Window& dialog) const;
    /// Takes what the controls have; false, and all variables as they were, when something is refused: the sentence is
    /// shown in a message box, and the control has the focus then.
    bool take(const Window& dialog) const;
    /// The same without telling the user: the first control that was refused, and nothing when all is well.
    std::optional<Refusal> check(const Window& dialog) const;

private:
    /// Puts what was read into the variable; empty when it was refused.
    using Taking = std::function<void()>;
    struct Control {
        int id;
        std::function<void(const Window&)> show;
        std::function<Taking(const Window&)> read;
        BasicString<wchar_t> sentence;
    };

    template <class Text> void addTextTo(int id, Text& value, bool isRequired, const wchar_t* sentence);
    void addInteger(int id, const std::function<long long()>& get, const std::function<void(long long)>& set,
                    long long min, long long max, const wchar_t* sentence);

    std::vector<Control> controls_;
};
} // namespace tarn
