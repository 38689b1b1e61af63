#pragma once

#include <tarn/Bitmap.h>
#include <tarn/Export.h>
#include <tarn/Icon.h>
#include <tarn/PropertyPage.h>
#include <tarn/Window.h>
#include <tarn/Windows.h>

#include <prsht.h>

#include <list>
#include <vector>

#undef PropertySheet // A macro of the system's header.

namespace tarn {
/// A dialog of several pages with OK, Cancel and Apply, or a wizard with Back, Next and Finish.
///
/// The pages are not owned: keep them alive while the sheet is shown. A sheet can be shown again. The
/// object is bound to the window while it is open, but gets no messages. Only one thread at a time may be in
/// the beginning of a showModal(). Failures throw WindowsError.
class TARN_API PropertySheet : public Window {
public:
    /// `parent` owns the sheet; null for none.
    explicit PropertySheet(HWND parent);
    /// `caption` is a string resource, none for 0 or when it is missing. An `icon` other than 0 throws "Can't load
    /// icon" when it is missing.
    PropertySheet(HWND parent, unsigned short caption, unsigned short icon, HINSTANCE instance);
    ~PropertySheet() noexcept override;

    /// To an open sheet, too. Throws "Can't create property page", "Can't add property page"; the page is
    /// not in the sheet then.
    void addPage(PropertyPage* page);
    /// Runs the sheet. 0 when it was cancelled or nothing changed, else 1, `ID_PSREBOOTSYSTEM` or
    /// `ID_PSRESTARTWINDOWS`. Throws "Can't create property page", "Error in showing property sheet" (also
    /// without any page) and what a page's handler throws; in that case the sheet is cancelled without asking
    /// the page.
    unsigned short showModal();

    /// Of an open sheet too; copied. Narrow text is read in the runtime library's locale.
    ///@{
    void setTitle(const char* title);
    void setTitle(const wchar_t* title);
    ///@}
    using Window::setIcon;
    /// For the title bar; a null `instance` has the system's icons. Throws "Can't load icon".
    void setIcon(int resource, HINSTANCE instance);
    /// As a wizard, with the headers of the pages; in effect when the sheet is shown next.
    void setWizardMode(bool isWizard);
    /// From 0 in the order of addPage(); in effect when the sheet is shown next.
    void setStartPageByIndex(unsigned int index);
    /// By the number of its template; a number that no page has gives the first page.
    void setStartPageByResource(unsigned short resource);

    // ---- For the open sheet; without effect before

    /// By the number of the page's template.
    void activate(int resource);
    /// By the page, or by `index` when the sheet does not have it. Throws "Can't create property page".
    void activate(PropertyPage* page, unsigned index);
    /// `PSBTN_...`
    void pressButton(int button);
    /// Of a wizard: which buttons can be pressed (`PSWIZB_...`), and whether there is a Back button at all.
    /// From a page's onActivate() take PropertyPage::setWizardButtons(): the system's sheet heeds no message there.
    void setWizardButtons(unsigned long flags, bool showBack = true);
    /// Replaces Next by a Finish button of this text and takes Back away.
    void setFinishText(const char* text);
    /// showModal() returns `ID_PSREBOOTSYSTEM` when it is not cancelled.
    void rebootSystem();
    /// showModal() returns `ID_PSRESTARTWINDOWS` when it is not cancelled.
    void restartWindows();

private:
    friend class PropertyPage;
    struct SheetInternals {
        struct Showing;

        /// The open sheet of the calling thread that has the page, or null.
        static PropertySheet* findShowing(const PropertyPage* page) noexcept;
        /// Whether the window is a sheet that ends because of an exception: its pages are not asked then.
        static bool isCancelled(HWND sheet) noexcept;
        static void removeDying(PropertySheet& sheet, PropertyPage* page, HPROPSHEETPAGE handle) noexcept;
        static void showIcon(PropertySheet& sheet);
        static int CALLBACK propSheetProc(HWND hwnd, UINT msg, LPARAM lParam);
        static PROPSHEETHEADERW headerFor(const PropertySheet& sheet, std::vector<HPROPSHEETPAGE>& pages);
        static INT_PTR run(PropertySheet& sheet, const PROPSHEETHEADERW& header);
        static unsigned getStartPage(const PropertySheet& sheet);
        static void setCaption(PropertySheet& sheet, BasicString<wchar_t> title);
    };

    static PropertySheet* InitializingSheet;

    PROPSHEETHEADERW header_{};
    std::list<PropertyPage*> pages_;
    BasicString<wchar_t> title_;
    Icon icon_;
    Bitmap headerPicture_;
};
} // namespace tarn
