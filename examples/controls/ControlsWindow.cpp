#include "ControlsWindow.h"

#include "Ids.h"

#include <tarn/AutoRedraw.h>
#include <tarn/Exception.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <functional>
#include <string>

namespace {
constexpr int leftX = 12, leftWidth = 230, rightX = 256, rightWidth = 552;
constexpr int nightX = 820, nightWidth = 230, toolsHeight = 30;
constexpr tarn::Size clientSize{1062, 546 + toolsHeight};
constexpr unsigned long shown = WS_VISIBLE | WS_TABSTOP;
constexpr unsigned long windowStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
constexpr short largestFilter = 6000;
constexpr int narrowest = 60, widest = 260, usualWidth = 150;
constexpr unsigned long transparent = RGB(255, 0, 255);

constexpr unsigned long views[] = {LVS_REPORT, LVS_LIST, LVS_SMALLICON, LVS_ICON};

// All these are in units of 1/96 inch.
int toPixels(int units) { return tarn::DPI::ofSystem().toPixels(units); }

// In pixels, below the tool bar.
tarn::Rect place(int x, int y, int width, int height)
{
    return tarn::DPI::ofSystem().toPixels(tarn::Rect(tarn::Point(x, y + toolsHeight), tarn::Size(width, height)));
}

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

/// A picture whose light grey becomes the colour of a button.
tarn::Bitmap loadOnButtonFace(int id, HINSTANCE program)
{
    const HANDLE bitmap = LoadImageW(program, MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_LOADMAP3DCOLORS);
    if (!bitmap)
        throw tarn::WindowsError("Can't load a picture");
    return tarn::Bitmap(static_cast<HBITMAP>(bitmap), true);
}

bool goesRound(const Body& body, const Body& centre)
{
    return body.centre && std::wcscmp(body.centre, centre.name) == 0;
}

void sort(std::vector<const Body*>& wanted, int order)
{
    if (order == 1)
        std::ranges::stable_sort(wanted, std::greater(), &Body::diameterKm);
    else if (order == 2)
        std::ranges::sort(wanted, [](const Body* a, const Body* b) { return std::wcscmp(a->name, b->name) < 0; });
}
} // namespace

bool BodyTree::onReflectedNotification(const NMTREEVIEWW& notification)
{
    if (notification.hdr.code != TVN_SELCHANGEDW || !onSelection)
        return false;
    onSelection();
    return true;
}

ControlsWindow::ControlsWindow(HINSTANCE program)
    : program_(program),
      windowClass_(0, 0, LoadIconW(nullptr, IDI_APPLICATION), COLOR_BTNFACE, LoadCursorW(nullptr, IDC_ARROW), program),
      treePictures_(ID_SMALL_PICTURES, tarn::ImageList::bitmap, 16, transparent, LR_CREATEDIBSECTION, program),
      smallPictures_(ID_SMALL_PICTURES, tarn::ImageList::bitmap, 16, transparent, LR_CREATEDIBSECTION, program),
      largePictures_(ID_LARGE_PICTURES, tarn::ImageList::bitmap, 32, transparent, LR_CREATEDIBSECTION, program),
      resetPicture_(loadOnButtonFace(ID_RESET_PICTURE, program)), swatch_(colours_)
{
    tarn::Rect rect(tarn::Point(60, 60), tarn::DPI::ofSystem().toPixels(clientSize));
    AdjustWindowRect(&rect, windowStyle, FALSE);
    create(windowClass_, L"The solar system", windowStyle, rect, nullptr, nullptr, program);
    addLeftSide();
    addView();
    addFilter();
    addNote();
    addObservation();
    fillTree();
}

// Before the members, whose pictures and class are in use until then.
ControlsWindow::~ControlsWindow()
{
    try {
        destroy();
    } catch (...) { // The window class will not go either, and says so.
    }
}

HWND ControlsWindow::addChild(const wchar_t* className, const wchar_t* text, unsigned long style, int id,
                              const tarn::Rect& rect)
{
    const unsigned long edge = style & WS_BORDER ? WS_EX_CLIENTEDGE : 0;
    const HWND child = CreateWindowExW(edge, className, text, WS_CHILD | WS_VISIBLE | (style & ~WS_BORDER), rect.left,
                                       rect.top, rect.getWidth(), rect.getHeight(), *this,
                                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), program_, nullptr);
    if (!child)
        throw tarn::WindowsError("Can't create window");
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
    return child;
}

