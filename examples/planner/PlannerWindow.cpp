#include "PlannerWindow.h"

#include "Ids.h"

#include <tarn/MessageLoop.h>

#include <algorithm>
#include <initializer_list>

using tarn::Rect;

namespace planner {
namespace {
// In units of 1/96 inch.
constexpr int treeWidth = 170, gap = 6, greatestListHeight = 150, dayTitleHeight = 24;
constexpr tarn::Size usualSize{1040, 760}, smallestSize{640, 520};
} // namespace

PlannerWindow::PlannerWindow(HINSTANCE program, const Messages& messages)
    : program_(program), messages_(messages), settings_(Settings::load(HKEY_CURRENT_USER, Settings::registryKey)),
      document_(new Document), selected_(today(Zone(settings_.zone))),
      windowClass_(0, ID_PROGRAM, LoadIconW(program, MAKEINTRESOURCEW(ID_PROGRAM)), COLOR_BTNFACE,
                   LoadCursorW(nullptr, IDC_ARROW), program),
      accelerators_(ID_PROGRAM, program)
{
    const tarn::DPI dpi = tarn::DPI::ofSystem();
    makeFonts(dpi);
    create(windowClass_, L"Planner", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
           Rect(tarn::Point(40, 30), dpi.toPixels(usualSize)), nullptr, nullptr, program);
    addChildren();
    layOut(getClientSize());
    setFile(L"");
    refresh();
    startTimer(1, 60000);
}

// Before the members, whose pictures and class are in use until then.
PlannerWindow::~PlannerWindow()
{
    try {
        destroy();
    } catch (...) { // The window class will not go either, and says so.
    }
}

void PlannerWindow::addChildren()
{
    tree_.create(*this, ID_TREE, Rect(),
                 WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS);
    tree_.setExtendedStyle(0, WS_EX_CLIENTEDGE);
    tree_.onSelect = [this](int year, int month) { goTo(settings_.reckoning.firstOfMonth(year, month)); };
    sheet_.create(*this, program_);
    sheet_.onSelect = [this](Day day) { goTo(day); };
    sheet_.onOpen = [this] { add(); };
    dayTitle_.create(L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_NOPREFIX | SS_CENTERIMAGE, Rect(), *this, nullptr,
                     program_);
    dayTitle_.sendMessageW(WM_SETFONT, reinterpret_cast<WPARAM>(titleFont_.getHandle()), TRUE);
    list_.create(*this);
    status_.create(*this, ID_STATUS, SBARS_SIZEGRIP);
    lastFocus_ = sheet_;
}

void PlannerWindow::showAsLeft()
{
    WINDOWPLACEMENT placement = settings_.placement.value_or(WINDOWPLACEMENT());
    if (placement.showCmd != SW_SHOWMAXIMIZED)
        placement.showCmd = SW_SHOWNORMAL; // Not minimized, and not hidden whatever was stored.
    if (!settings_.placement || !SetWindowPlacement(*this, &placement))
        show(SW_SHOW);
}

// Of the keys of dialogs only Tab: the arrows and Enter are for the controls.
bool PlannerWindow::handleKey(MSG& msg) const
{
    const bool isTab = msg.message == WM_KEYDOWN && msg.wParam == VK_TAB;
    return tarn::handleAccelerator(*this, accelerators_, msg) || (isTab && tarn::handleDialogMessage(*this, msg));
}

LRESULT PlannerWindow::onMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    switch (msg) {
    case WM_QUERYENDSESSION: {
        bool mayEnd = false;
        performGuarded([&] { mayEnd = mayDiscard(); });
        return mayEnd;
    }
    case WM_GETFONT: // The controls take it over.
        return reinterpret_cast<LRESULT>(font_.getHandle());
    case WM_MOUSEWHEEL: // Comes up from the controls that do not use it.
        sheet_.sendMessageW(msg, wParam, lParam);
        return 0;
    case WM_GETMINMAXINFO: {
        const tarn::Size smallest = getDPI().toPixels(smallestSize);
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = POINT{smallest.cx, smallest.cy};
        return 0;
    }
    default:
        break;
    }
    return Window::onMessage(msg, wParam, lParam);
}

// What others send while a dialog is open has to wait for its answer.
void PlannerWindow::onClose()
{
    if (IsWindowEnabled(*this))
        postMessageW(WM_COMMAND, ID_EXIT);
    else
        MessageBeep(MB_OK);
}

void PlannerWindow::onActivate(unsigned short state, bool isMinimised, Window* other)
{
    if (state == WA_INACTIVE && IsChild(*this, GetFocus()))
        lastFocus_ = GetFocus();
    Window::onActivate(state, isMinimised, other);
}

