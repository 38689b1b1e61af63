#include "Test.h"

#include "Canvas.h"

#include <tarn/AutoColour.h>

TEST_CASE("AutoTextColour, AutoBackgroundColour: the former colours come back")
{
    Canvas canvas(2, 2);
    const auto draw = [&] {
        const AutoTextColour text(canvas.context, red), inner(canvas.context, blue);
        const AutoBackgroundColour background(canvas.context, green);
        CHECK((canvas.context.getTextColour() == blue && canvas.context.getBackgroundColour() == green));
        throw std::runtime_error("while drawing");
    };
    expectError<std::runtime_error>(draw, "while drawing");
    CHECK((canvas.context.getTextColour() == black && canvas.context.getBackgroundColour() == white));
    expectWindowsError([] { const AutoTextColour none(nullptr, red); }, "Can't set text colour");
    expectWindowsError([] { const AutoBackgroundColour none(nullptr, red); }, "Can't set back colour");
}
