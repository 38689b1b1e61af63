#include "Pages.h"

#include "Ids.h"

#include <string>

namespace {
constexpr int fewest = 1, most = 8;
constexpr int goOn = 0, stay = -1;
const HINSTANCE program = GetModuleHandleW(nullptr);

tarn::BasicString<wchar_t> textOf(HWND page, int id)
{
    wchar_t text[80];
    GetDlgItemTextW(page, id, text, 80);
    return text;
}
} // namespace

OrderPage::OrderPage(unsigned short resource, unsigned short title, unsigned long buttons, Order& order)
    : PropertyPage(resource, program), order_(order), buttons_(buttons)
{
    setHeader(title, static_cast<unsigned short>(title + 1));
}

int OrderPage::onActivate()
{
    PostMessageW(GetParent(*this), PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(buttons_));
    return 0;
}

bool OrderPage::accept(const wchar_t* hint) const
{
    SetDlgItemTextW(*this, ID_HINT, hint);
    return *hint == 0;
}

NamePage::NamePage(Order& order) : OrderPage(PAGE_NAME, TEXT_NAME, PSWIZB_NEXT, order) {}

int NamePage::onNext()
{
    order_.name = textOf(*this, ID_NAME);
    const bool isBlank = std::wstring(order_.name.c_str()).find_first_not_of(L' ') == std::wstring::npos;
    return accept(isBlank ? L"A name is needed for the tickets." : L"") ? goOn : stay;
}

TicketsPage::TicketsPage(Order& order) : OrderPage(PAGE_TICKETS, TEXT_TICKETS, PSWIZB_BACK | PSWIZB_NEXT, order) {}

int TicketsPage::onNext()
{
    BOOL isNumber = FALSE;
    order_.tickets = static_cast<int>(GetDlgItemInt(*this, ID_TICKETS, &isNumber, TRUE));
    const bool isValid = isNumber && order_.tickets >= fewest && order_.tickets <= most;
    return accept(isValid ? L"" : L"The number of tickets is a number from 1 to 8.") ? goOn : stay;
}

SummaryPage::SummaryPage(Order& order) : OrderPage(PAGE_SUMMARY, TEXT_SUMMARY, PSWIZB_BACK | PSWIZB_FINISH, order) {}

int SummaryPage::onActivate()
{
    const std::wstring text = std::to_wstring(order_.tickets) + (order_.tickets == 1 ? L" ticket" : L" tickets") +
                              L" for " + order_.name.c_str() + L".\nFinish orders them.";
    SetDlgItemTextW(*this, ID_SUMMARY, text.c_str());
    return OrderPage::onActivate();
}
