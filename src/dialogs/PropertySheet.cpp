#include <tarn/PropertySheet.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../windowing/HandlerScope.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
constexpr int backButton = 0x3023;
constexpr const char* sheetFailed = "Error in showing property sheet";
constexpr WORD white = 0xFFFF;
constexpr DWORD wizardFlags = PSH_WIZARD97 | PSH_HEADER | PSH_USEHBMHEADER;
} // namespace

PropertySheet* PropertySheet::InitializingSheet = nullptr;

/// A sheet while it is shown: one of the calling thread's, the latest first.
struct PropertySheet::SheetInternals::Showing {
    explicit Showing(PropertySheet& shown) : sheet(shown), outer(std::exchange(innermost, this))
    {
        InitializingSheet = &sheet;
    }
    Showing(const Showing&) = delete;
    Showing& operator=(const Showing&) = delete;
    // However it ends: the window has gone, and no other sheet must be taken for this one.
    ~Showing()
    {
        innermost = outer;
        if (InitializingSheet == &sheet)
            InitializingSheet = nullptr;
        sheet.attach(nullptr, false);
    }

    void begin(HWND hwnd)
    {
        window = hwnd;
        ensureGDI([&] { return SetWindowSubclass(hwnd, onMessage, 0, reinterpret_cast<DWORD_PTR>(this)); },
                  sheetFailed);
        sheet.attach(hwnd, false);
        showIcon(sheet);
    }

    /// Cancels the sheet without its pages having a say.
    void cancel() noexcept
    {
        if (!window || isEnding)
            return;
        cancelled = window;
        PostMessageW(cancelled, PSM_PRESSBUTTON, PSBTN_CANCEL, 0); // Not sent: a page's handler may be on its way out.
    }

    // A handler of a page that is destroyed may still run messages. The system's sheet frees what it works with
    // before it destroys its pages, and then has to be spared its own messages, a pressed button that waited say.
    static LRESULT CALLBACK onMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data)
    {
        auto* const showing = reinterpret_cast<Showing*>(data);
        if (msg == WM_DESTROY)
            showing->isEnding = true;
        if (msg == WM_NCDESTROY) {
            showing->window = nullptr;
            RemoveWindowSubclass(hwnd, onMessage, 0);
        }
        return showing->isEnding && msg >= WM_USER && msg < WM_APP ? 0 : DefSubclassProc(hwnd, msg, wParam, lParam);
    }

    PropertySheet& sheet;
    Showing* outer;
    HWND window = nullptr; // Also when the object could not be bound to it.
    HWND cancelled = nullptr;
    bool isEnding = false;

    static thread_local Showing* innermost;
};
thread_local PropertySheet::SheetInternals::Showing* PropertySheet::SheetInternals::Showing::innermost = nullptr;

PropertySheet* PropertySheet::SheetInternals::findShowing(const PropertyPage* page) noexcept
{
    for (const Showing* showing = Showing::innermost; showing; showing = showing->outer) {
        if (std::ranges::find(showing->sheet.pages_, page) != showing->sheet.pages_.end())
            return &showing->sheet;
    }
    return nullptr;
}

bool PropertySheet::SheetInternals::isCancelled(HWND sheet) noexcept
{
    const Showing* showing = Showing::innermost;
    while (showing && showing->cancelled != sheet)
        showing = showing->outer;
    return showing && sheet;
}

// The sheet would call the page when the user comes to it, and at its own end.
void PropertySheet::SheetInternals::removeDying(PropertySheet& sheet, PropertyPage* page,
                                                HPROPSHEETPAGE handle) noexcept
{
    std::erase(sheet.pages_, page);
    closeQuietly([&] { sheet.sendMessageA(PSM_REMOVEPAGE, 0, reinterpret_cast<LPARAM>(handle)); });
}

