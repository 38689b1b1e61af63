#include <tarn/PropertySheet.h>

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"
#include "SheetCancelling.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
constexpr int backButton = 0x3023;
constexpr const char* failed = "Error in showing property sheet";
constexpr WORD white = 0xFFFF;
constexpr DWORD wizardFlags = PSH_WIZARD97 | PSH_HEADER | PSH_USEHBMHEADER;

thread_local unsigned cancellingSheets = 0;

/// Cancels the sheet without its pages having a say, until it has gone.
class Cancelling {
public:
    Cancelling() = default;
    Cancelling(const Cancelling&) = delete;
    Cancelling& operator=(const Cancelling&) = delete;
    ~Cancelling()
    {
        if (isActive_)
            --cancellingSheets;
    }

    void operator()(HWND sheet) noexcept
    {
        if (!std::exchange(isActive_, true))
            ++cancellingSheets;
        PostMessageW(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0); // Not sent: a page's handler may be on its way out.
    }

private:
    bool isActive_ = false;
};
} // namespace

bool isCancellingSheet() noexcept { return cancellingSheets != 0; }

PropertySheet* PropertySheet::InitializingSheet = nullptr;

// Where a wizard's header has no picture at all, not every system draws nothing.
PropertySheet::PropertySheet(HWND parent) : headerPicture_(1, 1, 1, 1, &white)
{
    header_.dwSize = sizeof header_;
    header_.dwFlags = PSH_USECALLBACK;
    header_.hwndParent = parent;
    header_.hbmHeader = headerPicture_;
    header_.pfnCallback = &PropertySheet::propSheetProc;
}

PropertySheet::PropertySheet(HWND parent, unsigned short caption, unsigned short icon, HINSTANCE instance)
    : PropertySheet(parent)
{
    header_.hInstance = instance;
    if (caption)
        setTitle(BasicString<wchar_t>::fromResource(caption, instance).c_str());
    if (icon)
        setIcon(icon, instance);
}

// A failure to destroy the pictures is dropped.
PropertySheet::~PropertySheet() noexcept
{
    const auto closeQuietly = [](auto& handle) {
        try {
            handle.close();
        } catch (const WindowsError&) {
        }
    };
    closeQuietly(icon_);
    closeQuietly(headerPicture_);
}

void PropertySheet::addPage(PropertyPage* page)
{
    pages_.push_back(page);
    if (!isOpen())
        return;
    try {
        const HPROPSHEETPAGE handle = page->create();
        ensureGDI([&] { return sendMessageA(PSM_ADDPAGE, 0, reinterpret_cast<LPARAM>(handle)); },
                  "Can't add property page");
    } catch (...) {
        pages_.pop_back();
        throw;
    }
}

// Found here, because not every system's sheet knows its start page by the resource.
unsigned PropertySheet::getStartPage() const
{
    if (!(header_.dwFlags & PSH_USEPSTARTPAGE))
        return header_.nStartPage;
    const auto found = std::ranges::find(pages_, header_.pStartPage,
                                         [](const PropertyPage* page) { return page->getInitData().pszTemplate; });
    return found == pages_.end() ? 0 : static_cast<unsigned>(std::distance(pages_.begin(), found));
}

PROPSHEETHEADERW PropertySheet::headerFor(std::vector<HPROPSHEETPAGE>& pages) const
{
    PROPSHEETHEADERW header = header_;
    header.dwFlags &= ~static_cast<DWORD>(PSH_PROPSHEETPAGE | PSH_USEPSTARTPAGE);
    header.nStartPage = getStartPage();
    header.nPages = static_cast<UINT>(pages.size());
    header.phpage = pages.data();
    return header;
}

unsigned short PropertySheet::showModal()
{
    std::vector<HPROPSHEETPAGE> handles;
    for (PropertyPage* const page : pages_)
        handles.push_back(page->create());
    if (handles.empty()) // Not every system refuses a sheet that nothing could end.
        throwWindowsError(ERROR_INVALID_PARAMETER, failed);
    return static_cast<unsigned short>(run(headerFor(handles)));
}