void PlannerWindow::onFocusGained(Window*) { SetFocus(lastFocus_); }

// The list's own commands go the way of the menu's, when the list is done with the message.
LRESULT PlannerWindow::onNotify(const NMHDR& header)
{
    if (header.hwndFrom == list_.getWindowHandle() && (header.code == NM_DBLCLK || header.code == NM_RETURN))
        postMessageW(WM_COMMAND, list_.selected() ? ID_CHANGE : ID_ADD);
    return Window::onNotify(header);
}

void PlannerWindow::onSize(UINT type, const tarn::Size& clientSize)
{
    if (type != SIZE_MINIMIZED && list_.isOpen())
        layOut(clientSize);
}

void PlannerWindow::layOut(const tarn::Size& pixels)
{
    status_.adjust();
    const tarn::DPI dpi = getDPI();
    const tarn::Size size = dpi.toUnits(pixels);
    const long bottom = size.cy - dpi.toUnits(status_.getWindowSize()).cy - gap;
    const long listTop = bottom - std::min<long>(greatestListHeight, size.cy / 4), titleTop = listTop - dayTitleHeight,
               left = treeWidth + 2 * gap;
    tree_.move(dpi.toPixels(Rect(gap, gap, treeWidth + gap, bottom)), true);
    sheet_.move(dpi.toPixels(Rect(left, gap, size.cx - gap, titleTop - gap)), true);
    dayTitle_.move(dpi.toPixels(Rect(left, titleTop, size.cx - gap, listTop)), true);
    list_.move(dpi.toPixels(Rect(left, listTop, size.cx - gap, bottom)), true);
    list_.layOut();
}

void PlannerWindow::makeFonts(const tarn::DPI& dpi)
{
    font_ = makeFont(dpi.toPixels(-13), FW_NORMAL);
    titleFont_ = makeFont(dpi.toPixels(-14), FW_BOLD);
}

void PlannerWindow::onDPIChanged(const tarn::DPI& dpi, const Rect& suggested)
{
    makeFonts(dpi);
    for (const Window* const child : std::initializer_list<const Window*>{&tree_, &list_, &status_})
        child->sendMessageW(WM_SETFONT, reinterpret_cast<WPARAM>(font_.getHandle()), FALSE);
    dayTitle_.sendMessageW(WM_SETFONT, reinterpret_cast<WPARAM>(titleFont_.getHandle()), FALSE);
    Window::onDPIChanged(dpi, suggested); // Which leads to onSize().
}

// Whether midnight has passed.
void PlannerWindow::onTimer(UINT_PTR)
{
    const Zone zone(settings_.zone);
    if (today(zone) != today_)
        refresh();
    if (reminder_)
        reminder_->look(*document_, zone);
}

void PlannerWindow::goTo(Day day)
{
    const Reckoning& reckoning = settings_.reckoning;
    selected_ = std::clamp(day, reckoning.firstOfMonth(firstYear, 0), reckoning.lastOfMonth(lastYear, 11));
    refresh();
}

void PlannerWindow::refresh()
{
    const Zone zone(settings_.zone);
    today_ = today(zone);
    const Date date = settings_.reckoning.dateOf(selected_);
    sheet_.show(MonthContent::of(*document_, settings_.reckoning, zone, selected_));
    tree_.show(date.year, date.month);
    showDay(zone);
    showTitle();
}

void PlannerWindow::showDay(const Zone& zone)
{
    const Reckoning& reckoning = settings_.reckoning;
    list_.show(document_->occurrences(selected_, selected_, zone), selected_);
    dayTitle_.setText((weekdayName(reckoning.weekdayOf(selected_)) + (L", " + dateText(reckoning.dateOf(selected_))) +
                       L", week " + std::to_wstring(reckoning.weekOf(selected_)))
                          .c_str());
    const std::size_t count = document_->appointments().size();
    showStatus(std::to_wstring(count) + (count == 1 ? L" appointment" : L" appointments") + L" in " +
               (file_.empty() ? L"a new document" : file_));
}

void PlannerWindow::showTitle()
{
    const tarn::BasicString<wchar_t> name =
        file_.empty() ? L"Untitled" : tarn::BasicString<wchar_t>(file_).getPathElement(-1);
    setText((name + (document_->isModified() ? L"* - Planner" : L" - Planner")).c_str());
}

void PlannerWindow::onDestroy()
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (GetWindowPlacement(*this, &placement))
        settings_.placement = placement;
    performGuarded([this] { settings_.save(HKEY_CURRENT_USER, Settings::registryKey); });
    PostQuitMessage(0);
}
} // namespace planner