void ControlsWindow::addLeftSide()
{
    addChild(L"STATIC", L"&Bodies", 0, ID_LABEL, place(leftX, 10, leftWidth, 16));
    tree_.create(*this, ID_TREE, place(leftX, 28, leftWidth, 280),
                 shown | WS_BORDER | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS);
    tree_.setImageList(treePictures_, tarn::TreeView::normal);

    addChild(L"STATIC", L"&Order of the list", 0, ID_LABEL, place(leftX, 320, leftWidth, 16));
    order_.create(*this, ID_ORDER, place(leftX, 338, leftWidth, 120), shown | WS_VSCROLL | CBS_DROPDOWNLIST);
    order_.addString(ID_ORDERS, program_);
    order_.setCurrentSelection(0);

    addChild(L"STATIC", L"&Colour of the names", 0, ID_LABEL, place(leftX, 374, leftWidth, 16));
    addChild(L"LISTBOX", L"", WS_BORDER | WS_TABSTOP | LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_NOINTEGRALHEIGHT,
             ID_COLOURS, place(leftX, 392, leftWidth, 110));
    colours_.attach(*this, ID_COLOURS);
    colours_.fill();
}

void ControlsWindow::addView()
{
    kinds_.create(*this, ID_KINDS, place(rightX, 28, rightWidth, 280), shown | WS_CLIPSIBLINGS);
    for (const wchar_t* kind : {L"All", L"Planets", L"Dwarf planets", L"Moons"})
        kinds_.addTab(kind);
    list_.create(*this, ID_BODIES, kinds_.getPageRectangle(), shown | LVS_SINGLESEL | LVS_SHOWSELALWAYS);
    list_.setPosition(HWND_TOP, SWP_NOMOVE | SWP_NOSIZE); // Above the tabs.
    list_.swapImageList(tarn::ListView::small_images, smallPictures_);
    list_.swapImageList(tarn::ListView::normal, largePictures_);
    list_.setExtendedListViewStyle(LVS_EX_FULLROWSELECT);
    list_.insertColumn(0, L"Name", toPixels(usualWidth));
    list_.insertColumn(1, L"Diameter (km)", toPixels(110), LVCFMT_RIGHT);
    list_.insertColumn(2, L"Once round (days)", toPixels(120), LVCFMT_RIGHT);
    addChild(L"STATIC", L"What goes round the selected body", 0, ID_LABEL, place(rightX, 10, rightWidth, 16));

    addChild(L"BUTTON", L"View", BS_GROUPBOX, ID_LABEL, place(rightX, 316, 130, 112));
    const wchar_t* const names[] = {L"&Details", L"&List", L"&Small icons", L"&Icons"};
    for (int i = 0; i < 4; ++i) {
        addChild(L"BUTTON", names[i], BS_AUTORADIOBUTTON | (i == 0 ? WS_GROUP | WS_TABSTOP : 0u), ID_DETAILS + i,
                 place(rightX + 12, 334 + i * 22, 106, 20));
    }
    views_.create(*this, ID_DETAILS);
    views_.setSelection(0);
    showView();
}

void ControlsWindow::addFilter()
{
    constexpr int x = rightX + 146, width = rightWidth - 146;
    addChild(L"STATIC", L"", WS_GROUP, ID_SMALLEST_TEXT, place(x, 320, width, 16));
    smallest_.create(*this, ID_SMALLEST, place(x - 8, 336, width + 16, 32), shown);
    smallest_.setRange(0, largestFilter, false);
    smallest_.sendMessageA(TBM_SETPAGESIZE, 0, 500);
    smallest_.sendMessageA(TBM_SETLINESIZE, 0, 100);
    for (int tick = 1000; tick < largestFilter; tick += 1000)
        smallest_.addTick(tick);

    addChild(L"STATIC", L"Shown", 0, ID_LABEL, place(x, 370, 150, 16));
    share_.create(*this, ID_SHARE, place(x + 150, 370, width - 150, 16), WS_VISIBLE);

    addChild(L"STATIC", L"&Width of the names", 0, ID_LABEL, place(x, 408, 150, 16));
    width_.create(*this, ID_WIDTH, place(x + 150, 408, width - 150, 18), shown | SBS_HORZ);
    width_.setScrollInfo({sizeof(SCROLLINFO), SIF_ALL, narrowest, widest + 19, 20, usualWidth, 0}, true);
}

