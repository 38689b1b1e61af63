#include "ProgressDialog.h"

#include "Ids.h"

namespace planner {
ProgressDialog::ProgressDialog(HWND owner, std::wstring title, std::function<void(const Progress&)> work)
    : Dialog(owner, DIALOG_PROGRESS, GetModuleHandleW(nullptr)), title_(std::move(title)), work_(std::move(work))
{
}

bool ProgressDialog::run()
{
    if (showModal() != IDOK)
        work_.cancel(); // The program is ending.
    return work_.finish();
}

bool ProgressDialog::onInitDialog(tarn::Window&)
{
    setText(ID_TITLE, title_.c_str());
    bar_.attach(*this, ID_BAR);
    work_.start(*this);
    return true;
}

// The dialog goes when the work has ended, also after a cancel.
void ProgressDialog::onCommand(tarn::Window*, unsigned short, unsigned short id)
{
    if (id == IDCANCEL)
        work_.cancel();
}

LRESULT ProgressDialog::onMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == BackgroundWork::progressed)
        bar_.setPos(static_cast<int>(wParam));
    else if (msg == BackgroundWork::finished)
        end(IDOK);
    else
        return Dialog::onMessage(msg, wParam, lParam);
    return 0;
}
} // namespace planner