INT_PTR PropertySheet::run(const PROPSHEETHEADERW& header)
{
    // However it ends: the window has gone, and no other sheet must be taken for this one.
    struct Unbinding {
        ~Unbinding()
        {
            if (InitializingSheet == &sheet)
                InitializingSheet = nullptr;
            sheet.attach(nullptr, false);
        }
        PropertySheet& sheet;
    };
    const Unbinding unbinding{*this};
    Cancelling cancelling;
    InitializingSheet = this;
    return ensureClearing(
        [&] {
            return runningLoop([&] { return PropertySheetW(&header); },
                               [&]() noexcept { cancelling(getWindowHandle()); });
        },
        // Not every system tells by its result that there has been no sheet at all.
        [this](INT_PTR result) { return result < 0 || InitializingSheet == this; }, failed);
}

int CALLBACK PropertySheet::propSheetProc(HWND hwnd, UINT msg, LPARAM)
{
    if (msg == PSCB_INITIALIZED && InitializingSheet)
        guardedCallback(0, [&] {
            std::exchange(InitializingSheet, nullptr)->attach(hwnd, false);
            return 0;
        });
    return 0;
}

void PropertySheet::setTitle(const char* title) { setCaption(title); }
void PropertySheet::setTitle(const wchar_t* title) { setCaption(title); }
void PropertySheet::setCaption(BasicString<wchar_t> title)
{
    title_ = std::move(title);
    header_.pszCaption = title_.c_str();
    if (isOpen())
        runningHandlers([&] { SendMessageW(*this, PSM_SETTITLEW, 0, reinterpret_cast<LPARAM>(title_.c_str())); });
}

void PropertySheet::setIcon(int resource, HINSTANCE instance)
{
    header_.dwFlags &= ~static_cast<DWORD>(PSH_USEHICON);
    icon_.load(static_cast<unsigned>(resource), instance);
    header_.dwFlags |= PSH_USEHICON;
    header_.hIcon = icon_;
    if (isOpen())
        setIcon(icon_.getHandle(), false);
}

void PropertySheet::setWizardMode(bool isWizard)
{
    header_.dwFlags &= ~wizardFlags;
    if (isWizard)
        header_.dwFlags |= wizardFlags;
}

void PropertySheet::setStartPageByIndex(unsigned int index)
{
    header_.dwFlags &= ~static_cast<DWORD>(PSH_USEPSTARTPAGE);
    header_.nStartPage = index;
}
void PropertySheet::setStartPageByResource(unsigned short resource)
{
    header_.dwFlags |= PSH_USEPSTARTPAGE;
    header_.pStartPage = MAKEINTRESOURCEW(resource);
}

void PropertySheet::activate(int resource) { sendMessageA(PSM_SETCURSELID, 0, resource); }
void PropertySheet::activate(PropertyPage* page, unsigned index)
{
    sendMessageA(PSM_SETCURSEL, index, reinterpret_cast<LPARAM>(page->create()));
}
void PropertySheet::pressButton(int button) { sendMessageA(PSM_PRESSBUTTON, static_cast<WPARAM>(button)); }

void PropertySheet::setWizardButtons(unsigned long flags, bool showBack)
{
    sendMessageA(PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(flags));
    runningHandlers([&] { ShowWindow(GetDlgItem(*this, backButton), showBack ? SW_SHOW : SW_HIDE); });
}

void PropertySheet::setFinishText(const char* text)
{
    sendMessageA(PSM_SETFINISHTEXTA, 0, reinterpret_cast<LPARAM>(text));
}
void PropertySheet::rebootSystem() { sendMessageA(PSM_REBOOTSYSTEM); }
void PropertySheet::restartWindows() { sendMessageA(PSM_RESTARTWINDOWS); }
} // namespace tarn