void ControlsWindow::addNote()
{
    addChild(L"STATIC", L"&Note", 0, ID_LABEL, place(rightX, 438, 100, 16));
    addChild(L"EDIT", L"", WS_BORDER | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL, ID_NOTE,
             place(rightX, 456, 360, 46));
    note_.attach(*this, ID_NOTE);
    status_.create(*this, ID_STATUS);
    status_.setParts({toPixels(rightX), -1});

    addChild(L"BUTTON", L"&Read-only", WS_TABSTOP | BS_AUTOCHECKBOX, ID_READ_ONLY, place(rightX + 372, 436, 100, 18));
    readOnly_.attach(*this, ID_READ_ONLY);
    addChild(L"BUTTON", L"Reset", WS_TABSTOP | BS_BITMAP, ID_RESET, place(rightX + 372, 458, 60, 44));
    reset_.attach(*this, ID_RESET);
    reset_.setImage(resetPicture_);
    addChild(L"BUTTON", L"Next colour", WS_TABSTOP | BS_OWNERDRAW, ID_SWATCH, place(rightX + 444, 458, 108, 44));
    swatch_.attach(*this, ID_SWATCH);
}

void ControlsWindow::addObservation()
{
    tools_.create(*this, ID_TOOLS, TBSTYLE_FLAT | TBSTYLE_LIST);
    tools_.useStandardImages(false);
    tools_.addButton(ID_CLEAR_NOTE, L"New note", STD_FILENEW);
    tools_.addButton(ID_WRITE_DOWN, L"Write down", STD_FILESAVE);
    tools_.addSeparator();
    tools_.addButton(ID_RESET, L"Reset", STD_UNDO);
    tools_.adjust();

    addChild(L"STATIC", L"Seen in the ni&ght of", 0, ID_LABEL, place(nightX, 10, nightWidth, 16));
    day_.create(*this, ID_DAY, place(nightX, 28, nightWidth, 0), shown);
    const int height = day_.getSizeOfMonth().cy, below = 28 + tarn::DPI::ofSystem().toUnits(height);
    day_.setSize(toPixels(nightWidth), height, SWP_NOZORDER);
    addChild(L"STATIC", L"&at", 0, ID_LABEL, place(nightX, below + 14, 90, 16));
    time_.create(*this, ID_TIME, place(nightX + 100, below + 10, 130, 22), shown | DTS_TIMEFORMAT);
    addChild(L"STATIC", L"&Magnified", 0, ID_LABEL, place(nightX, below + 44, 90, 16));
    addChild(L"EDIT", L"", WS_BORDER | WS_TABSTOP | ES_NUMBER, ID_POWER, place(nightX + 100, below + 40, 130, 22));
    power_.attach(*this, ID_POWER);
    powerArrows_.create(*this, ID_POWER_ARROWS, place(0, 0, 0, 0),
                        WS_VISIBLE | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS);
    powerArrows_.setBuddy(power_);
    powerArrows_.setRange(10, 400);
    powerArrows_.setPosition(100);

    tips_.create(*this);
    tips_.add(reset_, L"All bodies, in their order");
    tips_.add(swatch_, L"The next colour for the names");
    tips_.add(power_, L"How many times the telescope magnifies");
}

void ControlsWindow::fillTree()
{
    std::vector<HTREEITEM> items;
    for (const Body& body : bodies()) {
        HTREEITEM centre = TVI_ROOT;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (goesRound(body, bodies()[i]))
                centre = items[i];
        }
        items.push_back(tree_.insertItem(body.name, body.kind, body.kind, &body, centre, TVI_LAST));
    }
    tree_.onSelection = [this] { showBodies(); };
    tree_.expand(items.front(), TVE_EXPAND);
    tree_.selectItem(items.front());
}

