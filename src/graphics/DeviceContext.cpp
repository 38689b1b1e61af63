#include <tarn/DeviceContext.h>

#include <tarn/AutoColour.h>
#include <tarn/Rect.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../windowing/HandlerScope.h"
#include "GraphicsApi.h"
#include "TransparentBlit.h"

#include <cstdlib>
#include <string>
#include <utility>

namespace tarn {
namespace {
HDC newMemoryContext(HDC like)
{
    return ensureGDI([=] { return CreateCompatibleDC(like); }, "Can't create compatible DC");
}

Point movePosition(HDC context, int x, int y, const char* what)
{
    Point previous;
    ensureGDI([&] { return MoveToEx(context, x, y, &previous); }, what);
    return previous;
}

template <class Object> Object selectInto(HDC context, Object object, const char* what)
{
    return static_cast<Object>(ensureGDI([=] { return SelectObject(context, object); }, what));
}

// Selects the previous pen back at the end, also when drawing throws: a selected pen cannot be deleted.
class PenInUse {
public:
    PenInUse(HDC context, unsigned long colour)
        : context_(context), pen_(ensureGDI([=] { return CreatePen(PS_SOLID, 1, colour); }, "Can't draw line"), true),
          previous_(selectInto<HPEN>(context, pen_, "Can't draw line"))
    {
    }
    PenInUse(const PenInUse&) = delete;
    PenInUse& operator=(const PenInUse&) = delete;
    ~PenInUse() noexcept(false)
    {
        closeAtEnd([this] { selectInto(context_, previous_, "Can't draw line"); });
    }

private:
    HDC context_;
    Pen pen_;
    HPEN previous_;
};

// On a device that uses a palette: realizes the given one, and selects the previous one back at the end.
class PaletteInUse {
public:
    PaletteInUse(HDC context, HPALETTE palette) : PaletteInUse(context)
    {
        if (!context_.usesPalette())
            return;
        if (palette)
            previous_ = ensureGDI([&] { return SelectPalette(context_, palette, false); }, "Can't realize palette");
        context_.realizePalette();
    }
    PaletteInUse(const PaletteInUse&) = delete;
    PaletteInUse& operator=(const PaletteInUse&) = delete;
    ~PaletteInUse() noexcept(false)
    {
        if (previous_)
            closeAtEnd([this] { context_.select(previous_, true); });
    }

    // Of the context; null when its device uses none.
    HPALETTE current() const
    {
        return context_.usesPalette() ? static_cast<HPALETTE>(ensureGDI(
                                            [&] { return GetCurrentObject(context_, OBJ_PAL); }, "Can't blit bits"))
                                      : nullptr;
    }

private:
    // Complete from here on, so that the destructor also runs when realizing fails.
    explicit PaletteInUse(HDC context) : context_(context) {}

