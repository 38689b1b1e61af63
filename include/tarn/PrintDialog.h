#pragma once

#include <tarn/Export.h>
#include <tarn/PrinterContext.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <memory>
#include <utility>

namespace tarn {
/// The system's dialog for choosing a printer:
///
///     PrintDialog dialog(window);
///     dialog.setPages(1, 2);
///     if (!dialog.showModal())
///         return;
///     PrintedDocument document(dialog.getPrinter(), L"Plan");
///
/// Copies are the printer's affair. An object may be shown again, and begins with what was chosen last. Failures throw
/// CommonDialogError.
class TARN_API PrintDialog : private boost::noncopyable {
public:
    /// `owner` is disabled meanwhile; null for none.
    explicit PrintDialog(HWND owner = nullptr);
    ~PrintDialog();

    /// Lets the user choose pages among these.
    void setPages(unsigned least, unsigned most);
    /// Sets and then clears `PD_...`, beyond those that the class has by itself.
    void setOptions(unsigned long set, unsigned long clear = 0);

    /// False when the user cancelled. Throws "Error in print dialog", also when there is no printer, and what the
    /// handlers of other windows throw meanwhile (the dialog is cancelled then).
    bool showModal();
    /// The user's default printer, without asking. Throws the same.
    void takeDefault();

    /// What was chosen, null before; lives until the next dialog or the end of this object.
    PrinterContext& getPrinter() { return printer_; }
    /// The first and the last page that are wanted, all of setPages() unless the user chose some.
    std::pair<unsigned, unsigned> getPages() const;
    /// Whether only what is selected is wanted, which the user can choose unless `PD_NOSELECTION` is set.
    bool isSelectionWanted() const;

private:
    struct Data;

    bool run(unsigned long flags);

    std::unique_ptr<Data> data_;
    PrinterContext printer_{HDC()};
};
} // namespace tarn
