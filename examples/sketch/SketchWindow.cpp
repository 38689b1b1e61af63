#include "SketchWindow.h"

#include <tarn/AutoColour.h>
#include <tarn/AutoSelect.h>
#include <tarn/Brush.h>
#include <tarn/BufferedPaint.h>
#include <tarn/Clipboard.h>
#include <tarn/Menu.h>
#include <tarn/PictureFile.h>
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
    int pixels;
};
constexpr Width widths[] = {{"Thin", 1}, {"Medium", 3}, {"Thick", 8}};

constexpr unsigned long paper = RGB(252, 250, 244), panel = RGB(235, 232, 222), ink = RGB(70, 70, 70);
constexpr int lineStep = 20, lineHeight = 18;

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
                   LoadCursorW(nullptr, IDC_CROSS), program),
      font_(-13, 0, 0, 0, FW_NORMAL, false, false, false, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
            DEFAULT_QUALITY, DEFAULT_PITCH, "Tahoma")
{
    tarn::Menu menu = makeMenu();
    create(windowClass_, L"Sketch", WS_OVERLAPPEDWINDOW | WS_HSCROLL | WS_VSCROLL, Rect(60, 40, 820, 600), nullptr,
           menu, program);
    menu.detach(); // Belongs to the window.
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
    return Point(position.x + origin.x, position.y + origin.y);
}

void SketchWindow::onLeftButtonDown(unsigned short, const Point& position)
{
    captureMouse();
    isDrawing_ = true;
    mouse_ = position;
    sketch_.begin(toSketch(position), colours[colour_].value, widths[width_].pixels);
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
    const auto pull = [](long at, long end) { return at < 0 ? -lineStep : at >= end ? lineStep : 0; };
    const Point origin = scrollPosition();
    scrollTo(Point(origin.x + pull(mouse_.x, client.right), origin.y + pull(mouse_.y, client.bottom)));
    drawTo(mouse_);
}

void SketchWindow::onMouseWheel(unsigned short keys, short delta, const Point&)
{
    const int distance = -delta * 3 * lineStep / WHEEL_DELTA;
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
    const int page = static_cast<int>(info.nPage);
    int position = info.nPos;
    switch (code) {
    case SB_LINEUP:
        position -= lineStep;
        break;
    case SB_LINEDOWN:
        position += lineStep;
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
    info.nMax = Sketch::size.cx - 1;
    info.nPage = static_cast<UINT>(clientSize.cx);
    setScrollInfo(SB_HORZ, info, true);
    info.nMax = Sketch::size.cy - 1;
    info.nPage = static_cast<UINT>(clientSize.cy);
    setScrollInfo(SB_VERT, info, true);
}

void SketchWindow::onDroppedFiles(const Point&, bool, const std::list<tarn::BasicString<wchar_t>>& files)
{
    files_.insert(files_.end(), files.begin(), files.end());
    constexpr std::size_t shown = 8;
    while (files_.size() > shown)
        files_.pop_front();
    notice(std::to_wstring(files.size()) + (files.size() == 1 ? L" file was dropped." : L" files were dropped."));
}

// The whole sheet.
tarn::Bitmap SketchWindow::picture() const
{
    const tarn::DeviceContext screen(nullptr, false);
    tarn::Bitmap bitmap(screen, Sketch::size.cx, Sketch::size.cy);
    tarn::DeviceContext memory = tarn::DeviceContext::createCompatible(screen);
    const tarn::AutoSelect use(memory, bitmap);
    memory.fillRectangle(paper, Rect(Point(), Sketch::size));
    sketch_.draw(memory);
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

void SketchWindow::onPaint()
{
    tarn::BufferedPaint context(*this);
    drawAll(context, getClientRectangle());
}

void SketchWindow::drawAll(tarn::DeviceContext& context, const Rect& client) const
{
    context.fillRectangle(paper, client);
    const Point origin = scrollPosition();
    context.setViewportOrigin(-origin.x, -origin.y);
    context.drawRectangle3D(Rect(Point(), Sketch::size), RGB(200, 195, 180), RGB(200, 195, 180));
    sketch_.draw(context);
    context.setViewportOrigin(0, 0);
    drawPanel(context, client);
}

// The files and, in the last line, the pen and what there is to say.
void SketchWindow::drawPanel(tarn::DeviceContext& context, const Rect& client) const
{
    const int height = lineHeight * static_cast<int>(files_.size() + 1) + 8;
    const Rect area(client.left, client.bottom - height, client.right, client.bottom);
    context.fillRectangle(panel, area);
    context.drawRectangle3D(area, true);
    const tarn::AutoSelect use(context, font_);
    const tarn::AutoTextColour useInk(context, ink);
    const tarn::AutoBackgroundColour background(context, panel);
    int y = area.top + 4;
    for (const auto& file : files_) {
        context.drawText(8, y, file);
        y += lineHeight;
    }
    const int half = widths[width_].pixels / 2;
    context.fillRectangle(colours[colour_].value, Rect(8, y + 8 - half, 40, y + 9 + half));
    const std::wstring text = std::to_wstring(sketch_.strokeCount()) +
                              (sketch_.strokeCount() == 1 ? L" stroke   " : L" strokes   ") + notice_;
    context.drawText(Rect(48, y, area.right - 8, y + lineHeight), text.c_str(),
                     DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
}