    DeviceContext context_;
    HPALETTE previous_ = nullptr;
};

template <class Ch> Size textExtent(HDC context, const Ch* text, std::size_t length)
{
    Size extent;
    ensureGDI([&] { return getTextExtentPoint(context, text, static_cast<int>(length), &extent); },
              "Can't retrieve text extent");
    return extent;
}

template <class Ch> void drawTextOn(HDC context, int x, int y, const Ch* text, std::size_t length)
{
    ensureGDI([=] { return textOut(context, x, y, text, static_cast<int>(length)); }, "Can't draw text");
}

void pathStep(HDC context, BOOL(WINAPI* step)(HDC), const char* what)
{
    ensureGDI([=] { return step(context); }, what);
}

// What lies outside of a bitmap would be copied as black. False when nothing of the part lies inside.
bool clipTo(HBITMAP bitmap, Rect& part)
{
    BITMAP description = {};
    ensureGDI([&] { return GetObjectW(bitmap, sizeof description, &description); }, "Can't blit bits");
    const Rect all(0, 0, description.bmWidth, std::abs(description.bmHeight));
    return IntersectRect(&part, &part, &all);
}

template <class Ch> std::size_t lengthOf(const Ch* text) { return std::char_traits<Ch>::length(text); }
} // namespace

DeviceContext::DeviceContext() : DeviceContext(newMemoryContext(nullptr), HWND()) {}
DeviceContext::DeviceContext(HWND window, bool wholeWindow)
    : DeviceContext(
          ensureGDI([=] { return wholeWindow ? GetWindowDC(window) : GetDC(window); }, "Can't retrieve DC from window"),
          // The screen's context has to be given back as a window's.
          window ? window : GetDesktopWindow())
{
}
DeviceContext::DeviceContext(const DeviceContext& other) : DeviceContext(newMemoryContext(other), HWND()) {}
DeviceContext::DeviceContext(DeviceContext&& other) noexcept
    : handle_(other.handle_), window_(other.window_), owns_(other.owns_)
{
    other.detach();
}
DeviceContext& DeviceContext::operator=(DeviceContext&& other) noexcept
{
    DeviceContext taken(std::move(other)); // First, because it may be this object.
    closeQuietly([this] { close(); });
    handle_ = taken.handle_;
    window_ = taken.window_;
    owns_ = taken.owns_;
    taken.detach();
    return *this;
}
DeviceContext::~DeviceContext() noexcept(false)
{
    closeAtEnd([this] { close(); });
}

DeviceContext DeviceContext::createCompatible(HDC like) { return DeviceContext(newMemoryContext(like), HWND()); }

HDC DeviceContext::detach() noexcept
{
    window_ = nullptr;
    owns_ = false;
    return std::exchange(handle_, nullptr);
}

void DeviceContext::close()
{
    const HWND window = window_;
    const bool owned = owns_;
    const HDC handle = detach();
    if (!handle || !owned)
        return;
    if (window)
        ReleaseDC(window, handle); // Fails when the window is gone, and its context with it.
    else
        ensureGDI([=] { return DeleteDC(handle); }, "Can't delete device context");
}

void DeviceContext::fillRectangle(int sysColour, const RECT& rectangle) const
{
    ensureGDI([&] { return FillRect(handle_, &rectangle, GetSysColorBrush(sysColour)); },
              "Can't fill rect with system colour");
}
void DeviceContext::fillRectangle(const Brush& brush, const RECT& rectangle) const
{
    ensureGDI([&] { return FillRect(handle_, &rectangle, brush); }, "Can't fill rect with system colour");
}
void DeviceContext::fillRectangle(unsigned long colour, const RECT& rectangle) const
{
    const AutoBackgroundColour filling(handle_, colour);
    ensureGDI([&] { return ExtTextOutW(handle_, 0, 0, ETO_OPAQUE, &rectangle, nullptr, 0, nullptr); },
              "Can't set back colour");
}

void DeviceContext::drawRectangle3D(const RECT& rectangle, unsigned long light, unsigned long dark) const
{
    if (IsRectEmpty(&rectangle))
        return;
    const int right = rectangle.right - 1;
    const int bottom = rectangle.bottom - 1;
    {
        const PenInUse lightPen(handle_, light);
        movePosition(handle_, rectangle.left, rectangle.top, "Can't draw line");
        lineTo(rectangle.left, bottom);
        movePosition(handle_, rectangle.left, rectangle.top, "Can't draw line");
        lineTo(right, rectangle.top);
    }
    const PenInUse darkPen(handle_, dark);
    lineTo(right, bottom);
    lineTo(rectangle.left - 1, bottom); // The end point of a line is not drawn.
}
void DeviceContext::drawRectangle3D(const RECT& rectangle, bool raised) const
{
    const unsigned long highlight = GetSysColor(COLOR_BTNHIGHLIGHT);
    const unsigned long shadow = GetSysColor(COLOR_BTNSHADOW);
    drawRectangle3D(rectangle, raised ? highlight : shadow, raised ? shadow : highlight);
}

unsigned long DeviceContext::setBackgroundColour(unsigned long colour)
{
    return ensureGDINot(
        CLR_INVALID, [&] { return SetBkColor(handle_, colour); }, "Can't set back colour");
}
unsigned long DeviceContext::getBackgroundColour() const
{
    return ensureGDINot(
        CLR_INVALID, [&] { return GetBkColor(handle_); }, "Can't set back colour");
}
unsigned long DeviceContext::setTextColour(unsigned long colour)
{
    return ensureGDINot(
        CLR_INVALID, [&] { return SetTextColor(handle_, colour); }, "Can't set text colour");
}
unsigned long DeviceContext::getTextColour() const
{
    return ensureGDINot(
        CLR_INVALID, [&] { return GetTextColor(handle_); }, "Can't set text colour");
}

Point DeviceContext::moveTo(int x, int y) { return movePosition(handle_, x, y, "Can't move drawing position"); }
void DeviceContext::lineTo(int x, int y) const
{
    ensureGDI([&] { return LineTo(handle_, x, y); }, "Can't draw line");
}

unsigned long DeviceContext::getPixel(int x, int y) const { return GetPixel(handle_, x, y); }
unsigned long DeviceContext::setPixel(int x, int y, unsigned long colour) const
{
    return SetPixel(handle_, x, y, colour);
}

int DeviceContext::getCapabilities(int index) const { return GetDeviceCaps(handle_, index); }
bool DeviceContext::usesPalette() const { return getCapabilities(RASTERCAPS) & RC_PALETTE; }
int DeviceContext::getFontHeightFromPoints(int points) const
{
    return -MulDiv(points, getCapabilities(LOGPIXELSY), 72);
}

Pen DeviceContext::select(HPEN pen) { return Pen(selectInto(handle_, pen, "Can't select pen"), false); }
Brush DeviceContext::select(HBRUSH brush) { return Brush(selectInto(handle_, brush, "Can't select brush"), false); }
Bitmap DeviceContext::select(HBITMAP bitmap)
{
    return Bitmap(selectInto(handle_, bitmap, "Can't select bitmap"), false);
}
Font DeviceContext::select(HFONT font)
{
    return Font(selectInto(handle_, font, "Can't select bitmap"), false); // sic: callers match this text
}
Palette DeviceContext::select(HPALETTE palette, bool background)
{
    return Palette(ensureGDI([&] { return SelectPalette(handle_, palette, background); }, "Can't select palette"),
                   false);
}
unsigned DeviceContext::realizePalette()
{
    return ensureGDINot(
        GDI_ERROR, [&] { return runningHandlers([&] { return RealizePalette(handle_); }); }, "Can't realize palette");
}

void DeviceContext::blit(HDC source, int x, int y, int width, int height, int sourceX, int sourceY,
                         unsigned long rop) const
{
    ensureGDI([&] { return BitBlt(handle_, x, y, width, height, source, sourceX, sourceY, rop); }, "Can't blit bits");
}
void DeviceContext::blitTransparent(HBITMAP bitmap, int x, int y, int width, int height, int sourceX, int sourceY,
                                    unsigned long transparentColour, HPALETTE palette) const
{
    if (width == 0 || height == 0)
        return;
    DeviceContext source = createCompatible(handle_);
    selectInto(source, bitmap, "Can't blit bits");
    Rect part(Point(sourceX, sourceY), Size(width, height));
    if (width > 0 && height > 0 && !clipTo(bitmap, part))
        return;
    // The numbers in a bitmap of such a device mean the colours of the palette that the target has.
    const PaletteInUse targetPalette(handle_, palette);
    const PaletteInUse sourcePalette(source, targetPalette.current());
    TransparentPicture picture(*this, source, part.getPosition(), part.getSize(), transparentColour);
    picture.draw(*this, Point(x + part.left - sourceX, y + part.top - sourceY));
}
void DeviceContext::drawIcon(int x, int y, HICON icon) const
{
    ensureGDI([&] { return DrawIcon(handle_, x, y, icon); }, "Can't draw icon");
}

void DeviceContext::getTextMetrics(TEXTMETRICA& metrics) const
{
    ensureGDI([&] { return GetTextMetricsA(handle_, &metrics); }, "Can't retrieve text metrics");
}
void DeviceContext::getTextMetrics(TEXTMETRICW& metrics) const
{
    ensureGDI([&] { return GetTextMetricsW(handle_, &metrics); }, "Can't retrieve text metrics");
}

Size DeviceContext::getTextExtent(const char* text, unsigned length) const { return textExtent(handle_, text, length); }
Size DeviceContext::getTextExtent(const wchar_t* text, unsigned length) const
{
    return textExtent(handle_, text, length);
}
Size DeviceContext::getTextExtent(const char* text) const { return textExtent(handle_, text, lengthOf(text)); }
Size DeviceContext::getTextExtent(const wchar_t* text) const { return textExtent(handle_, text, lengthOf(text)); }
Size DeviceContext::getTextExtent(const std::string& text) const
{
    return textExtent(handle_, text.data(), text.size());
}
Size DeviceContext::getTextExtent(const std::wstring& text) const
{
    return textExtent(handle_, text.data(), text.size());
}

unsigned DeviceContext::getTextAlign() const
{
    return ensureGDINot(
        GDI_ERROR, [&] { return GetTextAlign(handle_); }, "Can't retrieve text alignment");
}
unsigned DeviceContext::setTextAlign(unsigned align)
{
    return ensureGDINot(
        GDI_ERROR, [&] { return SetTextAlign(handle_, align); }, "Can't set text alignment");
}

void DeviceContext::drawText(int x, int y, const char* text, unsigned length) const
{
    drawTextOn(handle_, x, y, text, length);
}
void DeviceContext::drawText(int x, int y, const wchar_t* text, unsigned length) const
{
    drawTextOn(handle_, x, y, text, length);
}
void DeviceContext::drawText(int x, int y, const char* text) const { drawTextOn(handle_, x, y, text, lengthOf(text)); }
void DeviceContext::drawText(int x, int y, const wchar_t* text) const
{
    drawTextOn(handle_, x, y, text, lengthOf(text));
}
void DeviceContext::drawText(int x, int y, const std::string& text) const
{
    drawTextOn(handle_, x, y, text.data(), text.size());
}
void DeviceContext::drawText(int x, int y, const std::wstring& text) const
{
    drawTextOn(handle_, x, y, text.data(), text.size());
}

void DeviceContext::beginPath() { pathStep(handle_, BeginPath, "Can't begin path"); }
void DeviceContext::abortPath() { pathStep(handle_, AbortPath, "Can't abort path"); }
void DeviceContext::endPath() { pathStep(handle_, EndPath, "Can't end path"); }
void DeviceContext::fillPath() { pathStep(handle_, FillPath, "Can't fill path"); }
void DeviceContext::strokeAndFillPath() { pathStep(handle_, StrokeAndFillPath, "Can't stroke and fill path"); }
void DeviceContext::strokePath() { pathStep(handle_, StrokePath, "Can't stroke path"); }
void DeviceContext::widenPath() { pathStep(handle_, WidenPath, "Can't widen path"); }
void DeviceContext::flattenPath() { pathStep(handle_, FlattenPath, "Can't flatten path"); }
void DeviceContext::closeFigure() { pathStep(handle_, CloseFigure, "Can't close figure"); }

int DeviceContext::setROP2(int mode)
{
    return ensureGDI([&] { return SetROP2(handle_, mode); }, "Can't set ROP2");
}
int DeviceContext::getROP2() const
{
    return ensureGDI([&] { return GetROP2(handle_); }, "Can't get ROP2");
}

Point DeviceContext::setViewportOrigin(int x, int y)
{
    Point previous;
    ensureGDI([&] { return SetViewportOrgEx(handle_, x, y, &previous); }, "Can't set viewport origin");
    return previous;
}
} // namespace tarn
