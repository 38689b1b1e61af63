#include <tarn/QuestionDialog.h>

#include <tarn/Exception.h>
#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "../foundation/FunctionOf.h"
#include "../foundation/Widened.h"
#include "../windowing/HandlerScope.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarn {
namespace {
constexpr const char* cannotAsk = "Can't show task dialog";

// Null rather than the empty text, which would take up a line.
const wchar_t* orNull(const BasicString<wchar_t>& text) { return text.empty() ? nullptr : text.c_str(); }

template <class Buttons> std::vector<TASKDIALOG_BUTTON> asSystemHas(const Buttons& buttons)
{
    std::vector<TASKDIALOG_BUTTON> result;
    result.reserve(buttons.size());
    for (const auto& button : buttons)
        result.push_back({button.id, button.text.c_str()});
    return result;
}

struct KnownButton {
    unsigned flag;
    int id;
    const wchar_t* text;
};
constexpr KnownButton knownButtons[] = {{TDCBF_OK_BUTTON, IDOK, L"OK"},
                                        {TDCBF_YES_BUTTON, IDYES, L"Yes"},
                                        {TDCBF_NO_BUTTON, IDNO, L"No"},
                                        {TDCBF_RETRY_BUTTON, IDRETRY, L"Retry"},
                                        {TDCBF_CANCEL_BUTTON, IDCANCEL, L"Cancel"},
                                        {TDCBF_CLOSE_BUTTON, IDCLOSE, L"Close"}};

const wchar_t* textOfKnown(int id) { return std::ranges::find(knownButtons, id, &KnownButton::id)->text; }

/// The buttons of a kind of message box, by their ids.
struct BoxKind {
    unsigned type;
    std::size_t count;
    std::array<int, 3> ids;
};
constexpr BoxKind boxKinds[] = {{MB_OK, 1, {IDOK}},
                                {MB_YESNO, 2, {IDYES, IDNO}},
                                {MB_OKCANCEL, 2, {IDOK, IDCANCEL}},
                                {MB_RETRYCANCEL, 2, {IDRETRY, IDCANCEL}},
                                {MB_YESNOCANCEL, 3, {IDYES, IDNO, IDCANCEL}}};

// The first that has as many buttons, and the most of them in their place.
template <class Buttons> const BoxKind& boxFor(const Buttons& buttons)
{
    const auto fit = [&](const BoxKind& kind) {
        int matches = kind.count == buttons.size() ? 0 : -1;
        for (std::size_t i = 0; matches >= 0 && i < kind.count; ++i)
            matches += kind.ids[i] == buttons[i].id;
        return matches;
    };
    return *std::ranges::max_element(boxKinds, {}, fit);
}
} // namespace

QuestionDialog::QuestionDialog(HWND owner) : owner_(owner), options_(owner ? TDF_POSITION_RELATIVE_TO_WINDOW : 0) {}
QuestionDialog::~QuestionDialog() = default;

void QuestionDialog::onCreated() {}
bool QuestionDialog::onButton(int) { return true; }
void QuestionDialog::onRadioButton(int) {}
void QuestionDialog::onCheck(bool) {}
void QuestionDialog::onTimer(unsigned) {}
void QuestionDialog::onLink(const wchar_t*) {}
void QuestionDialog::onHelp() {}

void QuestionDialog::setTitle(const char* title) { title_ = widened(title); }
void QuestionDialog::setTitle(const wchar_t* title) { title_ = title; }
void QuestionDialog::setInstruction(const char* text) { setInstruction(widened(text).c_str()); }
void QuestionDialog::setInstruction(const wchar_t* text)
{
    QuestionInternals::change(*this, instruction_, text, TDE_MAIN_INSTRUCTION);
}
void QuestionDialog::setContent(const char* text) { setContent(widened(text).c_str()); }
void QuestionDialog::setContent(const wchar_t* text) { QuestionInternals::change(*this, content_, text, TDE_CONTENT); }
void QuestionDialog::setDetails(const char* text) { setDetails(widened(text).c_str()); }
void QuestionDialog::setDetails(const wchar_t* text)
{
    QuestionInternals::change(*this, details_, text, TDE_EXPANDED_INFORMATION);
}
void QuestionDialog::setFooter(const char* text) { setFooter(widened(text).c_str()); }
void QuestionDialog::setFooter(const wchar_t* text) { QuestionInternals::change(*this, footer_, text, TDE_FOOTER); }

