#include "GoToDialog.h"

#include "Ids.h"

namespace planner {
GoToDialog::GoToDialog(HWND owner, const Date& date)
    : Dialog(owner, DIALOG_GO_TO, GetModuleHandleW(nullptr)), year_(date.year), month_(date.month)
{
    values_.addChoice(ID_MONTH, month_);
    values_.addNumber(ID_YEAR, year_, firstYear, lastYear, L"The year is a number up to 9999. 0 is 1 BC.");
}

bool GoToDialog::onInitDialog(tarn::Window&)
{
    months_.attach(*this, ID_MONTH);
    for (int month = 0; month < 12; ++month)
        months_.addString(monthName(month));
    values_.show(*this);
    return true;
}

void GoToDialog::onCommand(tarn::Window* sender, unsigned short code, unsigned short id)
{
    const auto refusal = id == IDOK ? values_.check(*this) : std::nullopt;
    if (!refusal)
        return Dialog::onCommand(sender, code, id);
    setText(ID_HINT, refusal->sentence);
    sendMessageW(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(*this, refusal->id)), TRUE);
}
} // namespace planner
