#include <tarn/DeviceContext.h>

#include "../foundation/Check.h"
#include "GraphicsApi.h"

// Shapes, text in rectangles, and pictures that are stretched and blended.

namespace tarn {
namespace {
constexpr const char* cannotDrawFrame = "Can't draw frame";
constexpr const char* cannotSetMode = "Can't set background mode";

/// A call that takes points and their number.
void drawPoints(BOOL(WINAPI* draw)(HDC, const POINT*, int), HDC context, std::span<const POINT> points,
                const char* what)
{
    ensureGDI([&] { return draw(context, points.data(), static_cast<int>(points.size())); }, what);
}

template <class Ch> int drawTextOf(HDC context, const RECT& rectangle, const Ch* text, unsigned format)
{
    if (!text || !*text) // The system answers as if it had failed.
        return 0;
    Rect space = rectangle;
    return ensureGDI([&] { return drawTextIn(context, text, &space, format & ~DT_MODIFYSTRING); }, "Can't draw text");
}

template <class Ch> Size wrappedExtent(HDC context, int width, const Ch* text, unsigned format)
{
    if (!text || !*text)
        return {};
    Rect space(0, 0, width, 0);
    format = (format & ~DT_MODIFYSTRING) | DT_CALCRECT;
    ensureGDI([&] { return drawTextIn(context, text, &space, format); }, "Can't retrieve text extent");
    return space.getSize();
}
} // namespace

void DeviceContext::drawRectangle(const RECT& r) const
{
    ensureGDI([&] { return Rectangle(handle_, r.left, r.top, r.right, r.bottom); }, "Can't draw rectangle");
}
void DeviceContext::drawRoundRectangle(const RECT& r, const SIZE& corner) const
{
    ensureGDI([&] { return RoundRect(handle_, r.left, r.top, r.right, r.bottom, corner.cx, corner.cy); },
              "Can't draw round rectangle");
}
void DeviceContext::drawEllipse(const RECT& r) const
{
    ensureGDI([&] { return Ellipse(handle_, r.left, r.top, r.right, r.bottom); }, "Can't draw ellipse");
}
void DeviceContext::drawPie(const RECT& r, const POINT& from, const POINT& to) const
{
    ensureGDI([&] { return Pie(handle_, r.left, r.top, r.right, r.bottom, from.x, from.y, to.x, to.y); },
              "Can't draw pie");
}
void DeviceContext::drawArc(const RECT& r, const POINT& from, const POINT& to) const
{
    ensureGDI([&] { return Arc(handle_, r.left, r.top, r.right, r.bottom, from.x, from.y, to.x, to.y); },
              "Can't draw arc");
}
void DeviceContext::drawPolygon(std::span<const POINT> points) const
{
    drawPoints(Polygon, handle_, points, "Can't draw polygon");
}
void DeviceContext::drawLines(std::span<const POINT> points) const
{
    drawPoints(Polyline, handle_, points, "Can't draw lines");
}
void DeviceContext::drawCurves(std::span<const POINT> points) const
{
    ensureGDI([&] { return PolyBezier(handle_, points.data(), static_cast<DWORD>(points.size())); },
              "Can't draw curves");
}
void DeviceContext::drawFrame(const Brush& brush, const RECT& rectangle) const
{
    ensureGDI([&] { return FrameRect(handle_, &rectangle, brush); }, cannotDrawFrame);
}
void DeviceContext::drawFocusFrame(const RECT& rectangle) const
{
    ensureGDI([&] { return DrawFocusRect(handle_, &rectangle); }, cannotDrawFrame);
}

Rect DeviceContext::getClipRectangle() const
{
    Rect rect;
    ensureGDI([&] { return GetClipBox(handle_, &rect); }, "Can't get clipping rectangle");
    return rect;
}

int DeviceContext::setBackgroundMode(int mode)
{
    return ensureGDI([&] { return SetBkMode(handle_, mode); }, cannotSetMode);
}
int DeviceContext::getBackgroundMode() const
{
    return ensureGDI([&] { return GetBkMode(handle_); }, cannotSetMode);
}

void DeviceContext::stretch(HDC source, const RECT& to, const RECT& from) const
{
    constexpr const char* failed = "Can't stretch bits";
    const Rect target(to), part(from);
    const struct FormerMode {
        ~FormerMode() { SetStretchBltMode(context, mode); }
        HDC context;
        int mode;
    } former{handle_, ensureGDI([&] { return SetStretchBltMode(handle_, HALFTONE); }, failed)};
    ensureGDI(
        [&] {
            return StretchBlt(handle_, target.left, target.top, target.getWidth(), target.getHeight(), source,
                              part.left, part.top, part.getWidth(), part.getHeight(), SRCCOPY);
        },
        failed);
}

void DeviceContext::blend(HDC source, const RECT& to, const RECT& from, unsigned char opacity, bool perPixel) const
{
    const Rect target(to), part(from);
    const BLENDFUNCTION how{AC_SRC_OVER, 0, opacity, perPixel ? BYTE(AC_SRC_ALPHA) : BYTE()};
    ensureGDI(
        [&] {
            return GdiAlphaBlend(handle_, target.left, target.top, target.getWidth(), target.getHeight(), source,
                                 part.left, part.top, part.getWidth(), part.getHeight(), how);
        },
        "Can't blend bits");
}

void DeviceContext::drawIcon(const RECT& rectangle, HICON icon) const
{
    const Rect r(rectangle);
    ensureGDI(
        [&] { return DrawIconEx(handle_, r.left, r.top, icon, r.getWidth(), r.getHeight(), 0, nullptr, DI_NORMAL); },
        "Can't draw icon");
}

int DeviceContext::drawText(const RECT& rectangle, const char* text, unsigned format) const
{
    return drawTextOf(handle_, rectangle, text, format);
}
int DeviceContext::drawText(const RECT& rectangle, const wchar_t* text, unsigned format) const
{
    return drawTextOf(handle_, rectangle, text, format);
}
Size DeviceContext::getWrappedExtent(int width, const char* text, unsigned format) const
{
    return wrappedExtent(handle_, width, text, format);
}
Size DeviceContext::getWrappedExtent(int width, const wchar_t* text, unsigned format) const
{
    return wrappedExtent(handle_, width, text, format);
}
} // namespace tarn