void QuestionDialog::addButton(int id, const char* text) { buttons_.push_back({id, widened(text)}); }
void QuestionDialog::addButton(int id, const wchar_t* text) { buttons_.push_back({id, text}); }
void QuestionDialog::addRadioButton(int id, const char* text) { radioButtons_.push_back({id, widened(text)}); }
void QuestionDialog::addRadioButton(int id, const wchar_t* text) { radioButtons_.push_back({id, text}); }
void QuestionDialog::setCheckBox(const char* text, bool isChecked) { setCheckBox(widened(text).c_str(), isChecked); }
void QuestionDialog::setCheckBox(const wchar_t* text, bool isChecked)
{
    checkBox_ = text;
    isChecked_ = isChecked;
}

void QuestionDialog::setProgress(int percent)
{
    percent_ = percent;
    setOptions(TDF_SHOW_PROGRESS_BAR, TDF_SHOW_MARQUEE_PROGRESS_BAR);
    QuestionInternals::send(*this, TDM_SET_PROGRESS_BAR_POS, static_cast<WPARAM>(percent), 0);
}
void QuestionDialog::setEndlessProgress() { setOptions(TDF_SHOW_MARQUEE_PROGRESS_BAR, TDF_SHOW_PROGRESS_BAR); }

int QuestionDialog::getRadioButton() const
{
    const bool isPreset = radioButton_ != 0 || radioButtons_.empty() || (options_ & TDF_NO_DEFAULT_RADIO_BUTTON) != 0;
    return isPreset ? radioButton_ : radioButtons_.front().id;
}

void QuestionDialog::QuestionInternals::send(const QuestionDialog& dialog, UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (dialog.hwnd_)
        runningHandlers([&] { SendMessageW(dialog.hwnd_, msg, wParam, lParam); });
}
void QuestionDialog::QuestionInternals::change(const QuestionDialog& dialog, BasicString<wchar_t>& text,
                                               BasicString<wchar_t> next, int element)
{
    text = std::move(next);
    send(dialog, TDM_SET_ELEMENT_TEXT, static_cast<WPARAM>(element), reinterpret_cast<LPARAM>(text.c_str()));
}
void QuestionDialog::press(int id) const
{
    QuestionInternals::send(*this, TDM_CLICK_BUTTON, static_cast<WPARAM>(id), 0);
}
void QuestionDialog::enableButton(int id, bool enable) const
{
    QuestionInternals::send(*this, TDM_ENABLE_BUTTON, static_cast<WPARAM>(id), enable);
}

int QuestionDialog::showModal()
{
    const auto taskDialog =
        functionOf<decltype(TaskDialogIndirect)>(GetModuleHandleW(L"comctl32.dll"), "TaskDialogIndirect");
    if (!taskDialog)
        return showMessageBox();
    const auto buttons = asSystemHas(buttons_), radioButtons = asSystemHas(radioButtons_);
    TASKDIALOGCONFIG config{};
    config.cbSize = sizeof config;
    config.hwndParent = owner_;
    config.dwFlags = static_cast<int>(options_ | TDF_CALLBACK_TIMER | (isChecked_ ? TDF_VERIFICATION_FLAG_CHECKED : 0));
    config.dwCommonButtons = static_cast<int>(commonButtons_);
    config.pszWindowTitle = orNull(title_);
    config.pszMainIcon = MAKEINTRESOURCEW(-picture_); // The platform counts them down from -1.
    config.pszMainInstruction = orNull(instruction_);
    config.pszContent = orNull(content_);
    config.cButtons = static_cast<UINT>(buttons.size());
    config.pButtons = buttons.data();
    config.nDefaultButton = defaultButton_;
    config.cRadioButtons = static_cast<UINT>(radioButtons.size());
    config.pRadioButtons = radioButtons.data();
    config.nDefaultRadioButton = radioButton_;
    config.pszVerificationText = orNull(checkBox_);
    config.pszExpandedInformation = orNull(details_);
    config.pszFooter = orNull(footer_);
    config.pfCallback = &QuestionInternals::onNotification;
    config.lpCallbackData = reinterpret_cast<LONG_PTR>(this);

    struct Unbinding {
        ~Unbinding() { dialog.hwnd_ = nullptr; }
        QuestionDialog& dialog;
    };
    const Unbinding unbinding{*this};
    isEnding_ = false;
    int pressed = 0, selected = 0;
    BOOL isChecked = FALSE;
    const auto cancel = [this]() noexcept {
        isEnding_ = true;
        if (hwnd_)
            PostMessageW(hwnd_, TDM_CLICK_BUTTON, IDCANCEL, 0);
    };
    HRESULTHolder::throwOnError(
        runningLoop([&] { return taskDialog(&config, &pressed, &selected, &isChecked); }, cancel), cannotAsk);
    radioButton_ = selected;
    isChecked_ = isChecked != FALSE;
    return pressed;
}

