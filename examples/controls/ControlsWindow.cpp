#include "ControlsWindow.h"

#include "Ids.h"

#include <tarn/Exception.h>
#include <tarn/HeaderControl.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <iterator>
#include <string>

namespace {
constexpr int narrowest = 60, widest = 260, usualWidth = 150; // Of the names, in units of 1/96 inch.
constexpr unsigned long views[] = {LVS_REPORT, LVS_LIST, LVS_SMALLICON, LVS_ICON};

/// What the entries of the combo box stand for.
struct Order {
    int column;
    bool isAscending;
};
constexpr Order orders[] = {{2, true}, {1, false}, {0, true}};

std::wstring withSeparators(int number)
{
    std::wstring digits = std::to_wstring(number);
    for (auto at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), L",");
    return digits;
}

std::wstring daysOf(const Body& body)
{
    if (body.orbitDays >= 100)
        return withSeparators(static_cast<int>(std::lround(body.orbitDays)));
    wchar_t text[40];
    std::swprintf(text, 40, L"%.1f", body.orbitDays);
    return text;
}

std::wstring nameInText(const std::wstring& name) { return name == L"Sun" ? L"the Sun" : name; }

bool goesRound(const Body& body, const Body* centre)
{
    return centre ? body.centre && std::wcscmp(body.centre, centre->name) == 0 : !body.centre;
}

/// Below 0 when `a` comes first.
double compare(const Body& a, const Body& b, int column)
{
    if (column == 0)
        return std::wcscmp(a.name, b.name);
    return column == 1 ? a.diameterKm - b.diameterKm : a.orbitDays - b.orbitDays;
}
} // namespace

bool BodyTree::onReflectedNotification(const NMTREEVIEWW& notification)
{
    if (notification.hdr.code == TVN_ITEMEXPANDINGW && !getFirstChild(notification.itemNew.hItem))
        insert(notification.itemNew.hItem, static_cast<const Body*>(getItemData(notification.itemNew.hItem)));
    if (notification.hdr.code != TVN_SELCHANGEDW || !onSelection)
        return false;
    onSelection();
    return true;
}

void BodyTree::insert(HTREEITEM parent, const Body* centre) const
{
    for (const Body& body : bodies()) {
        if (!goesRound(body, centre))
            continue;
        const HTREEITEM item = insertItem(body.name, body.kind, body.kind, &body, parent, TVI_LAST);
        setHasChildren(item, std::ranges::any_of(bodies(), [&](const Body& moon) { return goesRound(moon, &body); }));
    }
}

ControlsWindow::ControlsWindow(HINSTANCE program)
    : program_(program),
      windowClass_(0, 0, LoadIconW(nullptr, IDI_APPLICATION), COLOR_BTNFACE, LoadCursorW(nullptr, IDC_ARROW), program),
      swatch_(colours_)
{
    create(windowClass_, L"The solar system", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
           {CW_USEDEFAULT, CW_USEDEFAULT, 0, 0}, nullptr, nullptr, program);
    addFrame();
    addLeftSide();
    addView();
    addFilter();
    addNote();
    addObservation();
    addTips();
    measure();
    anchor();
    tree_.fill();
    tree_.onSelection = [this] { showBodies(); };
    tree_.expand(tree_.getFirstChild(TVI_ROOT), TVE_EXPAND);
    tree_.selectItem(tree_.getFirstChild(TVI_ROOT));
    countSeen();
}

// Before the members, whose pictures and class are in use until then.
ControlsWindow::~ControlsWindow()
{
    try {
        destroy();
    } catch (...) { // The window class will not go either, and says so.
    }
}

// The controls take the font of the window.
LRESULT ControlsWindow::onMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg == WM_GETFONT)
        return reinterpret_cast<LRESULT>(font_.getHandle());
    return Window::onMessage(msg, wParam, lParam);
}

