#include "Test.h"

#include "Canvas.h"

#include <tarn/AutoSelect.h>

TEST_CASE("AutoSelect: the former objects come back in turn, also when an exception ends the block")
{
    Canvas canvas(2, 2);
    const auto selected = [&](unsigned kind) { return GetCurrentObject(canvas.context, kind); };
    const HGDIOBJ formerPen = selected(OBJ_PEN), formerFont = selected(OBJ_FONT), paper = selected(OBJ_BITMAP);
    const Pen pen(red, PS_SOLID, 1);
    const Bitmap bitmap(2, 2, 1, 1, nullptr);
    HGDIOBJ temporary = nullptr;
    const auto draw = [&] {
        const AutoSelect first(canvas.context, pen);
        const AutoSelect second(canvas.context, Pen(blue, PS_DASH, 1));
        temporary = selected(OBJ_PEN);
        const AutoSelect picture(canvas.context, bitmap);
        const AutoSelect font(canvas.context, Font(static_cast<HFONT>(GetStockObject(ANSI_FIXED_FONT)), false));
        const AutoSelect brush(canvas.context, Brush(red));
        CHECK((isAlive(temporary) && selected(OBJ_BITMAP) == bitmap.getHandle() && selected(OBJ_FONT) != formerFont));
        throw std::runtime_error("while drawing");
    };
    expectError<std::runtime_error>(draw, "while drawing");
    CHECK((selected(OBJ_PEN) == formerPen && selected(OBJ_FONT) == formerFont && selected(OBJ_BITMAP) == paper));
    CHECK((isAlive(pen) && !isAlive(temporary)));
    expectWindowsError([&] { const AutoSelect none(canvas.context, Pen()); }, "Can't select pen");
}
