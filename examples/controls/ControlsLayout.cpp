#include "ControlsWindow.h"

#include "Ids.h"

#include <tarn/AutoSelect.h>
#include <tarn/DeviceContext.h>

#include <initializer_list>

// All sizes and places here are in units of 1/96 inch, and become pixels in place() and toPixels().

namespace {
constexpr int leftX = 12, leftWidth = 220, middleX = 244, middleWidth = 500, rightX = 756, rightWidth = 232;
constexpr int bottom = 510, gap = 12, labelHeight = 16, fieldHeight = 23;
constexpr int usualColumns[] = {150, 110, 120};
constexpr unsigned long shown = WS_VISIBLE | WS_TABSTOP;
constexpr int largestFilter = 6000, narrowest = 60, widest = 260;
constexpr unsigned long transparent = RGB(255, 0, 255);

using tarn::Anchors;

unsigned widthOf(unsigned pictures)
{
    return pictures == ID_SMALL_PICTURES ? 16 : pictures == ID_LARGE_PICTURES ? 32 : 64;
}

/// An arrow that goes round to its beginning, on the face of a button.
tarn::Bitmap drawReset(const tarn::DPI& dpi)
{
    const int size = dpi.toPixels(24);
    const auto at = [&](int x, int y) { return dpi.toPixels(tarn::Point(x, y)); };
    const tarn::DeviceContext screen(nullptr, false);
    tarn::Bitmap bitmap(screen, size, size);
    tarn::DeviceContext memory = tarn::DeviceContext::createCompatible(screen);
    const tarn::AutoSelect useBitmap(memory, bitmap);
    memory.fillRectangle(COLOR_BTNFACE, tarn::Rect(0, 0, size, size));
    const tarn::AutoSelect useBrush(memory, tarn::Brush(GetSysColor(COLOR_BTNTEXT)));
    {
        const tarn::AutoSelect usePen(memory, tarn::Pen(GetSysColor(COLOR_BTNTEXT), PS_SOLID, dpi.toPixels(2)));
        memory.drawArc(tarn::Rect(at(4, 4), dpi.toPixels(tarn::Size(16, 16))), at(0, 16), at(8, 0));
    }
    memory.drawPolygon(std::initializer_list<POINT>{at(3, 9), at(10, 1), at(12, 10)});
    return bitmap;
}
} // namespace

tarn::Rect ControlsWindow::place(int x, int y, int width, int height) const
{
    return dpi_.toPixels(tarn::Rect(tarn::Point(x, y + top_), tarn::Size(width, height)));
}

void ControlsWindow::addLabel(const wchar_t* text, int x, int y, int width, unsigned edges)
{
    const auto id = static_cast<unsigned short>(ID_FIRST_LABEL + labels_.size());
    labels_.emplace_back().create(*this, id, place(x, y, width, labelHeight), text);
    anchors_.add(id, edges);
}

void ControlsWindow::addButton(tarn::Button& button, unsigned short id, const wchar_t* text, const tarn::Rect& rect,
                               unsigned long style)
{
    button.create(*this, id, rect, WS_VISIBLE | style);
    button.setText(text);
}

// The bars at the top and at the bottom, and the window round what comes between them.
void ControlsWindow::addFrame()
{
    dpi_ = getDPI();
    font_ = tarn::Font::ofSystem(dpi_);
    tools_.create(*this, ID_TOOLS, TBSTYLE_FLAT | TBSTYLE_LIST);
    tools_.useStandardImages(dpi_.getDots() >= 144);
    tools_.addButton(ID_CLEAR_NOTE, L"New note", STD_FILENEW);
    tools_.addSeparator();
    tools_.addButton(ID_WRITE_DOWN, L"Write down", STD_FILESAVE);
    tools_.addButton(ID_RENAME, L"Change", STD_PROPERTIES);
    tools_.addSeparator();
    tools_.addButton(ID_RESET, L"Reset", STD_UNDO);
    tools_.adjust();
    status_.create(*this, ID_STATUS, SBARS_SIZEGRIP);
    top_ = dpi_.toUnits(tools_.getWindowSize().cy);

    const tarn::Size outer = getWindowSize(), inner = getClientSize();
    const tarn::Rect content = place(0, 0, rightX + rightWidth + gap, bottom + gap);
    setSize(content.right + outer.cx - inner.cx, content.bottom + status_.getWindowSize().cy + outer.cy - inner.cy,
            SWP_NOZORDER);
}