void ControlsWindow::showBodies()
{
    const Body* const centre = tree_.getBody();
    if (!centre)
        return;
    const int smallest = smallest_.getPosition();
    const int kind = kinds_.getCurrentSelection(); // From 1 on they are those of the bodies.
    const auto beginning = find_.getTextW().toLower();
    shown_.clear();
    int all = 0;
    for (const Body& body : bodies()) {
        if (!goesRound(body, centre))
            continue;
        ++all;
        const bool isWanted = tarn::BasicString<wchar_t>(body.name).toLower().startsWith(beginning);
        if (isWanted && body.diameterKm >= smallest && (kind <= 0 || kind == body.kind))
            shown_.push_back(&body);
    }
    sort();
    share_.setRange(0, std::max(all, 1));
    share_.setPos(static_cast<int>(shown_.size()));
    status_.setPartText(0, (std::to_wstring(shown_.size()) + L" of " + std::to_wstring(all) + L" are shown").c_str());
    status_.setPartText(1, L"A click at the head of a column sorts by it");
    smallestText_.setText((L"Diameter at least " + withSeparators(smallest) + L" km").c_str());
    describe(*centre);
}

void ControlsWindow::sortBy(int column, bool isAscending)
{
    sortColumn_ = column;
    isAscending_ = isAscending;
    const auto isChosen = [&](const Order& order) {
        return order.column == column && order.isAscending == isAscending;
    };
    const auto found = std::ranges::find_if(orders, isChosen);
    order_.setCurrentSelection(static_cast<unsigned>(found == std::end(orders) ? -1 : found - orders));
    sort();
}

// The list keeps nothing: it asks for what it shows.
void ControlsWindow::sort()
{
    std::ranges::stable_sort(shown_, [this](const Body* a, const Body* b) {
        const double order = compare(*a, *b, sortColumn_);
        return isAscending_ ? order < 0 : order > 0;
    });
    list_.setSelected(static_cast<unsigned>(-1), false);
    list_.setItemCount(static_cast<unsigned>(shown_.size()));
    list_.setSortArrow(static_cast<unsigned>(sortColumn_),
                       isAscending_ ? tarn::ListView::ascending : tarn::ListView::descending);
    list_.invalidate(true);
}

tarn::BasicString<wchar_t> ControlsWindow::textOf(unsigned item, unsigned column) const
{
    const Body& body = *shown_.at(item);
    if (column == 0)
        return body.name;
    return column == 1 ? withSeparators(body.diameterKm) : daysOf(body);
}

void ControlsWindow::showView()
{
    const int view = std::max(views_.getSelection(), 0);
    list_.setStyle(LVS_TYPEMASK, views[view]);
    list_.invalidate(true);
}

void ControlsWindow::showColour()
{
    list_.sendMessageA(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(colours_.getColour().value));
    list_.invalidate(true);
    swatch_.invalidate(false);
}

void ControlsWindow::showWidth() { list_.setColumnWidth(0, dpi_.toPixels(width_.getScrollInfo(SIF_POS).nPos)); }

void ControlsWindow::describe(const Body& body)
{
    std::wstring text = (body.centre ? body.name : L"The Sun") + std::wstring(L" is ") +
                        withSeparators(body.diameterKm) + L" km across";
    if (body.centre)
        text += L" and takes " + daysOf(body) + L" days to go once round " + nameInText(body.centre);
    note_.setText((text + L".\r\n").c_str());
}

// What was looked at, when and how.
void ControlsWindow::writeDown()
{
    const int selected = list_.getNextSelectedItem(-1);
    const Body* const body = selected < 0 ? tree_.getBody() : shown_.at(static_cast<std::size_t>(selected));
    const auto day = day_.getDate();
    const auto time = time_.getTime();
    wchar_t text[80];
    std::swprintf(text, 80, L"%ls, %02u-%02u %02d:%02d, %d times", body ? body->name : L"Nothing",
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()), time->wHour, time->wMinute,
                  powerArrows_.getPosition());
    const auto item = static_cast<unsigned>(seen_.insertItem(text));
    seen_.setChecked(item, follow_.getCheck() == checked);
    seen_.ensureVisible(item, false);
    countSeen();
}

void ControlsWindow::countSeen()
{
    const unsigned all = seen_.getItemCount();
    unsigned sure = 0;
    for (unsigned item = 0; item < all; ++item)
        sure += seen_.isChecked(item) ? 1 : 0;
    status_.setPartText(2, (std::to_wstring(all) + L" seen, " + std::to_wstring(sure) + L" for sure").c_str());
}

void ControlsWindow::reset()
{
    smallest_.setPosition(0, true);
    find_.setText(L"");
    width_.setScrollInfo({sizeof(SCROLLINFO), SIF_POS, 0, 0, 0, usualWidth, 0}, true);
    showWidth();
    tarn::HeaderControl(list_.getHeader()).setOrder({0, 1, 2});
    sortBy(orders[0].column, orders[0].isAscending);
    showBodies();
}

