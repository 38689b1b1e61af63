#include "MonthSheet.h"

#include <tarn/Bitmap.h>
#include <tarn/AutoSelect.h>
#include <tarn/PaintDeviceContext.h>
#include <tarn/WindowClass.h>

using tarn::Point;
using tarn::Rect;

namespace planner {
void MonthSheet::create(HWND parent, HINSTANCE program)
{
    static const tarn::WindowClass windowClass(CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW, 0, nullptr,
                                               static_cast<HBRUSH>(nullptr), LoadCursorW(nullptr, IDC_ARROW), program);
    Window::create(windowClass, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, Rect(), parent, nullptr, program);
    begin(*this);
}

void MonthSheet::show(MonthContent content)
{
    content_ = std::move(content);
    invalidate(false);
    tell(EVENT_OBJECT_REORDER);
    tell(EVENT_OBJECT_FOCUS, static_cast<int>(content_.selected - content_.first));
}

tarn::BasicString<wchar_t> MonthSheet::getName() const
{
    return monthName(content_.month) + (L" " + yearText(content_.year));
}

// Of each day what is to be read in its cell.
tarn::AccessibleItems::Item MonthSheet::getItem(int index) const
{
    const Day day = content_.first + index;
    Item item{dateText(content_.reckoning.dateOf(day)), ROLE_SYSTEM_CELL, STATE_SYSTEM_SELECTABLE,
              getDPI().toPixels(layout().cell(day)), L"Select"};
    if (const auto holiday = content_.holidays.find(day); holiday != content_.holidays.end())
        item.name.append(L", ").append(holiday->second);
    for (const Occurrence& occurrence : content_.occurrences)
        if (occurrence.touches(day))
            item.name.append(L", ").append(occurrence.event().subject);
    if (day == content_.selected)
        item.state |= STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED;
    return item;
}

// Painting covers everything, and erasing before would flicker.
bool MonthSheet::onEraseBackground(const tarn::DeviceContext&) { return true; }

void MonthSheet::onFocusGained(Window*) { invalidate(false); }
void MonthSheet::onFocusLost(Window*) { invalidate(false); }

// Of the client area, rounded up: what is painted covers all of it.
tarn::Size MonthSheet::units() const
{
    const tarn::Size size = getClientSize();
    const int dots = static_cast<int>(getDPI().getDots());
    return {static_cast<int>(size.cx * 96 + dots - 1) / dots, static_cast<int>(size.cy * 96 + dots - 1) / dots};
}

// Everything is drawn into a bitmap first and appears in one step. Layout and painting are in units of 1/96 inch, of
// which the context makes pixels.
void MonthSheet::onPaint()
{
    const tarn::PaintDeviceContext window(*this);
    const tarn::Size size = getClientSize();
    if (size.cx == 0 || size.cy == 0 || content_.weeks() == 0)
        return;
    const tarn::Bitmap picture(window, size.cx, size.cy);
    tarn::DeviceContext memory = tarn::DeviceContext::createCompatible(window);
    const tarn::AutoSelect use(memory, picture);
    const auto dots = static_cast<int>(getDPI().getDots());
    SetMapMode(memory, MM_ANISOTROPIC);
    SetWindowExtEx(memory, 96, 96, nullptr);
    SetViewportExtEx(memory, dots, dots, nullptr);
    MonthPainter(memory, fonts_, layout(), content_, GetFocus() == getWindowHandle()).paint(units());
    SetMapMode(memory, MM_TEXT);
    window.blit(memory, 0, 0, size.cx, size.cy, 0, 0, SRCCOPY);
}

void MonthSheet::onLeftButtonDown(unsigned short, const Point& pixels)
{
    const Point position = getDPI().toUnits(pixels);
    setFocus();
    if (layout().previousButton().contains(position))
        selectInOtherMonth(-1);
    else if (layout().nextButton().contains(position))
        selectInOtherMonth(1);
    else if (const auto day = layout().dayAt(position))
        onSelect(*day);
}

void MonthSheet::onLeftButtonDoubleClick(unsigned short keys, const Point& position)
{
    if (layout().dayAt(getDPI().toUnits(position)))
        onOpen();
    else
        onLeftButtonDown(keys, position); // A fast second click on a button.
}

void MonthSheet::onMouseWheel(unsigned short, short delta, const Point&)
{
    wheel_ += delta;
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    if (notches != 0)
        selectInOtherMonth(-notches);
}

void MonthSheet::onKeyDown(UINT key, unsigned short, unsigned char, bool, bool)
{
    const int months = GetKeyState(VK_CONTROL) < 0 ? 12 : 1;
    const Reckoning& reckoning = content_.reckoning;
    switch (key) {
    case VK_LEFT:
        return onSelect(content_.selected - 1);
    case VK_RIGHT:
        return onSelect(content_.selected + 1);
    case VK_UP:
        return onSelect(content_.selected - 7);
    case VK_DOWN:
        return onSelect(content_.selected + 7);
    case VK_HOME:
        return onSelect(reckoning.firstOfMonth(content_.year, content_.month));
    case VK_END:
        return onSelect(reckoning.lastOfMonth(content_.year, content_.month));
    case VK_PRIOR:
        return selectInOtherMonth(-months);
    case VK_NEXT:
        return selectInOtherMonth(months);
    case VK_RETURN:
        return onOpen();
    default:
        defaultWindowProc();
    }
}

void MonthSheet::selectInOtherMonth(int months) const
{
    onSelect(content_.reckoning.addMonths(content_.selected, months));
}
} // namespace planner
