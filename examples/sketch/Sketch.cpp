#include "Sketch.h"

#include <tarn/AutoSelect.h>

tarn::Point Sketch::fromPixels(const tarn::Point& pixels, const tarn::DPI& dpi)
{
    const int screen = static_cast<int>(dpi.getDots());
    return tarn::Point(MulDiv(pixels.x, dots, screen), MulDiv(pixels.y, dots, screen));
}

tarn::Point Sketch::toPixels(const tarn::Point& point, const tarn::DPI& dpi)
{
    const int screen = static_cast<int>(dpi.getDots());
    return tarn::Point(MulDiv(point.x, screen, dots), MulDiv(point.y, screen, dots));
}

tarn::Size Sketch::pixelSize(const tarn::DPI& dpi)
{
    const tarn::Point corner = toPixels(tarn::Point(size.cx, size.cy), dpi);
    return tarn::Size(corner.x, corner.y);
}

void Sketch::begin(const tarn::Point& at, unsigned long colour, int width)
{
    strokes_.push_back({colour, width, {at}});
}

void Sketch::extend(const tarn::Point& to)
{
    if (!strokes_.empty() && !(strokes_.back().points.back() == to))
        strokes_.back().points.push_back(to);
}

bool Sketch::undo()
{
    if (strokes_.empty())
        return false;
    strokes_.pop_back();
    return true;
}

void Sketch::draw(tarn::DeviceContext& context, const tarn::DPI& dpi) const
{
    for (const Stroke& stroke : strokes_) {
        const tarn::AutoSelect use(context, tarn::Pen(stroke.colour, PS_SOLID, dpi.toPixels(stroke.width)));
        context.moveTo(toPixels(stroke.points.front(), dpi));
        for (const tarn::Point& point : stroke.points)
            context.lineTo(toPixels(point, dpi));
        // A line of no length leaves no mark, and lines end before their last pixel.
        const tarn::Point end = toPixels(stroke.points.back(), dpi);
        context.lineTo(end.x + 1, end.y);
    }
}