void ControlsWindow::onCommand(Window* sender, unsigned short code, unsigned short id)
{
    if (id == ID_FIND && code == EN_CHANGE) {
        showBodies();
    } else if (id == ID_ORDER && code == CBN_SELCHANGE) {
        const Order& order = orders[order_.getCurrentSelection()];
        sortBy(order.column, order.isAscending);
    } else if (id == ID_COLOURS && code == LBN_SELCHANGE) {
        showColour();
    } else if (ID_DETAILS <= id && id <= ID_ICONS && code == BN_CLICKED) {
        showView();
    } else if (id == ID_READ_ONLY && code == BN_CLICKED) {
        note_.setReadonly(readOnly_.getCheck() == checked);
    } else if (id == ID_FOLLOW && code == BN_CLICKED) {
        following_.setMarquee(follow_.getCheck() == checked);
    } else if (id == ID_RESET && code == BN_CLICKED) {
        reset();
    } else if (id == ID_CLEAR_NOTE) {
        note_.setText(L"");
    } else if (id == ID_WRITE_DOWN) {
        writeDown();
    } else if (id == ID_RENAME) {
        if (const int item = seen_.getNextItem(-1, LVNI_FOCUSED); item >= 0)
            seen_.editItem(static_cast<unsigned>(item));
    } else if (id == ID_SWATCH && code == BN_CLICKED) {
        colours_.setCurrentSelection(static_cast<unsigned>((colours_.getCurrentSelection() + 1) % colours_.getCount()));
        showColour();
    } else {
        Window::onCommand(sender, code, id);
    }
}

void ControlsWindow::onHScroll(Window* bar, unsigned short code, unsigned short position)
{
    if (bar == &smallest_) {
        showBodies();
        return;
    }
    if (bar != &width_ || code == SB_ENDSCROLL)
        return;
    SCROLLINFO info = width_.getScrollInfo(SIF_ALL);
    const int page = static_cast<int>(info.nPage);
    switch (code) {
    case SB_LINELEFT:
        info.nPos -= 5;
        break;
    case SB_LINERIGHT:
        info.nPos += 5;
        break;
    case SB_PAGELEFT:
        info.nPos -= page;
        break;
    case SB_PAGERIGHT:
        info.nPos += page;
        break;
    case SB_LEFT:
        info.nPos = narrowest;
        break;
    case SB_RIGHT:
        info.nPos = widest;
        break;
    default:
        info.nPos = position;
        break;
    }
    info.fMask = SIF_POS;
    width_.setScrollInfo(info, true);
    showWidth();
}

LRESULT ControlsWindow::onNotify(const NMHDR& header)
{
    if (header.idFrom == ID_KINDS && header.code == TCN_SELCHANGE)
        return showBodies(), 0;
    return Window::onNotify(header);
}

LRESULT ControlsWindow::onNotifyToAnswer(NMHDR& header)
{
    if (header.idFrom == ID_BODIES) {
        const auto picture = [this](unsigned item, unsigned) { return static_cast<int>(shown_.at(item)->kind); };
        const auto text = [this](unsigned item, unsigned column) { return textOf(item, column); };
        const bool hasPicture = tarn::ListView::giveImage(header, picture);
        if (tarn::ListView::giveText(header, text) || hasPicture)
            return 0;
    }
    if (const auto edited = tarn::ListView::getEditedText(header))
        return !edited->text.empty();
    return Window::onNotifyToAnswer(header);
}

void ControlsWindow::onNotification(const NMLISTVIEW& notification)
{
    if (notification.hdr.idFrom == ID_SEEN) {
        if (notification.hdr.code == LVN_ITEMCHANGED)
            countSeen();
        return;
    }
    if (notification.hdr.code == LVN_COLUMNCLICK)
        return sortBy(notification.iSubItem, notification.iSubItem != sortColumn_ || !isAscending_);
    const bool isSelected = notification.hdr.code == LVN_ITEMCHANGED && (notification.uNewState & LVIS_SELECTED);
    if (isSelected && notification.iItem >= 0)
        describe(*shown_.at(static_cast<std::size_t>(notification.iItem)));
    else
        Window::onNotification(notification);
}

void ControlsWindow::onDestroy() { PostQuitMessage(0); }