void ControlsWindow::addLeftSide()
{
    constexpr unsigned above = Anchors::left | Anchors::top, below = Anchors::left | Anchors::bottom;
    addLabel(L"&Find", leftX, 10, leftWidth, above);
    find_.create(*this, ID_FIND, place(leftX, 28, leftWidth, fieldHeight), shown | WS_BORDER | ES_AUTOHSCROLL);
    find_.setHint(L"The beginning of a name", true);
    addLabel(L"&Bodies", leftX, 60, leftWidth, above);
    tree_.create(*this, ID_TREE, place(leftX, 78, leftWidth, 230),
                 shown | WS_BORDER | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS);

    addLabel(L"&Order of the list", leftX, 320, leftWidth, below);
    order_.create(*this, ID_ORDER, place(leftX, 338, leftWidth, 120), shown | WS_VSCROLL | CBS_DROPDOWNLIST);
    order_.addString(ID_ORDERS, program_);
    order_.setCurrentSelection(0);

    addLabel(L"&Colour of the names", leftX, 374, leftWidth, below);
    colours_.create(*this, ID_COLOURS, place(leftX, 392, leftWidth, bottom - 392),
                    shown | WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_NOINTEGRALHEIGHT);
    colours_.fill();
}

void ControlsWindow::addView()
{
    addLabel(L"What goes ro&und the selected body", middleX, 10, middleWidth, Anchors::left | Anchors::top);
    kinds_.create(*this, ID_KINDS, place(middleX, 28, middleWidth, 290), shown | WS_CLIPSIBLINGS);
    for (const wchar_t* kind : {L"All", L"Planets", L"Dwarf planets", L"Moons"})
        kinds_.addTab(kind);
    list_.create(*this, ID_BODIES, kinds_.getPageRectangle(),
                 shown | LVS_OWNERDATA | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_AUTOARRANGE);
    list_.setPosition(HWND_TOP, SWP_NOMOVE | SWP_NOSIZE); // Above the tabs.
    list_.setExtendedListViewStyle(LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP | LVS_EX_DOUBLEBUFFER);
    list_.insertColumn(0, L"Name", 0);
    list_.insertColumn(1, L"Diameter (km)", 0, LVCFMT_RIGHT);
    list_.insertColumn(2, L"Once round (days)", 0, LVCFMT_RIGHT);

    addButton(viewFrame_, ID_VIEW, L"View", place(middleX, 326, 130, 114), BS_GROUPBOX);
    viewFrame_.setExtendedStyle(0, WS_EX_TRANSPARENT); // The window fills the inside, which no control does.
    const wchar_t* const names[] = {L"&Details", L"&List", L"&Small icons", L"&Icons"};
    for (int i = 0; i < 4; ++i) {
        addButton(viewButtons_[i], static_cast<unsigned short>(ID_DETAILS + i), names[i],
                  place(middleX + 12, 346 + i * 22, 106, 20),
                  BS_AUTORADIOBUTTON | (i == 0 ? WS_GROUP | WS_TABSTOP : 0u));
    }
    views_.create(*this, ID_DETAILS);
    views_.setSelection(0);
}

