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
constexpr int itemHeight = 20;

tarn::Rect shrunk(const RECT& rect, int distance)
{
    return tarn::Rect(rect.left + distance, rect.top + distance, rect.right - distance, rect.bottom - distance);
}
} // namespace

void ColourList::fill() const
{
    sendMessageA(LB_SETITEMHEIGHT, 0, getDPI().toPixels(itemHeight));
    for (const Colour& colour : all)
        addItem(&colour);
    setCurrentSelection(0);
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
    tarn::Rect patch = shrunk(area, 3);
    patch.right = patch.left + getDPI().toPixels(30);
    context.fillRectangle(colour.value, patch);
    SetBkMode(context, TRANSPARENT);
    const tarn::AutoTextColour text(context, GetSysColor(isSelected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    context.drawText(patch.right + 8, area.top + 3, colour.name);
}

void ColourButton::onDrawItem(const DRAWITEMSTRUCT& item)
{
    tarn::DeviceContext context(item.hDC);
    tarn::Rect area(item.rcItem);
    const bool isPressed = (item.itemState & ODS_SELECTED) != 0;
    DrawFrameControl(context, &area, DFC_BUTTON, DFCS_BUTTONPUSH | (isPressed ? DFCS_PUSHED : 0u));
    context.fillRectangle(colours_.getColour().value, shrunk(area, 6));
    if (item.itemState & ODS_FOCUS) {
        const tarn::Rect focus = shrunk(area, 3);
        DrawFocusRect(context, &focus);
    }
}