HRESULT CALLBACK QuestionDialog::QuestionInternals::onNotification(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam,
                                                                   LONG_PTR self)
{
    auto* const dialog = reinterpret_cast<QuestionDialog*>(self);
    dialog->hwnd_ = msg == TDN_DESTROYED ? nullptr : hwnd;
    return guardedCallback(S_OK, {"a handler of a task dialog", hwnd, msg},
                           [&] { return dialog->isEnding_ ? S_OK : handle(*dialog, msg, wParam, lParam); });
}

HRESULT QuestionDialog::QuestionInternals::handle(QuestionDialog& dialog, UINT msg, WPARAM wParam, LPARAM lParam)
{
    switch (msg) {
    case TDN_CREATED:
        if (dialog.options_ & TDF_SHOW_PROGRESS_BAR)
            dialog.setProgress(dialog.percent_);
        send(dialog, TDM_SET_PROGRESS_BAR_MARQUEE, (dialog.options_ & TDF_SHOW_MARQUEE_PROGRESS_BAR) != 0, 0);
        dialog.onCreated();
        return S_OK;
    case TDN_BUTTON_CLICKED:
        return dialog.onButton(static_cast<int>(wParam)) ? S_OK : S_FALSE;
    case TDN_RADIO_BUTTON_CLICKED:
        dialog.onRadioButton(static_cast<int>(wParam));
        return S_OK;
    case TDN_VERIFICATION_CLICKED:
        dialog.onCheck(wParam != FALSE);
        return S_OK;
    case TDN_TIMER:
        dialog.onTimer(static_cast<unsigned>(wParam));
        return S_OK;
    case TDN_HYPERLINK_CLICKED:
        dialog.onLink(reinterpret_cast<const wchar_t*>(lParam));
        return S_OK;
    case TDN_HELP:
        dialog.onHelp();
        return S_OK;
    default:
        return S_OK;
    }
}

std::vector<QuestionDialog::QuestionInternals::Button>
QuestionDialog::QuestionInternals::answers(const QuestionDialog& dialog)
{
    std::vector<Button> result = dialog.buttons_;
    for (const KnownButton& button : knownButtons)
        if (dialog.commonButtons_ & button.flag)
            result.push_back({button.id, button.text});
    if (result.empty())
        result.push_back({IDOK, L"OK"});
    return result;
}

int QuestionDialog::showMessageBox()
{
    const auto buttons = QuestionInternals::answers(*this);
    if (buttons.size() > 3)
        throwWindowsError(ERROR_NOT_SUPPORTED, cannotAsk);
    const BoxKind& kind = boxFor(buttons);
    constexpr unsigned icons[] = {0, MB_ICONWARNING, MB_ICONERROR, MB_ICONINFORMATION, 0};
    unsigned type = kind.type | icons[picture_];
    BasicString<wchar_t> text;
    for (const BasicString<wchar_t>& part : {instruction_, content_, details_, footer_})
        if (!part.empty())
            text.append(text.empty() ? L"" : L"\n\n").append(part);
    const wchar_t* gap = L"\n\n";
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (buttons[i].id == defaultButton_)
            type |= static_cast<unsigned>(i * MB_DEFBUTTON2);
        if (buttons[i].id == kind.ids[i])
            continue;
        const BasicString<wchar_t> meaning = buttons[i].text.replaceAll(L"&", L"");
        text.append(std::exchange(gap, L"\n")).append(textOfKnown(kind.ids[i])).append(L": ").append(meaning);
    }
    for (;;) {
        const int pressed = Window::messageBox(owner_, text.c_str(), title_.c_str(), type);
        const auto place = std::ranges::find(kind.ids, pressed) - kind.ids.begin();
        const int id = buttons[static_cast<std::size_t>(place)].id;
        if (onButton(id))
            return id;
    }
}
} // namespace tarn
