#include <tarn/PropertyPage.h>

#include <tarn/PropertySheet.h>

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"

namespace tarn {
PropertyPage::PropertyPage(unsigned short resource, HINSTANCE instance) : Dialog(resource, instance)
{
    initialize(resource, instance);
}

PropertyPage::PropertyPage(unsigned short resource, unsigned short title, HINSTANCE instance)
    : PropertyPage(resource, instance)
{
    data_.dwFlags |= PSP_USETITLE;
    data_.pszTitle = MAKEINTRESOURCEW(title);
}

void PropertyPage::initialize(unsigned short resource, HINSTANCE instance)
{
    data_.dwSize = sizeof data_;
    data_.dwFlags = PSP_USECALLBACK;
    data_.hInstance = instance;
    data_.pszTemplate = MAKEINTRESOURCEW(resource);
    data_.pfnDlgProc = &PropertyPage::dlgProc;
    data_.pfnCallback = &PropertyPage::propSheetPageProc;
    data_.lParam = reinterpret_cast<LPARAM>(this);
}

// The handle of a page that a sheet has is the sheet's.
PropertyPage::~PropertyPage()
{
    if (!page_)
        return;
    PropertySheet* const sheet = PropertySheet::SheetInternals::findShowing(this);
    if (sheet) {
        attach(nullptr, false); // No handler may run any more.
        PropertySheet::SheetInternals::removeDying(*sheet, this, page_);
    } else if (!isOpen()) {
        DestroyPropertySheetPage(page_);
    }
}

HPROPSHEETPAGE PropertyPage::create()
{
    if (page_)
        return page_;
    constexpr const char* failed = "Can't create property page";
    // A missing template would show only when the page has to appear, and not everywhere as a failure.
    ensure(FindResourceW(data_.hInstance, data_.pszTemplate, RT_DIALOG), failed);
    page_ = ensureGDI([this] { return CreatePropertySheetPageW(&data_); }, failed);
    return page_;
}

void PropertyPage::release() { page_ = nullptr; }

void PropertyPage::setHeader(unsigned short title, unsigned short subtitle)
{
    data_.dwFlags |= PSP_USEHEADERTITLE | PSP_USEHEADERSUBTITLE;
    data_.pszHeaderTitle = MAKEINTRESOURCEW(title);
    data_.pszHeaderSubTitle = MAKEINTRESOURCEW(subtitle);
}

void PropertyPage::clearHeader()
{
    data_.dwFlags &= ~static_cast<DWORD>(PSP_USEHEADERTITLE | PSP_USEHEADERSUBTITLE);
    data_.pszHeaderTitle = nullptr;
    data_.pszHeaderSubTitle = nullptr;
}

void PropertyPage::enableWatermark(bool enable)
{
    if (enable) {
        data_.dwFlags |= PSP_HIDEHEADER;
        data_.dwFlags &= ~static_cast<DWORD>(PSP_USEHEADERSUBTITLE);
        return;
    }
    data_.dwFlags &= ~static_cast<DWORD>(PSP_HIDEHEADER);
    if (data_.pszHeaderSubTitle)
        data_.dwFlags |= PSP_USEHEADERSUBTITLE;
}

void PropertyPage::enableHelp(bool enable)
{
    data_.dwFlags &= ~static_cast<DWORD>(PSP_HASHELP);
    if (enable)
        data_.dwFlags |= PSP_HASHELP;
}

// They come from Esc and Enter in some controls. Ending the page alone would only hide it.
void PropertyPage::onCommand(Window* sender, unsigned short code, unsigned short id)
{
    if (!isCreated())
        Dialog::onCommand(sender, code, id); // Shown by itself.
    else if (code == 0 && (id == IDOK || id == IDCANCEL))
        PostMessageW(GetParent(*this), WM_COMMAND, id, 0);
    else
        Window::onCommand(sender, code, id);
}

LRESULT PropertyPage::onNotify(const NMHDR& header)
{
    switch (static_cast<int>(header.code)) {
    case static_cast<int>(PSN_WIZNEXT):
        return onNext();
    case static_cast<int>(PSN_WIZBACK):
        return onBack();
    case static_cast<int>(PSN_WIZFINISH):
        return onFinish();
    case static_cast<int>(PSN_SETACTIVE):
        return onActivate();
    case static_cast<int>(PSN_KILLACTIVE):
        return onDeactivate();
    case static_cast<int>(PSN_QUERYCANCEL):
        return onCancel();
    case static_cast<int>(PSN_APPLY):
        return onApply() ? PSNRET_INVALID : PSNRET_NOERROR;
    case static_cast<int>(PSN_RESET):
        return onReset(), 0;
    case static_cast<int>(PSN_HELP):
        return onHelp(), 0;
    default:
        return Window::onNotify(header);
    }
}

int PropertyPage::onNext() { return 0; }
int PropertyPage::onBack() { return 0; }
bool PropertyPage::onFinish() { return false; }
int PropertyPage::onActivate() { return 0; }
bool PropertyPage::onDeactivate() { return false; }
bool PropertyPage::onCancel() { return false; }
bool PropertyPage::onApply() { return false; }
void PropertyPage::onReset() {}
void PropertyPage::onHelp() {}

PropertySheet* PropertyPage::getSheet() const
{
    PropertySheet* const sheet = PropertySheet::SheetInternals::findShowing(this);
    return sheet && sheet->isOpen() ? sheet : nullptr;
}

void PropertyPage::setChanged(bool changed) const
{
    if (const PropertySheet* const sheet = getSheet())
        sheet->sendMessageA(changed ? PSM_CHANGED : PSM_UNCHANGED, reinterpret_cast<WPARAM>(getWindowHandle()));
}

void PropertyPage::setWizardButtons(unsigned long flags) const
{
    if (const PropertySheet* const sheet = getSheet())
        sheet->postMessageW(PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(flags));
}

INT_PTR CALLBACK PropertyPage::dlgProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == WM_NOTIFY) {
        const auto* const header = reinterpret_cast<const NMHDR*>(lParam);
        if (header->code == PSN_QUERYCANCEL && PropertySheet::SheetInternals::isCancelled(header->hwndFrom))
            return FALSE;
    }
    return guardedCallback<INT_PTR>(FALSE, {nullptr, hwnd, msg}, [&] {
        if (msg != WM_INITDIALOG)
            return DialogInternals::route(hwnd, msg, wParam, lParam);
        auto* const page = reinterpret_cast<PropertyPage*>(reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam);
        return page->Dialog::initialize(hwnd, reinterpret_cast<HWND>(wParam));
    });
}

UINT CALLBACK PropertyPage::propSheetPageProc(HWND, UINT msg, PROPSHEETPAGEW* data)
{
    if (msg == PSPCB_CREATE)
        return TRUE;
    if (msg == PSPCB_RELEASE)
        guardedCallback(0, {"the end of a property page", nullptr, msg}, [&] {
            reinterpret_cast<PropertyPage*>(data->lParam)->release();
            return 0;
        });
    return 0;
}
} // namespace tarn
