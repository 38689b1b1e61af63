#include "SketchWindow.h"

#include <tarn/AutoClip.h>
#include <tarn/AutoColour.h>
#include <tarn/AutoSelect.h>
#include <tarn/Brush.h>
#include <tarn/BufferedPaint.h>
#include <tarn/Clipboard.h>
#include <tarn/Exception.h>
#include <tarn/FolderWalk.h>
#include <tarn/Menu.h>
#include <tarn/PictureFile.h>
#include <tarn/PrintDialog.h>
#include <tarn/ShellFileDialog.h>

#include <iterator>

using tarn::Point;
using tarn::Rect;
using tarn::Size;

namespace {
struct Colour {
    const char* name;
    unsigned long value;
};
constexpr Colour colours[] = {{"Black", RGB(40, 40, 40)},
                              {"Red", RGB(205, 50, 45)},
                              {"Green", RGB(50, 140, 70)},
                              {"Blue", RGB(40, 90, 190)},
                              {"Orange", RGB(235, 150, 30)}};

struct Width {
    const char* name;
    int units;
};
constexpr Width widths[] = {{"Thin", 1}, {"Medium", 3}, {"Thick", 8}};

constexpr unsigned long paper = RGB(252, 250, 244); // Also in dark windows: the ink is dark.
// In units of 1/96 inch, as all sizes and places here that do not come from the system.
constexpr int lineStep = 20, lineHeight = 18, border = 4;
constexpr Size usualSize{760, 560};

tarn::Menu makeMenu()
{
    tarn::Menu bar(false), drawing(true), colour(true), width(true);
    const auto append = [](const tarn::Menu& menu, UINT_PTR id, const char* text, unsigned flags = 0) {
        menu.insert(text, 0xFFFFFFFF, MF_BYPOSITION | flags, id);
    };
    append(drawing, SketchWindow::undo, "Undo\tBackspace");
    append(drawing, SketchWindow::clear, "Clear\tDel");
    append(drawing, SketchWindow::copy, "Copy\tIns");
    append(drawing, SketchWindow::save, "Save a picture...");
    append(drawing, SketchWindow::list, "List a folder...");
    append(drawing, SketchWindow::print, "Print...");
    drawing.insertSeparator();
    append(drawing, SketchWindow::leave, "Exit\tEsc");
    for (std::size_t i = 0; i < std::size(colours); ++i)
        append(colour, SketchWindow::firstColour + i, colours[i].name);
    for (std::size_t i = 0; i < std::size(widths); ++i)
        append(width, SketchWindow::firstWidth + i, widths[i].name);
    const auto give = [&](tarn::Menu& menu, const char* text) {
        append(bar, reinterpret_cast<UINT_PTR>(menu.getHandle()), text, MF_POPUP);
        menu.detach(); // Belongs to the bar.
    };
    give(drawing, "&Drawing");
    give(colour, "&Colour");
    give(width, "&Width");
    return bar;
}
} // namespace

SketchWindow::SketchWindow(HINSTANCE program)
    : windowClass_(0, 0, LoadIconW(nullptr, IDI_APPLICATION), static_cast<HBRUSH>(nullptr),
                   LoadCursorW(nullptr, IDC_CROSS), program)
{
    tarn::Menu menu = makeMenu();
    create(windowClass_, L"Sketch", WS_OVERLAPPEDWINDOW | WS_HSCROLL | WS_VSCROLL, {CW_USEDEFAULT, CW_USEDEFAULT, 0, 0},
           nullptr, menu, program);
    menu.detach(); // Belongs to the window.
    dpi_ = getDPI();
    font_ = tarn::Font::ofSystem(dpi_);
    setSize(dpi_.toPixels(usualSize), SWP_NOZORDER);
    onColourSchemeChanged(tarn::ColourScheme::ofUser());
    acceptDraggedFiles(true);
    choose(firstColour);
    choose(firstWidth + 1);
    notice(L"Draw with the left mouse button; drop files to list them.");
}

// Here, and not by the base class, because the window class goes before that.
SketchWindow::~SketchWindow()
{
    try {
        destroy();
    } catch (...) { // The window class will not go either, and says so.
    }
}

std::map<std::string, unsigned short> SketchWindow::choices()
{
    std::map<std::string, unsigned short> commands;
    const auto add = [&](const auto& entries, unsigned short first) {
        for (const auto& entry : entries)
            commands[tarn::BasicString<char>(entry.name).toLower()] = first++;
    };
    add(colours, firstColour);
    add(widths, firstWidth);
    return commands;
}