// Where a wizard's header has no picture at all, not every system draws nothing.
PropertySheet::PropertySheet(HWND parent) : headerPicture_(1, 1, 1, 1, &white)
{
    header_.dwSize = sizeof header_;
    header_.dwFlags = PSH_USECALLBACK;
    header_.hwndParent = parent;
    header_.hbmHeader = headerPicture_;
    header_.pfnCallback = &SheetInternals::propSheetProc;
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

// A failure to destroy the pictures is told to the debugger only.
PropertySheet::~PropertySheet() noexcept
{
    closeQuietly([this] { icon_.close(); });
    closeQuietly([this] { headerPicture_.close(); });
}

void PropertySheet::addPage(PropertyPage* page)
{
    constexpr const char* cannotAdd = "Can't add property page";
    if (isOpen() && SheetInternals::findShowing(page))
        throwWindowsError(ERROR_BUSY, cannotAdd);
    pages_.push_back(page);
    if (!isOpen())
        return;
    try {
        const HPROPSHEETPAGE handle = page->create();
        ensureGDI([&] { return sendMessageA(PSM_ADDPAGE, 0, reinterpret_cast<LPARAM>(handle)); }, cannotAdd);
    } catch (...) {
        pages_.pop_back();
        throw;
    }
}

// Found here, because not every system's sheet knows its start page by the resource.
unsigned PropertySheet::SheetInternals::getStartPage(const PropertySheet& sheet)
{
    const auto& pages = sheet.pages_;
    if (!(sheet.header_.dwFlags & PSH_USEPSTARTPAGE))
        return sheet.header_.nStartPage;
    const auto found = std::ranges::find(pages, sheet.header_.pStartPage,
                                         [](const PropertyPage* page) { return page->getInitData().pszTemplate; });
    return found == pages.end() ? 0 : static_cast<unsigned>(std::distance(pages.begin(), found));
}

PROPSHEETHEADERW PropertySheet::SheetInternals::headerFor(const PropertySheet& sheet,
                                                          std::vector<HPROPSHEETPAGE>& pages)
{
    PROPSHEETHEADERW header = sheet.header_;
    header.dwFlags &= ~static_cast<DWORD>(PSH_PROPSHEETPAGE | PSH_USEPSTARTPAGE);
    header.nStartPage = getStartPage(sheet);
    header.nPages = static_cast<UINT>(pages.size());
    header.phpage = pages.data();
    return header;
}

unsigned short PropertySheet::showModal()
{
    // An open sheet has the handles of its pages, and destroys them when it ends.
    if (std::ranges::any_of(pages_, SheetInternals::findShowing))
        throwWindowsError(ERROR_BUSY, sheetFailed);
    std::vector<HPROPSHEETPAGE> handles;
    for (PropertyPage* const page : pages_) {
        if (std::ranges::find(handles, page->create()) != handles.end()) // Added twice.
            throwWindowsError(ERROR_INVALID_PARAMETER, sheetFailed);
        handles.push_back(page->create());
    }
    if (handles.empty()) // Not every system refuses a sheet that nothing could end.
        throwWindowsError(ERROR_INVALID_PARAMETER, sheetFailed);
    return static_cast<unsigned short>(SheetInternals::run(*this, SheetInternals::headerFor(*this, handles)));
}

INT_PTR PropertySheet::SheetInternals::run(PropertySheet& sheet, const PROPSHEETHEADERW& header)
{
    Showing showing(sheet);
    return ensureClearing(
        [&] { return runningLoop([&] { return PropertySheetW(&header); }, [&]() noexcept { showing.cancel(); }); },
        // Not every system tells by its result that there has been no sheet at all.
        [&](INT_PTR result) { return result < 0 || InitializingSheet == &sheet; }, sheetFailed);
}

int CALLBACK PropertySheet::SheetInternals::propSheetProc(HWND hwnd, UINT msg, LPARAM)
{
    if (msg == PSCB_INITIALIZED && InitializingSheet)
        guardedCallback(0, {"the beginning of a property sheet", hwnd, msg}, [&] {
            const PropertySheet* const sheet = std::exchange(InitializingSheet, nullptr);
            if (Showing* const showing = Showing::innermost; showing && &showing->sheet == sheet)
                showing->begin(hwnd);
            return 0;
        });
    return 0;
}

void PropertySheet::setTitle(const char* title) { SheetInternals::setCaption(*this, title); }
void PropertySheet::setTitle(const wchar_t* title) { SheetInternals::setCaption(*this, title); }
void PropertySheet::SheetInternals::setCaption(PropertySheet& sheet, BasicString<wchar_t> title)
{
    sheet.title_ = std::move(title);
    const wchar_t* const text = sheet.title_.c_str();
    sheet.header_.pszCaption = text;
    if (sheet.isOpen())
        runningHandlers([&] { SendMessageW(sheet, PSM_SETTITLEW, 0, reinterpret_cast<LPARAM>(text)); });
}

void PropertySheet::setIcon(int resource, HINSTANCE instance)
{
    Icon icon(static_cast<unsigned>(resource), instance);
    std::swap(icon_, icon); // The former one lives until the window does not show it any more.
    header_.dwFlags |= PSH_USEHICON;
    header_.hIcon = icon_;
    SheetInternals::showIcon(*this);
}

// The system's sheet itself gives its window a small icon only.
void PropertySheet::SheetInternals::showIcon(PropertySheet& sheet)
{
    if (!sheet.isOpen() || sheet.icon_.isNull())
        return;
    sheet.setIcon(sheet.icon_.getHandle(), false);
    sheet.setIcon(sheet.icon_.getHandle(), true);
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
