#include "GoToDialog.h"

#include "Ids.h"

#include <tarn/Exception.h>

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
    month_ = months_.getCurrentSelection();
    if (id != IDOK || readYear())
        return Dialog::onCommand(sender, code, id);
    setText(ID_HINT, L"The year is a number up to 9999. 0 is 1 BC.");
    sendMessageW(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(*this, ID_YEAR)), TRUE);
}

bool GoToDialog::readYear()
{
    try {
        year_ = getInt(ID_YEAR);
    } catch (const tarn::WindowsError&) { // It is no number.
        return false;
    }
    return year_ >= firstYear && year_ <= lastYear;
}
} // namespace planner