void ControlsWindow::addFilter()
{
    constexpr int x = middleX + 146, width = middleWidth - 146, text = 120;
    smallestText_.create(*this, ID_SMALLEST_TEXT, place(x, 328, width, labelHeight), L"", WS_VISIBLE | WS_GROUP);
    smallest_.create(*this, ID_SMALLEST, place(x - 8, 346, width + 16, 32), shown | TBS_AUTOTICKS);
    smallest_.setRange(0, largestFilter, false);
    smallest_.sendMessageA(TBM_SETPAGESIZE, 0, 500);
    smallest_.sendMessageA(TBM_SETLINESIZE, 0, 100);
    smallest_.sendMessageA(TBM_SETTICFREQ, 1000);

    addLabel(L"Shown", x, 386, text, Anchors::left | Anchors::bottom);
    share_.create(*this, ID_SHARE, place(x + text, 386, width - text, labelHeight), WS_VISIBLE);

    addLabel(L"&Width of the names", x, 415, text, Anchors::left | Anchors::bottom);
    width_.create(*this, ID_WIDTH, place(x + text, 414, width - text, 18), shown | SBS_HORZ);
    width_.setScrollInfo({sizeof(SCROLLINFO), SIF_ALL, narrowest, widest + 19, 20, usualColumns[0], 0}, true);
}

void ControlsWindow::addNote()
{
    constexpr int buttonsX = middleX + middleWidth - 180;
    addLabel(L"&Note", middleX, 450, 100, Anchors::left | Anchors::bottom);
    note_.create(*this, ID_NOTE, place(middleX, 468, buttonsX - gap - middleX, bottom - 468),
                 shown | WS_BORDER | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL);
    addButton(readOnly_, ID_READ_ONLY, L"&Read-only", place(buttonsX, 446, 100, 18), WS_TABSTOP | BS_AUTOCHECKBOX);
    addButton(reset_, ID_RESET, L"Reset", place(buttonsX, 468, 60, bottom - 468), WS_TABSTOP | BS_BITMAP);
    addButton(swatch_, ID_SWATCH, L"Next colour", place(buttonsX + 72, 468, 108, bottom - 468),
              WS_TABSTOP | BS_OWNERDRAW);
}

