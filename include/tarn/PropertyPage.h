#pragma once

#include <tarn/Dialog.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <prsht.h>

#undef PropertySheet // A macro of the system's header.

namespace tarn {
class PropertySheet;

/// One page of a PropertySheet or a wizard: a dialog that hears of the sheet's buttons.
///
/// Derive from it and override the handlers. Keep the object alive as long as the sheet is shown; it can be
/// shown again afterwards. Its template is that of a child dialog. Failures throw WindowsError, and what a
/// handler throws cancels the sheet and comes out of its showModal().
///
/// Tell the sheet of changes with setChanged(), and take the values in onApply(); or check and take them together, with
/// DialogValues.
class TARN_API PropertyPage : public Dialog {
public:
    /// With the template's caption as its title.
    PropertyPage(unsigned short resource, HINSTANCE instance);
    /// `title` is a string resource; without it the template's caption is the page's title.
    PropertyPage(unsigned short resource, unsigned short title, HINSTANCE instance);
    /// Releases a page that no sheet has taken.
    ~PropertyPage() override;

    /// Hands `IDOK` and `IDCANCEL` on to the sheet, which takes them for its own buttons.
    void onCommand(Window* sender, unsigned short code, unsigned short id) override;
    LRESULT onNotify(const NMHDR& header) override;
    /// The wizard's Next and Back: 0 goes on, -1 stays, else the template number of the page to go to.
    ///@{
    virtual int onNext();
    virtual int onBack();
    ///@}
    /// The wizard's Finish; true keeps it open.
    virtual bool onFinish();
    /// The page is about to appear: 0 lets it, -1 skips it, else the template number of the one to show.
    virtual int onActivate();
    /// The page is about to be left, or OK was pressed; true stays.
    virtual bool onDeactivate();
    /// Cancel was pressed; true keeps the sheet open.
    virtual bool onCancel();
    /// The system releases the page with its sheet, and the handle is forgotten: call this when overriding.
    virtual void release();
    /// Apply or OK was pressed (or a wizard's Finish), and all pages were content: take the values. True keeps the
    /// sheet open and shows this page.
    virtual bool onApply();
    /// The sheet was cancelled: what was changed since the last onApply() does not count.
    virtual void onReset();
    /// The page's Help, enableHelp().
    virtual void onHelp();

    /// The page's handle, the same until the system releases it; a sheet makes it when it needs it.
    /// Throws "Can't create property page".
    HPROPSHEETPAGE create();
    /// Whether the page has a handle.
    bool isCreated() const { return page_ != nullptr; }

    // ---- For the page of an open sheet; without effect before

    /// The sheet that has the page while it is shown, for its buttons, other pages and so on; null before and after.
    PropertySheet* getSheet() const;
    /// Enables the sheet's Apply button; it is disabled when no page has changes. By default every page is as it was.
    void setChanged(bool changed = true) const;
    /// A wizard's buttons that can be pressed (`PSWIZB_...`), from onActivate() on, where a message that is sent at
    /// once would come too early.
    void setWizardButtons(unsigned long flags) const;

    // ---- What follows counts when the page is created next

    /// The lines above a wizard's page, as string resources.
    ///@{
    void setHeader(unsigned short title, unsigned short subtitle);
    void clearHeader();
    ///@}
    /// A wizard's first and last page have no header and the whole room.
    ///@{
    void enableWatermark(bool enable);
    bool isWatermarkEnabled() const { return (data_.dwFlags & PSP_HIDEHEADER) != 0; }
    ///@}
    /// Whether the sheet has a Help button for the page.
    void enableHelp(bool enable);
    /// Valid as long as the object.
    const PROPSHEETPAGEW& getInitData() const { return data_; }

protected:
    /// The dialog procedure of all pages, and what the system calls when it makes and releases one.
    ///@{
    static INT_PTR CALLBACK dlgProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
    static UINT CALLBACK propSheetPageProc(HWND hwnd, UINT msg, PROPSHEETPAGEW* data);
    ///@}

private:
    void initialize(unsigned short resource, HINSTANCE instance);

    PROPSHEETPAGEW data_{};
    HPROPSHEETPAGE page_ = nullptr;
};
} // namespace tarn
