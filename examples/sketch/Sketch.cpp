#include "Sketch.h"

#include <tarn/AutoSelect.h>

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

void Sketch::draw(tarn::DeviceContext& context) const
{
    for (const Stroke& stroke : strokes_) {
        const tarn::AutoSelect use(context, tarn::Pen(stroke.colour, PS_SOLID, stroke.width));
        context.moveTo(stroke.points.front());
        for (const tarn::Point& point : stroke.points)
            context.lineTo(point);
        // A line of no length leaves no mark, and lines end before their last pixel.
        context.lineTo(stroke.points.back().x + 1, stroke.points.back().y);
    }
}
