#include "Campaign.h"

#include "../dialogs/TestPrinter.h"

#include <tarn/AutoSelect.h>
#include <tarn/Bitmap.h>
#include <tarn/Brush.h>
#include <tarn/Cursor.h>
#include <tarn/DeviceContext.h>
#include <tarn/Font.h>
#include <tarn/Icon.h>
#include <tarn/Pen.h>
#include <tarn/PrintDialog.h>
#include <tarn/Rect.h>

namespace failures {
namespace {
void draw(const WorkPlace&)
{
    const tarn::DeviceContext screen(nullptr, false);
    tarn::DeviceContext memory(screen);
    const tarn::Bitmap picture(screen, 20, 20);
    const tarn::Bitmap previous = memory.select(picture);
    {
        const tarn::Brush brush(RGB(0, 0, 255));
        const tarn::Pen pen(RGB(255, 0, 0), PS_SOLID, 1);
        memory.fillRectangle(RGB(255, 255, 255), tarn::Rect(0, 0, 20, 20));
        memory.fillRectangle(brush, tarn::Rect(0, 0, 10, 10));
        const tarn::Pen previousPen = memory.select(pen.getHandle());
        memory.moveTo(0, 15);
        memory.lineTo(20, 15);
        memory.select(previousPen.getHandle());
        memory.drawText(0, 0, "x");
        memory.drawRectangle3D(tarn::Rect(0, 0, 20, 20), true);
    }
    expect(memory.getPixel(15, 15) == RGB(255, 0, 0), "another colour");
    memory.select(previous);
}

void drawTransparently(const WorkPlace&)
{
    const tarn::DeviceContext screen(nullptr, false);
    tarn::DeviceContext memory(screen);
    const tarn::Bitmap target(screen, 8, 8), source(screen, 8, 8);
    const tarn::Bitmap previous = memory.select(target);
    memory.blitTransparent(source, 0, 0, 8, 8, 0, 0, RGB(1, 2, 3));
    memory.select(previous);
}

void drawTexts(const WorkPlace&)
{
    tarn::DeviceContext memory;
    const tarn::Font font(-12, 0, 0, 0, FW_NORMAL, false, false, false, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                          CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, L"Tahoma");
    const tarn::AutoSelect<tarn::Font> selected(memory, font);
    TEXTMETRICW metrics;
    memory.getTextMetrics(metrics);
    expect(memory.getTextExtent(L"text").cx > 0, "no extent");
    memory.setTextAlign(TA_CENTER);
    expect(memory.getTextAlign() == TA_CENTER, "another alignment");
    memory.setROP2(R2_XORPEN);
    expect(memory.getROP2() == R2_XORPEN, "another mode");
    memory.setViewportOrigin(1, 1);
    memory.drawText(0, 0, "narrow");
}

void drawPaths(const WorkPlace&)
{
    tarn::DeviceContext memory;
    memory.beginPath();
    memory.moveTo(0, 0);
    memory.lineTo(5, 5);
    memory.lineTo(0, 5);
    memory.closeFigure();
    memory.endPath();
    memory.flattenPath();
    memory.fillPath();
    memory.beginPath();
    memory.abortPath();
    const tarn::Icon icon(32512, nullptr); // IDI_APPLICATION
    memory.drawIcon(0, 0, icon);
    const tarn::Cursor cursor(L"#32512", nullptr);
    expect(cursor, "no cursor");
    const tarn::Bitmap picture(4, 4, 1, 1, nullptr);
    expect(picture.getSize().cx == 4, "another size");
}

void print(const WorkPlace& place)
{
    static const support::TestPrinter installed;
    tarn::PrintDialog dialog;
    dialog.takeDefault();
    tarn::PrinterContext printer(support::TestPrinter::name);
    printer.setUnits(tarn::Size(100, 100));
    tarn::PrintedDocument document(printer, L"Campaign", place.file(L"out.ps").c_str());
    tarn::PrintedPage page(printer);
    printer.drawRectangle(tarn::Rect(10, 10, 20, 20));
    page.end();
    document.end();
}
} // namespace

std::vector<Scenario> graphicsScenarios()
{
    return {{"drawing", draw},
            {"transparent drawing", drawTransparently},
            {"drawing of texts", drawTexts},
            {"drawing of paths", drawPaths},
            {"printing", print}};
}
} // namespace failures