void ControlsWindow::showBodies()
{
    const Body* const centre = tree_.getBody();
    if (!centre)
        return;
    const int smallest = smallest_.getPosition();
    std::vector<const Body*> wanted;
    int all = 0;
    for (const Body& body : bodies()) {
        if (!goesRound(body, *centre))
            continue;
        ++all;
        const int kind = kinds_.getCurrentSelection(); // From 1 on they are those of the bodies.
        if (body.diameterKm >= smallest && (kind <= 0 || kind == body.kind))
            wanted.push_back(&body);
    }
    sort(wanted, order_.getCurrentSelection());

    const tarn::AutoRedraw filling(list_);
    list_.deleteAllItems();
    for (const Body* body : wanted) {
        const auto item = static_cast<unsigned>(list_.insertItem(body->name, body, body->kind));
        list_.setItemText(item, withSeparators(body->diameterKm).c_str(), 1);
        list_.setItemText(item, daysOf(*body).c_str(), 2);
    }
    list_.setSortArrow(0, tarn::ListView::no_arrow);
    share_.setRange(0, std::max(all, 1));
    share_.setPos(static_cast<int>(wanted.size()));
    status_.setPartText(0, (std::to_wstring(wanted.size()) + L" of " + std::to_wstring(all) + L" are shown").c_str());
    status_.setPartText(1, L"A click at the head of a column sorts by it");
    setText(ID_SMALLEST_TEXT, (L"Diameter at least " + withSeparators(smallest) + L" km").c_str());
    describe(*centre);
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

void ControlsWindow::showWidth() { list_.setColumnWidth(0, toPixels(width_.getScrollInfo(SIF_POS).nPos)); }

void ControlsWindow::describe(const Body& body)
{
    std::wstring text = (body.centre ? body.name : L"The Sun") + std::wstring(L" is ") +
                        withSeparators(body.diameterKm) + L" km across";
    if (body.centre)
        text += L" and takes " + daysOf(body) + L" days to go once round " + nameInText(body.centre);
    note_.setText((text + L".\r\n").c_str());
}

void ControlsWindow::writeDown()
{
    const auto day = day_.getDate();
    const auto time = time_.getTime();
    wchar_t text[80];
    std::swprintf(text, 80, L"Seen on %d-%02u-%02u at %02d:%02d, magnified %d times.\r\n", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()), time->wHour, time->wMinute,
                  powerArrows_.getPosition());
    note_.setSelection(-1, -1);
    note_.replaceSelection(text);
}

void ControlsWindow::reset()
{
    smallest_.setPosition(0, true);
    order_.setCurrentSelection(0);
    width_.setScrollInfo({sizeof(SCROLLINFO), SIF_POS, 0, 0, 0, usualWidth, 0}, true);
    showWidth();
    showBodies();
}

void ControlsWindow::onCommand(Window* sender, unsigned short code, unsigned short id)
{
    if (id == ID_ORDER && code == CBN_SELCHANGE) {
        showBodies();
    } else if (id == ID_COLOURS && code == LBN_SELCHANGE) {
        showColour();
    } else if (ID_DETAILS <= id && id <= ID_ICONS && code == BN_CLICKED) {
        showView();
    } else if (id == ID_READ_ONLY && code == BN_CLICKED) {
        note_.setReadonly(readOnly_.getCheck() == checked);
    } else if (id == ID_RESET && code == BN_CLICKED) {
        reset();
    } else if (id == ID_CLEAR_NOTE) {
        note_.setText(L"");
    } else if (id == ID_WRITE_DOWN) {
        writeDown();
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

void ControlsWindow::sortBy(int column)
{
    list_.sortItems([column](const void* a, const void* b) {
        const auto &first = *static_cast<const Body*>(a), &second = *static_cast<const Body*>(b);
        if (column == 0)
            return std::wcscmp(first.name, second.name);
        if (column == 1)
            return first.diameterKm - second.diameterKm;
        return first.orbitDays < second.orbitDays ? -1 : first.orbitDays > second.orbitDays;
    });
    list_.setSortArrow(static_cast<unsigned>(column), tarn::ListView::ascending);
}

LRESULT ControlsWindow::onNotify(const NMHDR& header)
{
    if (header.idFrom == ID_KINDS && header.code == TCN_SELCHANGE)
        return showBodies(), 0;
    return Window::onNotify(header);
}

void ControlsWindow::onNotification(const NMLISTVIEW& notification)
{
    if (notification.hdr.code == LVN_COLUMNCLICK)
        return sortBy(notification.iSubItem);
    const bool isSelected = notification.hdr.code == LVN_ITEMCHANGED && (notification.uNewState & LVIS_SELECTED);
    if (isSelected)
        describe(*static_cast<const Body*>(list_.getItemData(static_cast<unsigned>(notification.iItem))));
    else
        Window::onNotification(notification);
}

void ControlsWindow::onDPIChanged(const tarn::DPI& dpi, const tarn::Rect& suggested)
{
    const HFONT former = reinterpret_cast<HFONT>(tree_.sendMessageA(WM_GETFONT));
    tarn::Font next = tarn::Font(former, false).rescaled(dpi_, dpi);
    rescaleControls(dpi_, dpi, former, next);
    font_ = std::move(next);
    dpi_ = dpi;
    Window::onDPIChanged(dpi, suggested);
}

void ControlsWindow::onDestroy() { PostQuitMessage(0); }