// Painting covers everything, and erasing before would flicker.
bool SketchWindow::onEraseBackground(const tarn::DeviceContext&) { return true; }

void SketchWindow::onCommand(Window* sender, unsigned short code, unsigned short id)
{
    switch (id) {
    case undo:
        notice(sketch_.undo() ? L"Took the last stroke away." : L"There is nothing to take away.");
        break;
    case clear:
        sketch_.clear();
        files_.clear();
        notice(L"A new sheet.");
        break;
    case copy:
        copyPicture();
        break;
    case save:
        savePicture();
        break;
    case list:
        listFolder();
        break;
    case print:
        printSketch();
        break;
    case leave:
        destroy();
        break;
    default:
        if (firstColour <= id && id < firstWidth + std::size(widths))
            choose(id);
        else
            Window::onCommand(sender, code, id);
    }
}

void SketchWindow::choose(unsigned short id)
{
    const HMENU menu = GetMenu(*this);
    if (id >= firstWidth) {
        width_ = id - firstWidth;
        CheckMenuRadioItem(menu, firstWidth, firstWidth + std::size(widths) - 1, id, MF_BYCOMMAND);
    } else if (id - firstColour < static_cast<int>(std::size(colours))) {
        colour_ = id - firstColour;
        CheckMenuRadioItem(menu, firstColour, firstColour + std::size(colours) - 1, id, MF_BYCOMMAND);
    }
    invalidate(false);
}

void SketchWindow::notice(const std::wstring& text)
{
    notice_ = text;
    startTimer(hideNotice, 4000);
    invalidate(false);
}

void SketchWindow::onDestroy() { PostQuitMessage(0); }

Point SketchWindow::toSketch(const Point& position) const
{
    const Point origin = scrollPosition();
    return Sketch::fromPixels(Point(position.x + origin.x, position.y + origin.y), dpi_);
}

void SketchWindow::onLeftButtonDown(unsigned short, const Point& position)
{
    captureMouse();
    isDrawing_ = true;
    mouse_ = position;
    sketch_.begin(toSketch(position), colours[colour_].value, widths[width_].units);
    startTimer(autoScroll, 50);
    invalidate(false);
}

void SketchWindow::onMouseMove(unsigned short, const Point& position)
{
    if (isDrawing_)
        drawTo(position);
}

void SketchWindow::onLeftButtonUp(unsigned short, const Point& position)
{
    if (!isDrawing_)
        return;
    drawTo(position);
    isDrawing_ = false;
    stopTimer(autoScroll);
    releaseMouse();
}

void SketchWindow::drawTo(const Point& position)
{
    mouse_ = position;
    sketch_.extend(toSketch(position));
    invalidate(false);
}

// A mouse that draws and rests outside of the window pulls the sheet along.
void SketchWindow::onTimer(UINT_PTR id)
{
    if (id == hideNotice) {
        stopTimer(hideNotice);
        notice_.clear();
        invalidate(false);
        return;
    }
    const Rect client = getClientRectangle();
    if (!isDrawing_ || client.contains(mouse_))
        return;
    const int step = dpi_.toPixels(lineStep);
    const auto pull = [=](long at, long end) { return at < 0 ? -step : at >= end ? step : 0; };
    const Point origin = scrollPosition();
    scrollTo(Point(origin.x + pull(mouse_.x, client.right), origin.y + pull(mouse_.y, client.bottom)));
    drawTo(mouse_);
}

void SketchWindow::onMouseWheel(unsigned short keys, short delta, const Point&)
{
    const int distance = -delta * 3 * dpi_.toPixels(lineStep) / WHEEL_DELTA;
    const Point origin = scrollPosition();
    scrollTo(keys & MK_SHIFT ? Point(origin.x + distance, origin.y) : Point(origin.x, origin.y + distance));
}

