#include "../windowing/Windows.h"
#include "Driving.h"

#include <tarn/QuestionDialog.h>

namespace {
constexpr int save = 100, discard = 101, firstKind = 200, secondKind = 201;

/// Does a step when it is shown, and notes what the user does.
struct Asked : QuestionDialog {
    explicit Asked(HWND owner = nullptr) : QuestionDialog(owner)
    {
        setTitle("Pl\x80n"); // In the system's code page, which is not the runtime library's locale.
        setInstruction("Save the changes?");
        addButton(save, "&Save");
        addButton(discard, L"&Discard");
    }
    void onCreated() override { step(*this); }
    bool onButton(int id) override
    {
        events.push_back("button " + std::to_string(id));
        return id != stubborn;
    }
    void onRadioButton(int id) override { events.push_back("radio " + std::to_string(id)); }
    void onCheck(bool isChecked) override { events.push_back(isChecked ? "checked" : "unchecked"); }
    void onHelp() override { events.push_back("help"); }
    void onTimer(unsigned) override
    {
        if (tick)
            tick(*this);
    }

    using QuestionDialog::enableButton;
    using QuestionDialog::getWindowHandle;
    using QuestionDialog::press;
    using QuestionDialog::showMessageBox;

    std::function<void(Asked&)> step = [](Asked& dialog) { dialog.press(discard); };
    std::function<void(Asked&)> tick;
    int stubborn = 0;
    std::vector<std::string> events;
};

BOOL CALLBACK appendText(HWND child, LPARAM texts)
{
    reinterpret_cast<std::wstring*>(texts)->append(Window(child).getTextW()).append(1, L'|');
    return TRUE;
}

std::wstring textsIn(HWND dialog)
{
    std::wstring texts;
    EnumChildWindows(dialog, appendText, reinterpret_cast<LPARAM>(&texts));
    return texts;
}
} // namespace

TEST_CASE("QuestionDialog: it shows its texts and buttons, and gives the one that was pressed")
{
    const OpenWindow owner;
    Asked dialog(owner);
    dialog.setPicture(QuestionDialog::warning);
    dialog.setContent(L"There is m\u00F6re.");
    dialog.setDetails("In detail");
    dialog.setFooter(L"At the foot");
    dialog.setEndlessProgress();
    dialog.setCommonButtons(TDCBF_CANCEL_BUTTON);
    dialog.setDefaultButton(discard);
    std::wstring texts;
    dialog.step = [&](Asked& shown) {
        texts = textsIn(shown.getWindowHandle());
        CHECK(Window(shown.getWindowHandle()).getTextW() == a2w("Pl\x80n", CP_ACP));
        CHECK(!IsWindowEnabled(owner));
        for (const bool isEnabled : {false, true}) {
            shown.enableButton(IDCANCEL, isEnabled);
            CHECK((IsWindowEnabled(GetDlgItem(shown.getWindowHandle(), IDCANCEL)) != FALSE) == isEnabled);
        }
        shown.press(IDCANCEL);
    };
    CHECK(dialog.showModal() == IDCANCEL);
    for (const wchar_t* text : {L"&Save", L"&Discard", L"Cancel", L"At the foot"})
        CHECK(texts.find(text) != std::wstring::npos);
    CHECK((IsWindowEnabled(owner) && !dialog.getWindowHandle()));
    dialog.step = [](Asked& shown) { shown.press(discard); };
    CHECK(dialog.showModal() == discard);
    CHECK(dialog.events == std::vector<std::string>{"button 2", "button 101"});
}