void ControlsWindow::addObservation()
{
    constexpr unsigned edges = Anchors::right | Anchors::top;
    constexpr int fieldX = rightX + 100, fieldWidth = rightWidth - 100;
    addLabel(L"Seen in the ni&ght of", rightX, 10, rightWidth, edges);
    day_.create(*this, ID_DAY, place(rightX, 28, rightWidth, 0), shown);
    const int height = day_.getSizeOfMonth().cy;
    day_.setSize(dpi_.toPixels(rightWidth), height, SWP_NOZORDER | SWP_NOMOVE);

    int y = 28 + dpi_.toUnits(height) + 8;
    addLabel(L"&at", rightX, y + 4, 90, edges);
    time_.create(*this, ID_TIME, place(fieldX, y, fieldWidth, fieldHeight), shown | DTS_TIMEFORMAT);
    y += 30;
    addLabel(L"&Magnified", rightX, y + 4, 90, edges);
    power_.create(*this, ID_POWER, place(fieldX, y, fieldWidth, fieldHeight), shown | WS_BORDER | ES_NUMBER);
    power_.setLimit(3);
    powerArrows_.create(*this, ID_POWER_ARROWS, place(0, 0, 17, 0),
                        WS_VISIBLE | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS);
    powerArrows_.setBuddy(power_);
    powerArrows_.setRange(10, 400);
    powerArrows_.setPosition(100);
    y += 31;
    addButton(follow_, ID_FOLLOW, L"Follow i&t", place(rightX, y, 96, 18), WS_TABSTOP | BS_AUTOCHECKBOX);
    following_.create(*this, ID_FOLLOWING, place(fieldX, y + 1, fieldWidth, labelHeight), WS_VISIBLE | PBS_MARQUEE);
    y += 28;
    addLabel(L"S&een, and for sure", rightX, y, rightWidth, edges);
    y += 18;
    seen_.create(*this, ID_SEEN, place(rightX, y, rightWidth, bottom - y),
                 shown | WS_BORDER | LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_EDITLABELS | LVS_SHOWSELALWAYS);
    seen_.setExtendedListViewStyle(LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    seen_.insertColumn(0, L"Seen", 0);
}

void ControlsWindow::addTips()
{
    tips_.create(*this);
    tips_.add(find_, L"Shows the bodies whose names begin so");
    tips_.add(reset_, L"All bodies, in their order");
    tips_.add(swatch_, L"The next colour for the names");
    tips_.add(power_, L"How many times the telescope magnifies");
    tips_.add(seen_, L"A second click changes the text");
}

// The labels have theirs already. What lies in the middle grows.
void ControlsWindow::anchor()
{
    const auto add = [this](std::initializer_list<int> ids, unsigned edges) {
        for (const int id : ids)
            anchors_.add(id, edges);
    };
    add({ID_TREE}, Anchors::left | Anchors::top | Anchors::bottom);
    add({ID_KINDS, ID_BODIES}, Anchors::all);
    add({ID_ORDER, ID_COLOURS, ID_VIEW, ID_DETAILS, ID_LIST_VIEW, ID_SMALL_ICONS, ID_ICONS},
        Anchors::left | Anchors::bottom);
    add({ID_SMALLEST_TEXT, ID_SMALLEST, ID_SHARE, ID_WIDTH, ID_NOTE}, Anchors::left | Anchors::right | Anchors::bottom);
    add({ID_READ_ONLY, ID_RESET, ID_SWATCH}, Anchors::right | Anchors::bottom);
    add({ID_DAY, ID_TIME, ID_POWER, ID_POWER_ARROWS, ID_FOLLOW, ID_FOLLOWING}, Anchors::right | Anchors::top);
    add({ID_SEEN}, Anchors::right | Anchors::top | Anchors::bottom);
    anchors_.begin(*this);
}

// What does not come with the places of the controls.
void ControlsWindow::measure()
{
    for (unsigned column = 0; column < 3; ++column)
        list_.setColumnWidth(column, dpi_.toPixels(usualColumns[column]));
    showWidth();
    seen_.setColumnWidth(0, seen_.getClientSize().cx);
    colours_.setItemHeight(dpi_);
    status_.setParts({dpi_.toPixels(middleX - gap / 2), dpi_.toPixels(rightX - gap / 2), -1});
    tips_.setMaxWidth(dpi_.toPixels(rightWidth));
    loadPictures();
}

void ControlsWindow::loadPictures()
{
    const auto load = [this](unsigned pictures) {
        return tarn::ImageList(static_cast<int>(pictures), tarn::ImageList::bitmap, widthOf(pictures), transparent,
                               LR_CREATEDIBSECTION, program_);
    };
    const unsigned small = dpi_.choose({{96, ID_SMALL_PICTURES}, {192, ID_LARGE_PICTURES}});
    tarn::ImageList forTree = load(small);
    tree_.setImageList(forTree, tarn::TreeView::normal);
    treePictures_ = std::move(forTree);
    // The list owns its pictures, and gives back those that it had.
    tarn::ImageList forList = load(small);
    list_.swapImageList(tarn::ListView::small_images, forList);
    forList = load(dpi_.choose({{96, ID_LARGE_PICTURES}, {192, ID_HUGE_PICTURES}}));
    list_.swapImageList(tarn::ListView::normal, forList);

    tarn::Bitmap picture = drawReset(dpi_);
    reset_.setImage(picture);
    resetPicture_ = std::move(picture);
}

void ControlsWindow::onSize(UINT, const tarn::Size&)
{
    if (!status_.isOpen())
        return;
    tools_.adjust();
    status_.adjust();
}

void ControlsWindow::onDPIChanged(const tarn::DPI& dpi, const tarn::Rect& suggested)
{
    tarn::Font next = tarn::Font::ofSystem(dpi);
    rescaleControls(dpi_, dpi, font_, next);
    font_ = std::move(next);
    dpi_ = dpi;
    Window::onDPIChanged(dpi, suggested);
    measure();
}