void SketchWindow::onKeyDown(UINT key, unsigned short, unsigned char, bool, bool)
{
    switch (key) {
    case VK_LEFT:
        return onScroll(horizontal, SB_LINEUP);
    case VK_RIGHT:
        return onScroll(horizontal, SB_LINEDOWN);
    case VK_UP:
        return onScroll(vertical, SB_LINEUP);
    case VK_DOWN:
        return onScroll(vertical, SB_LINEDOWN);
    case VK_PRIOR:
        return onScroll(vertical, SB_PAGEUP);
    case VK_NEXT:
        return onScroll(vertical, SB_PAGEDOWN);
    case VK_BACK:
        return onCommand(nullptr, 0, undo);
    case VK_DELETE:
        return onCommand(nullptr, 0, clear);
    case VK_INSERT:
        return onCommand(nullptr, 0, copy);
    case VK_ESCAPE:
        return onCommand(nullptr, 0, leave);
    default:
        defaultWindowProc();
    }
}

void SketchWindow::onHScroll(Window*, unsigned short code, unsigned short) { onScroll(horizontal, code); }
void SketchWindow::onVScroll(Window*, unsigned short code, unsigned short) { onScroll(vertical, code); }

void SketchWindow::onScroll(scroll_bar_type bar, unsigned short code)
{
    const SCROLLINFO info = getScrollInfo(bar, SIF_ALL);
    const int page = static_cast<int>(info.nPage), step = dpi_.toPixels(lineStep);
    int position = info.nPos;
    switch (code) {
    case SB_LINEUP:
        position -= step;
        break;
    case SB_LINEDOWN:
        position += step;
        break;
    case SB_PAGEUP:
        position -= page;
        break;
    case SB_PAGEDOWN:
        position += page;
        break;
    case SB_TOP:
        position = info.nMin;
        break;
    case SB_BOTTOM:
        position = info.nMax;
        break;
    case SB_THUMBTRACK: // The handler's position has 16 bits only; the structure has them all.
    case SB_THUMBPOSITION:
        position = info.nTrackPos;
        break;
    default:
        return;
    }
    const Point origin = scrollPosition();
    scrollTo(bar == horizontal ? Point(position, origin.y) : Point(origin.x, position));
}

Point SketchWindow::scrollPosition() const { return Point(getScrollPosition(horizontal), getScrollPosition(vertical)); }

// The system keeps the positions within their ranges.
void SketchWindow::scrollTo(const Point& origin)
{
    setScrollPosition(horizontal, origin.x, true);
    setScrollPosition(vertical, origin.y, true);
    invalidate(false);
}

void SketchWindow::onSize(UINT, const Size& clientSize)
{
    updateScrollBars(clientSize);
    invalidate(false);
}

void SketchWindow::updateScrollBars(const Size& clientSize)
{
    SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE | SIF_DISABLENOSCROLL, 0, 0, 0, 0, 0};
    const Size sheet = Sketch::pixelSize(dpi_);
    info.nMax = sheet.cx - 1;
    info.nPage = static_cast<UINT>(clientSize.cx);
    setScrollInfo(SB_HORZ, info, true);
    info.nMax = sheet.cy - 1;
    info.nPage = static_cast<UINT>(clientSize.cy);
    setScrollInfo(SB_VERT, info, true);
}

// The same part of the sheet stays at the corner.
void SketchWindow::onDPIChanged(const tarn::DPI& dpi, const Rect& suggested)
{
    const Point corner = toSketch(Point());
    font_ = tarn::Font::ofSystem(dpi);
    dpi_ = dpi;
    Window::onDPIChanged(dpi, suggested);
    updateScrollBars(getClientSize());
    scrollTo(Sketch::toPixels(corner, dpi));
}

void SketchWindow::onColourSchemeChanged(const tarn::ColourScheme& scheme)
{
    scheme_ = scheme;
    setDarkTitleBar(scheme.isDark());
    invalidate(false);
}

void SketchWindow::onDroppedFiles(const Point&, bool, const std::list<tarn::BasicString<wchar_t>>& files)
{
    files_.insert(files_.end(), files.begin(), files.end());
    constexpr std::size_t shown = 8;
    while (files_.size() > shown)
        files_.pop_front();
    notice(std::to_wstring(files.size()) + (files.size() == 1 ? L" file was dropped." : L" files were dropped."));
}

// The whole sheet, with a pixel for a unit.
tarn::Bitmap SketchWindow::picture() const
{
    const tarn::DPI dpi(96);
    const Size size = Sketch::pixelSize(dpi);
    const tarn::DeviceContext screen(nullptr, false);
    tarn::Bitmap bitmap(screen, size.cx, size.cy);
    tarn::DeviceContext memory = tarn::DeviceContext::createCompatible(screen);
    const tarn::AutoSelect use(memory, bitmap);
    memory.fillRectangle(paper, Rect(Point(), size));
    sketch_.draw(memory, dpi);
    return bitmap;
}

