#include <tarn/AutoColour.h>
#include <tarn/AutoSelect.h>
#include <tarn/DeviceContext.h>
#include <tarn/PaintDeviceContext.h>

void guardsNeedAContextThatStays(const tarn::Pen& pen)
{
    // forbidden: use of deleted function .*AutoSelect
    tarn::AutoSelect use(tarn::DeviceContext(nullptr, false), pen);
    // forbidden: use of deleted function .*AutoSelect
    tarn::AutoSelect own(tarn::DeviceContext(nullptr, false), tarn::Brush(RGB(1, 2, 3)));
    // forbidden: use of deleted function .*AutoColour
    tarn::AutoTextColour text(tarn::DeviceContext(nullptr, false), RGB(1, 2, 3));
    // forbidden: use of deleted function .*AutoColour
    tarn::AutoBackgroundColour background(tarn::DeviceContext(nullptr, false), RGB(1, 2, 3));
}

void contextsAreNotAssigned(tarn::DeviceContext& a, const tarn::DeviceContext& b)
{
    // forbidden: use of deleted function .*operator=\(const tarn::DeviceContext&\)
    a = b;
}

void paintingIsEndedByItsObject(tarn::PaintDeviceContext& context)
{
    // forbidden: use of deleted function .*PaintDeviceContext::detach
    context.detach();
}
