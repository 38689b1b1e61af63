#include "Test.h"

#include "Driving.h"

#include <tarn/ComboBox.h>
#include <tarn/Dialog.h>
#include <tarn/DialogValues.h>

#include <limits>

namespace {
enum : unsigned short { text = 10, number, amount, box, combo, radio = 20 };

/// A dialog with a control for each kind of value.
struct Form : Dialog {
    Form() : Dialog(1, GetModuleHandleW(nullptr))
    {
        create();
        const auto add = [this](const wchar_t* kind, int id, DWORD style) {
            CreateWindowExW(0, kind, L"", WS_CHILD | style, 0, 0, 50, 50, *this,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
        };
        for (const int id : {number, amount})
            add(L"EDIT", id, 0);
        add(L"BUTTON", box, BS_AUTOCHECKBOX);
        add(GENERATE(L"COMBOBOX", L"LISTBOX"), combo, CBS_DROPDOWNLIST);
        for (int id = radio; id < radio + 3; ++id)
            add(L"BUTTON", id, BS_AUTORADIOBUTTON);
        for (const UINT message : {CB_ADDSTRING, LB_ADDSTRING})
            for (int i = 0; i < 3; ++i)
                SendDlgItemMessageW(*this, combo, message, 0, reinterpret_cast<LPARAM>(L"item"));
    }
};
} // namespace

TEST_CASE("DialogValues: what is shown is taken back, each kind of value")
{
    Form form;
    DialogValues values;
    std::wstring name = L"Ad\x3B1";
    long long count = std::numeric_limits<long long>::min();
    double price = 2.5;
    bool isOn = true;
    int chosen = 2, checked = 2;
    values.addRequiredText(text, name);
    values.addNumber(number, count, count, 1);
    values.addNumber(amount, price, -1, 1e9);
    values.addCheck(box, isOn);
    values.addChoice(combo, chosen);
    values.addRadio(radio, radio + 2, checked);
    form.setCheck(radio, true);
    values.show(form);
    CHECK((form.getTextW(number) == L"-9223372036854775808" && form.getTextW(amount) == L"2.5"));
    name.clear();
    count = 0, price = 0, isOn = false, chosen = checked = -1;
    CHECK(!values.check(form));
    CHECK((name == L"Ad\x3B1" && count == std::numeric_limits<long long>::min() && price == 2.5));
    CHECK((isOn && chosen == 2 && checked == 2));
}

TEST_CASE("DialogValues: a wrong value is refused with a sentence, and all variables stay")
{
    Form form;
    DialogValues values;
    std::string name = "Ada";
    int age = 36, chosen = -1;
    double price = 1;
    values.addText(box, name);
    values.addRequiredText(text, name, L"Name?");
    values.addNumber(number, age, 0, 150);
    values.addNumber(amount, price, 0, 0.5, L"Price?");
    values.addChoice(combo, chosen, L"Choose.");
    const auto refused = [&](int id, const wchar_t* sentence) {
        const auto refusal = values.check(form);
        CHECK((refusal && refusal->id == id && refusal->sentence == sentence));
        CHECK((name == "Ada" && age == 36 && price == 1 && chosen == -1));
    };
    form.setText(text, " \t");
    refused(text, L"Name?");
    form.setText(text, "Eve");
    for (const wchar_t* wrong : {L"", L"-1", L"151", L"4x", L"3.5", L"99999999999999999999", L"\x661"}) {
        form.setText(number, wrong);
        refused(number, L"Enter a whole number from 0 to 150.");
    }
    form.setText(number, " 7 ");
    for (const char* wrong : {"0.51", "nan", "0,5", "1e-3.5"}) {
        form.setText(amount, wrong);
        refused(amount, L"Price?");
    }
    form.setText(amount, "5e-1");
    refused(combo, L"Choose.");
    for (const UINT message : {CB_SETCURSEL, LB_SETCURSEL})
        SendDlgItemMessageW(form, combo, message, 1, 0);
    CHECK((!values.check(form) && name == "Eve" && age == 7 && price == 0.5 && chosen == 1));
    DialogValues optional;
    optional.addChoice(combo, chosen);
    chosen = -1;
    optional.show(form);
    chosen = 2;
    CHECK((!optional.check(form) && chosen == -1));
}

TEST_CASE("DialogValues: a control that the dialog does not have is an error")
{
    Form form;
    std::wstring name;
    int index = 0;
    bool isOn = false;
    const auto fails = [&](auto add) {
        DialogValues values;
        add(values);
        expectWindowsError([&] { values.show(form); }, "Can't retrieve dialog item ID");
        expectWindowsError([&] { values.check(form); }, "Can't retrieve dialog item ID");
    };
    fails([&](DialogValues& v) { v.addText(99, name); });
    fails([&](DialogValues& v) { v.addCheck(99, isOn); });
    fails([&](DialogValues& v) { v.addChoice(99, index); });
    fails([&](DialogValues& v) { v.addRadio(98, 99, index); });
}

TEST_CASE("DialogValues: the user is told, and the control that was refused has the focus")
{
    Form form;
    form.show(SW_SHOW);
    DialogValues values;
    int age = 0;
    values.addNumber(text, age, 1, 2, L"One or two.");
    form.setText(text, "three");
    SetFocus(GetDlgItem(form, IDOK));
    std::wstring said;
    const Driver driver([&] {
        const HWND told = visibleDialog();
        wchar_t sentence[20] = L"";
        if (told == form || !GetDlgItemTextW(told, 0xFFFF, sentence, 20))
            return false;
        said = sentence;
        return EndDialog(told, IDOK) != 0;
    });
    CHECK((!values.take(form) && said == L"One or two."));
    CHECK(GetFocus() == GetDlgItem(form, text));
    form.setText(text, "2");
    CHECK((values.take(form) && age == 2));
}