void SketchWindow::copyPicture()
{
    tarn::Clipboard clipboard(*this);
    clipboard.clear();
    clipboard.setPicture(picture());
    notice(L"The picture is on the clipboard.");
}

void SketchWindow::savePicture()
{
    tarn::SaveFileDialog dialog(*this); // It has COM on this thread for the codecs, too.
    dialog.setTitle(L"Save a picture");
    dialog.setFilters({{L"PNG pictures (*.png)", L"*.png"}, {L"JPEG pictures (*.jpg)", L"*.jpg"}});
    dialog.setDefaultExtension(L"png");
    if (!dialog.showModal())
        return;
    tarn::savePicture(picture(), dialog.getPathW());
    notice(L"The picture is saved.");
}

// As if its files were dropped.
void SketchWindow::listFolder()
{
    tarn::OpenFolderDialog dialog(*this);
    if (!dialog.showModal())
        return;
    std::list<tarn::BasicString<wchar_t>> files;
    for (const tarn::FolderEntry& entry : tarn::FolderWalk(dialog.getPathW()))
        if (!entry.isFolder())
            files.push_back(entry.path);
    onDroppedFiles(Point(), true, files);
}

void SketchWindow::onPaint()
{
    tarn::BufferedPaint context(*this);
    drawAll(context, getClientRectangle());
}

void SketchWindow::printSketch()
{
    tarn::PrintDialog dialog(*this);
    try {
        if (!dialog.showModal())
            return;
    } catch (const tarn::CommonDialogError&) {
        return notice(L"There is no printer.");
    }
    tarn::PrinterContext& printer = dialog.getPrinter();
    tarn::PrintedDocument document(printer, L"Sketch");
    {
        const tarn::PrintedPage page(printer);
        printer.setUnits(Sketch::size);
        sketch_.draw(printer, tarn::DPI(Sketch::dots)); // In its own units.
    }
    document.end();
    notice(L"The sketch is on its way to the printer.");
}
void SketchWindow::drawAll(tarn::DeviceContext& context, const Rect& client) const
{
    context.fillRectangle(paper, client);
    const Point origin = scrollPosition();
    context.setViewportOrigin(-origin.x, -origin.y);
    context.drawRectangle3D(Rect(Point(), Sketch::pixelSize(dpi_)), RGB(200, 195, 180), RGB(200, 195, 180));
    {
        const tarn::AutoClip inside(context, Rect(Point(), Sketch::pixelSize(dpi_)));
        sketch_.draw(context, dpi_);
    }
    context.setViewportOrigin(0, 0);
    drawPanel(context, client);
}

// The files and, in the last line, the pen and what there is to say.
void SketchWindow::drawPanel(tarn::DeviceContext& context, const Rect& client) const
{
    const auto pixels = [this](int units) { return dpi_.toPixels(units); };
    const int line = pixels(lineHeight), left = pixels(2 * border);
    const int height = line * static_cast<int>(files_.size() + 1) + pixels(2 * border);
    const Rect area(client.left, client.bottom - height, client.right, client.bottom);
    context.fillRectangle(scheme_.getColour(COLOR_BTNFACE), area);
    context.drawRectangle3D(area, scheme_.getColour(COLOR_BTNHIGHLIGHT), scheme_.getColour(COLOR_BTNSHADOW));
    const tarn::AutoSelect use(context, font_);
    const tarn::AutoTextColour useInk(context, scheme_.getColour(COLOR_BTNTEXT));
    context.setBackgroundMode(TRANSPARENT);
    constexpr unsigned format = DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX;
    int y = area.top + pixels(border);
    for (const auto& file : files_) {
        context.drawText(Rect(left, y, area.right - left, y + line), file, format);
        y += line;
    }
    context.fillRectangle(paper, Rect(left, y, pixels(40), y + line));
    const int width = pixels(widths[width_].units), penY = y + (line - width) / 2;
    context.fillRectangle(colours[colour_].value, Rect(left, penY, pixels(40), penY + width));
    const std::wstring text = std::to_wstring(sketch_.strokeCount()) +
                              (sketch_.strokeCount() == 1 ? L" stroke   " : L" strokes   ") + notice_;
    context.drawText(Rect(pixels(48), y, area.right - left, y + line), text.c_str(), format);
}
