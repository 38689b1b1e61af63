#include <tarn/PrintDialog.h>

#include <tarn/Exception.h>

#include "../foundation/Throw.h"
#include "../windowing/HandlerScope.h"
#include "../windowing/SystemDialogs.h"

#include <commdlg.h>

#include <algorithm>

namespace tarn {
/// The choices of the user, which the system keeps in blocks of its own.
struct PrintDialog::Data : PRINTDLGW {
    Data() : PRINTDLGW() {}
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;
    ~Data()
    {
        GlobalFree(hDevMode);
        GlobalFree(hDevNames);
    }
};

PrintDialog::PrintDialog(HWND owner) : data_(std::make_unique<Data>())
{
    data_->lStructSize = sizeof(PRINTDLGW);
    data_->hwndOwner = owner;
    data_->nCopies = 1;
    // Of a missing printer the caller tells.
    data_->Flags = PD_NOPAGENUMS | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE | PD_NOWARNING;
}
PrintDialog::~PrintDialog() = default;

void PrintDialog::setPages(unsigned least, unsigned most)
{
    const auto asPage = [](unsigned page) { return static_cast<WORD>(std::min(page, 0xFFFEu)); };
    data_->nMinPage = data_->nFromPage = asPage(least);
    data_->nMaxPage = data_->nToPage = asPage(most);
    setOptions(0, PD_NOPAGENUMS);
}
void PrintDialog::setOptions(unsigned long set, unsigned long clear) { data_->Flags = (data_->Flags | set) & ~clear; }

bool PrintDialog::showModal() { return run(0); }
void PrintDialog::takeDefault()
{
    Data none; // The system wants no choices then.
    std::swap(data_->hDevMode, none.hDevMode);
    std::swap(data_->hDevNames, none.hDevNames);
    run(PD_RETURNDEFAULT);
}

bool PrintDialog::run(unsigned long flags)
{
    const unsigned long chosen = data_->Flags;
    data_->Flags |= flags | PD_RETURNDC;
    const SystemDialogs dialogs;
    const bool isChosen =
        runningLoop([&] { return PrintDlgW(data_.get()); }, [&]() noexcept { dialogs.cancel(); }) != FALSE;
    printer_ = PrinterContext(isChosen ? data_->hDC : nullptr);
    data_->Flags = isChosen ? data_->Flags & ~flags : chosen;
    const DWORD error = isChosen ? 0 : CommDlgExtendedError();
    if (error)
        throwError(CommonDialogError(error, "Error in print dialog"));
    return isChosen;
}

std::pair<unsigned, unsigned> PrintDialog::getPages() const
{
    if (data_->Flags & PD_PAGENUMS)
        return {data_->nFromPage, data_->nToPage};
    return {data_->nMinPage, data_->nMaxPage};
}
bool PrintDialog::isSelectionWanted() const { return (data_->Flags & PD_SELECTION) != 0; }
} // namespace tarn
