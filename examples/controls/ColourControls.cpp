#include "ColourControls.h"

#include <tarn/AutoColour.h>
#include <tarn/DeviceContext.h>
#include <tarn/Rect.h>

namespace {
constexpr Colour all[] = {{L"Ink", RGB(20, 20, 30)},
                          {L"Deep sky", RGB(20, 70, 170)},
                          {L"Mars", RGB(180, 50, 30)},
                          {L"Earth", RGB(20, 120, 60)},
                          {L"Saturn", RGB(150, 100, 20)}};

// In units of 1/96 inch.
constexpr int itemHeight = 20, patchWidth = 30, border = 3;

tarn::Rect shrunk(const RECT& rect, int distance)
{
    return tarn::Rect(rect.left + distance, rect.top + distance, rect.right - distance, rect.bottom - distance);
}
} // namespace

void ColourList::fill() const
{
    for (const Colour& colour : all)
        addItem(&colour);
    setCurrentSelection(0);
}

void ColourList::setItemHeight(const tarn::DPI& dpi)
{
    dpi_ = dpi;
    sendMessageA(LB_SETITEMHEIGHT, 0, dpi.toPixels(itemHeight));
}

const Colour& ColourList::getColour() const
{
    const int selected = getCurrentSelection();
    return selected < 0 ? all[0] : *static_cast<const Colour*>(getItemData(static_cast<unsigned>(selected)));
}

void ColourList::onDrawItem(const DRAWITEMSTRUCT& item)
{
    if (item.itemID == static_cast<UINT>(-1))
        return;
    const Colour& colour = *reinterpret_cast<const Colour*>(item.itemData);
    const bool isSelected = (item.itemState & ODS_SELECTED) != 0;
    tarn::DeviceContext context(item.hDC);
    const tarn::Rect area(item.rcItem);
    context.fillRectangle(isSelected ? COLOR_HIGHLIGHT : COLOR_WINDOW, area);
    tarn::Rect patch = shrunk(area, dpi_.toPixels(border));
    patch.right = patch.left + dpi_.toPixels(patchWidth);
    context.fillRectangle(colour.value, patch);
    context.setBackgroundMode(TRANSPARENT);
    const tarn::AutoTextColour text(context, GetSysColor(isSelected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    context.drawText(tarn::Rect(patch.right + dpi_.toPixels(8), area.top, area.right, area.bottom), colour.name,
                     DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void ColourButton::onDrawItem(const DRAWITEMSTRUCT& item)
{
    tarn::DeviceContext context(item.hDC);
    const tarn::DPI dpi = getDPI();
    const tarn::Rect area(item.rcItem);
    context.fillRectangle(COLOR_BTNFACE, area);
    context.drawRectangle3D(area, (item.itemState & ODS_SELECTED) == 0);
    context.fillRectangle(colours_.getColour().value, shrunk(area, dpi.toPixels(2 * border)));
    if (item.itemState & ODS_FOCUS)
        context.drawFocusFrame(shrunk(area, dpi.toPixels(border)));
}
