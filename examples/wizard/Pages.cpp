#include "Pages.h"

#include "Ids.h"

#include <tarn/LinkControl.h>
#include <tarn/PropertySheet.h>
#include <tarn/RichEdit.h>

#include <string>
#include <utility>

namespace {
constexpr int fewest = 1, most = 8;
constexpr int goOn = 0, stay = -1;
const HINSTANCE program = GetModuleHandleW(nullptr);
} // namespace

OrderPage::OrderPage(unsigned short resource, unsigned short title, unsigned long buttons, Order& order)
    : PropertyPage(resource, program), order_(order), buttons_(buttons)
{
    setHeader(title, static_cast<unsigned short>(title + 1));
}

int OrderPage::onActivate()
{
    setWizardButtons(buttons_);
    return 0;
}

int OrderPage::answer(int id, const wchar_t* hint) const
{
    setText(ID_HINT, hint);
    if (!*hint)
        return goOn;
    sendMessageA(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(*this, id)), TRUE);
    return stay;
}

NamePage::NamePage(Order& order) : OrderPage(PAGE_NAME, TEXT_NAME, PSWIZB_NEXT, order) {}

int NamePage::onNext()
{
    order_.name = getTextW(ID_NAME);
    const bool isBlank = std::wstring(order_.name.c_str()).find_first_not_of(L' ') == std::wstring::npos;
    return answer(ID_NAME, isBlank ? L"A name is needed for the tickets." : L"");
}

TicketsPage::TicketsPage(Order& order) : OrderPage(PAGE_TICKETS, TEXT_TICKETS, PSWIZB_BACK | PSWIZB_NEXT, order) {}

int TicketsPage::onNext()
{
    BOOL isNumber = FALSE;
    order_.tickets = static_cast<int>(GetDlgItemInt(*this, ID_TICKETS, &isNumber, TRUE));
    const bool isValid = isNumber && order_.tickets >= fewest && order_.tickets <= most;
    return answer(ID_TICKETS, isValid ? L"" : L"The number of tickets is a number from 1 to 8.");
}

SummaryPage::SummaryPage(Order& order) : OrderPage(PAGE_SUMMARY, TEXT_SUMMARY, PSWIZB_BACK | PSWIZB_FINISH, order)
{
    tarn::RichEdit::loadClass(); // For the template.
    tarn::LinkControl::loadClass();
}

int SummaryPage::onActivate()
{
    const std::wstring tickets = std::to_wstring(order_.tickets) + (order_.tickets == 1 ? L" ticket" : L" tickets");
    const tarn::RichEdit summary(GetDlgItem(*this, ID_SUMMARY));
    summary.setText((tickets + L" for " + order_.name.c_str() + L".\nFinish orders them.").c_str());
    tarn::RichEdit::CharacterFormat strong;
    strong.isBold = true;
    strong.size = 12;
    summary.setSelection(0, static_cast<int>(tickets.size()));
    summary.setFormat(strong);
    summary.setSelection(0, 0);
    return OrderPage::onActivate();
}

int SummaryPage::onBack() { return std::exchange(wanted_, goOn); }

LRESULT SummaryPage::onNotify(const NMHDR& header)
{
    const auto link = tarn::LinkControl::which(header);
    if (!link)
        return OrderPage::onNotify(header);
    wanted_ = link->id == L"name" ? PAGE_NAME : PAGE_TICKETS;
    getSheet()->pressButton(PSBTN_BACK);
    return 0;
}
