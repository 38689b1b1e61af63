#include "GoToDialog.h"

#include "Ids.h"

namespace planner {
GoToDialog::GoToDialog(HWND owner, const Date& date)
    : Dialog(owner, DIALOG_GO_TO, GetModuleHandleW(nullptr)), year_(date.year), month_(date.month)
{
}

bool GoToDialog::onInitDialog(tarn::Window&)
{
    months_.attach(*this, ID_MONTH);
    for (int month = 0; month < 12; ++month)
        months_.addString(monthName(month));
    months_.setCurrentSelection(static_cast<unsigned>(month_));
    setInt(ID_YEAR, year_);
    return true;
}

void GoToDialog::onCommand(tarn::Window* sender, unsigned short code, unsigned short id)
{
    if (id == IDOK) {
        BOOL isNumber = FALSE;
        year_ = static_cast<int>(GetDlgItemInt(*this, ID_YEAR, &isNumber, TRUE));
        month_ = months_.getCurrentSelection();
        if (!isNumber || year_ < firstYear || year_ > lastYear) {
            setText(ID_HINT, L"The year is a number up to 9999.");
            sendMessageW(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(*this, ID_YEAR)), TRUE);
            return;
        }
    }
    Dialog::onCommand(sender, code, id);
}
} // namespace planner