TEST_CASE("QuestionDialog: a button that is refused leaves it open, and radio buttons and the check box are kept")
{
    Asked dialog;
    dialog.addRadioButton(firstKind, "Near");
    dialog.addRadioButton(secondKind, L"Far");
    dialog.setCheckBox("Do not ask again", true);
    dialog.setContent("before");
    dialog.setProgress(40);
    dialog.setOptions(TDF_NO_DEFAULT_RADIO_BUTTON);
    CHECK(dialog.getRadioButton() == 0);
    dialog.setOptions(0, TDF_NO_DEFAULT_RADIO_BUTTON);
    CHECK((dialog.getRadioButton() == firstKind && dialog.isChecked()));
    dialog.stubborn = save;
    dialog.step = [](Asked&) {};
    int ticks = 0;
    dialog.tick = [&](Asked& shown) {
        const HWND hwnd = shown.getWindowHandle();
        if (++ticks == 1) {
            shown.events.clear(); // Of what is selected in the beginning.
            SendMessageW(hwnd, TDM_CLICK_RADIO_BUTTON, secondKind, 0);
            if (const HWND radio = GetDlgItem(hwnd, secondKind)) // Wine's hears of its own buttons only.
                SendMessageW(hwnd, WM_COMMAND, secondKind, reinterpret_cast<LPARAM>(radio));
            SendMessageW(hwnd, TDM_CLICK_VERIFICATION, FALSE, FALSE);
            SendMessageW(hwnd, WM_HELP, 0, 0);
            shown.setProgress(60);
            shown.setContent(L"changed");
            if (const HWND bar = FindWindowExW(hwnd, nullptr, PROGRESS_CLASSW, nullptr))
                CHECK((SendMessageW(bar, PBM_GETPOS, 0, 0) == 60 &&
                       textsIn(hwnd).find(L"changed") != std::wstring::npos));
        } else if (ticks == 2) {
            shown.press(save);
            shown.press(discard);
        }
    };
    CHECK(dialog.showModal() == discard);
    CHECK((dialog.getRadioButton() == secondKind && !dialog.isChecked()));
    CHECK(dialog.events == std::vector<std::string>{"radio 201", "unchecked", "help", "button 100", "button 101"});
}

TEST_CASE("QuestionDialog: what a handler throws ends it and comes out, from another window, too")
{
    struct Thrower : Window {
        void onCommand(Window*, unsigned short, unsigned short) override { throw std::runtime_error("elsewhere"); }
    } other;
    open(other);
    Asked dialog;
    dialog.step = [](Asked&) { throw std::runtime_error("in a handler"); };
    expectError<std::runtime_error>([&] { dialog.showModal(); }, "in a handler");
    dialog.step = [&](Asked&) { other.postMessageW(WM_COMMAND); };
    expectError<std::runtime_error>([&] { dialog.showModal(); }, "elsewhere");
    CHECK((dialog.events.empty() && !visibleDialog()));
}

TEST_CASE("QuestionDialog: the message box that stands in for it says what its buttons mean")
{
    Asked dialog;
    dialog.stubborn = save;
    std::wstring texts;
    int preset = 0;
    const auto answerBy = [&](WPARAM button) {
        return [&, button] {
            const HWND box = visibleDialog();
            if (box)
                texts = textsIn(box), preset = GetDlgCtrlID(GetFocus());
            return pressing(button)();
        };
    };
    SECTION("with buttons of its own, of which the handler refuses one")
    {
        dialog.setDefaultButton(discard);
        dialog.setCommonButtons(TDCBF_CANCEL_BUTTON);
        HWND first = nullptr;
        const Driver driver([&] {
            const HWND box = visibleDialog();
            const bool isSecond = first && box && box != first;
            if (box && box != first) {
                first = box;
                return answerBy(isSecond ? IDNO : IDYES)() && isSecond;
            }
            return false;
        });
        CHECK(dialog.showMessageBox() == discard);
        CHECK(dialog.events == std::vector<std::string>{"button 100", "button 101"});
        CHECK(texts.find(L"Save the changes?\n\nYes: Save\nNo: Discard") != std::wstring::npos);
        CHECK(preset == IDNO);
    }
    SECTION("with the system's, which need no words")
    {
        struct Plain : QuestionDialog {
            using QuestionDialog::showMessageBox;
        } plain;
        plain.setContent("Go on?");
        plain.setCommonButtons(TDCBF_RETRY_BUTTON | TDCBF_CANCEL_BUTTON);
        const Driver driver(answerBy(IDRETRY));
        CHECK((plain.showMessageBox() == IDRETRY && texts.find(L"Go on?|") != std::wstring::npos));
    }
    SECTION("and takes no more than three")
    {
        dialog.setCommonButtons(TDCBF_RETRY_BUTTON | TDCBF_CANCEL_BUTTON);
        expectWindowsError([&] { dialog.showMessageBox(); }, ERROR_NOT_SUPPORTED, "Can't show task dialog");
    }
}
