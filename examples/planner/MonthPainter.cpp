#include "MonthPainter.h"

#include <tarn/AutoColour.h>
#include <tarn/AutoSelect.h>
#include <tarn/Brush.h>
#include <tarn/Pen.h>

#include <algorithm>
#include <iterator>

using tarn::GregorianCalendar;
using tarn::Rect;

namespace planner {
namespace {
constexpr unsigned long paper = RGB(255, 255, 255), weekendPaper = RGB(247, 248, 251), otherPaper = RGB(242, 242, 242);
constexpr unsigned long line = RGB(208, 212, 220), ink = RGB(40, 44, 52), faint = RGB(150, 154, 162);
constexpr unsigned long titleColour = RGB(48, 76, 122), headPaper = RGB(228, 233, 242), white = RGB(255, 255, 255);
constexpr unsigned long holidayInk = RGB(190, 40, 40), todayColour = RGB(46, 117, 182), mark = RGB(200, 95, 0);
constexpr unsigned long selectedPaper = RGB(224, 236, 250);
constexpr unsigned long categoryColours[] = {RGB(46, 125, 90), RGB(176, 82, 30),  RGB(112, 78, 160), RGB(30, 110, 150),
                                             RGB(168, 50, 90), RGB(120, 110, 30), RGB(70, 90, 110)};
constexpr unsigned long withoutCategory = RGB(70, 100, 170);
constexpr int numberHeight = 20, lineHeight = 17, widthOfLongNames = 92;

Rect inset(const Rect& rect, int x, int y)
{
    return Rect(rect.left + x, rect.top + y, rect.right - x, rect.bottom - y);
}
} // namespace

tarn::Font makeFont(int height, int weight)
{
    return tarn::Font(height, 0, 0, 0, weight, false, false, false, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                      CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, L"Segoe UI");
}

SheetFonts::SheetFonts()
    : title(makeFont(-22, FW_BOLD)), bold(makeFont(-13, FW_BOLD)), plain(makeFont(-13, FW_NORMAL)),
      small(makeFont(-12, FW_NORMAL))
{
}

unsigned long categoryColour(int number)
{
    return number < 0 ? withoutCategory
                      : categoryColours[static_cast<std::size_t>(number) % std::size(categoryColours)];
}

void MonthPainter::paint(const tarn::Size& size) const
{
    context_.fillRectangle(paper, Rect(tarn::Point(), size));
    paintTitle();
    paintHeads();
    paintWeekNumbers();
    for (Day day = content_.first; day <= content_.last; ++day)
        paintDay(day);
    frame(layout_.cell(content_.selected), hasFocus_ ? titleColour : todayColour);
    if (hasFocus_)
        frame(inset(layout_.cell(content_.selected), 1, 1), titleColour);
}

void MonthPainter::paintTitle() const
{
    context_.fillRectangle(titleColour, layout_.title());
    paintButton(layout_.previousButton(), true);
    paintButton(layout_.nextButton(), false);
    const Rect title = layout_.title();
    const std::wstring text = std::wstring(monthName(content_.month)) + L" " + yearText(content_.year);
    write(text, Rect(layout_.nextButton().right + 16, title.top, title.right - 8, title.bottom), fonts_.title, white,
          DT_VCENTER);
}

void MonthPainter::paintButton(const Rect& button, bool pointsLeft) const
{
    context_.fillRectangle(RGB(74, 104, 154), button);
    const tarn::AutoSelect use(context_, tarn::Brush(white));
    const tarn::Point middle = button.getCenter();
    const int way = pointsLeft ? -1 : 1;
    context_.beginPath();
    context_.moveTo(middle.x + 4 * way, middle.y);
    context_.lineTo(middle.x - 4 * way, middle.y - 7);
    context_.lineTo(middle.x - 4 * way, middle.y + 7);
    context_.closeFigure();
    context_.endPath();
    context_.fillPath();
}

void MonthPainter::paintHeads() const
{
    for (int column = 0; column < 7; ++column) {
        const Rect head = layout_.head(column);
        const int weekday = content_.reckoning.weekdayOf(content_.first + column);
        context_.fillRectangle(headPaper, head);
        const std::wstring name = weekdayName(weekday);
        write(head.getWidth() < widthOfLongNames ? name.substr(0, 3) : name, inset(head, 6, 0), fonts_.bold,
              weekday == GregorianCalendar::Sunday ? holidayInk : ink, DT_VCENTER);
    }
}

void MonthPainter::paintWeekNumbers() const
{
    const Rect first = layout_.weekNumber(0);
    const Rect corner(first.left, layout_.head(0).top, first.right, first.top);
    context_.fillRectangle(headPaper, corner);
    write(L"Wk", corner, fonts_.small, faint, DT_CENTER | DT_VCENTER);
    for (int row = 0; row < content_.weeks(); ++row) {
        const Rect rect = layout_.weekNumber(row);
        context_.fillRectangle(headPaper, rect);
        write(std::to_wstring(content_.reckoning.weekOf(content_.first + row * 7)), inset(rect, 0, 4), fonts_.small,
              titleColour, DT_CENTER);
        context_.fillRectangle(line, Rect(rect.left, rect.top, rect.right, rect.top + 1));
    }
}

bool MonthPainter::isInMonth(Day day) const { return content_.reckoning.dateOf(day).month == content_.month; }

void MonthPainter::paintDay(Day day) const
{
    const Rect cell = layout_.cell(day);
    const int weekday = content_.reckoning.weekdayOf(day);
    const bool isWeekend = weekday == GregorianCalendar::Saturday || weekday == GregorianCalendar::Sunday;
    context_.fillRectangle(line, cell);
    context_.fillRectangle(day == content_.selected ? selectedPaper
                           : !isInMonth(day)        ? otherPaper
                           : isWeekend              ? weekendPaper
                                                    : paper,
                           Rect(cell.left + 1, cell.top + 1, cell.right, cell.bottom));
    paintNumber(day, cell);
    paintRemark(day, cell);
    paintOccurrences(day, cell);
}

void MonthPainter::paintNumber(Day day, const Rect& cell) const
{
    const std::wstring text = std::to_wstring(content_.reckoning.dateOf(day).day);
    const Rect place(cell.left + 2, cell.top + 2, cell.left + 26, cell.top + numberHeight);
    if (day == content_.today) {
        context_.fillRectangle(todayColour, place);
        write(text, place, fonts_.bold, white, DT_CENTER | DT_VCENTER);
        return;
    }
    const bool isRed =
        content_.holidays.contains(day) || content_.reckoning.weekdayOf(day) == GregorianCalendar::Sunday;
    write(text, place, fonts_.bold, !isInMonth(day) ? faint : isRed ? holidayInk : ink, DT_CENTER | DT_VCENTER);
}

// The holiday's name, and the place where the calendar jumps.
void MonthPainter::paintRemark(Day day, const Rect& cell) const
{
    const Rect place(cell.left + 28, cell.top + 2, cell.right - 4, cell.top + numberHeight);
    if (const auto holiday = content_.holidays.find(day); holiday != content_.holidays.end())
        write(holiday->second, place, fonts_.small, isInMonth(day) ? holidayInk : faint, DT_VCENTER);
    const int missing = content_.missingBefore(day);
    if (missing == 0)
        return;
    context_.fillRectangle(mark, Rect(cell.left - 2, cell.top + 1, cell.left + 3, cell.bottom));
    write(std::to_wstring(missing) + L" days left out", place, fonts_.small, mark, DT_VCENTER);
}

void MonthPainter::paintOccurrences(Day day, const Rect& cell) const
{
    std::vector<const Occurrence*> here;
    for (const Occurrence& occurrence : content_.occurrences)
        if (occurrence.touches(day))
            here.push_back(&occurrence);
    const auto room = static_cast<std::size_t>(std::max((cell.getHeight() - numberHeight - 3) / lineHeight, 0L));
    const std::size_t shown = here.size() <= room ? here.size() : std::max<std::size_t>(room, 1) - 1;
    Rect place(cell.left + 3, cell.top + numberHeight + 2, cell.right - 2, cell.top + numberHeight + 1 + lineHeight);
    for (std::size_t i = 0; i < shown; ++i) {
        paintOccurrence(*here[i], day, place);
        place = place.move(tarn::Point(0, lineHeight));
    }
    if (shown < here.size() && room > 0)
        write(std::to_wstring(here.size() - shown) + L" more", inset(place, 4, 0), fonts_.small, titleColour,
              DT_VCENTER);
}

void MonthPainter::paintOccurrence(const Occurrence& occurrence, Day day, const Rect& place) const
{
    const Event& event = occurrence.event();
    const auto& category = occurrence.appointment->category();
    const unsigned long colour = categoryColour(category ? category->colour() : -1);
    if (event.allDay || dayOf(occurrence.start) != day) {
        context_.fillRectangle(colour, place);
        write(event.subject, inset(place, 4, 0), fonts_.plain, white, DT_VCENTER);
        return;
    }
    context_.fillRectangle(colour, Rect(place.left, place.top + 1, place.left + 4, place.bottom - 1));
    write(timeText(timeOfDay(occurrence.start)) + L" " + event.subject,
          Rect(place.left + 7, place.top, place.right, place.bottom), fonts_.plain, isInMonth(day) ? ink : faint,
          DT_VCENTER);
}

void MonthPainter::frame(const Rect& rect, unsigned long colour) const
{
    context_.drawRectangle3D(rect, colour, colour);
}

// The library draws a text at a point; one that has to fit into a rectangle is left to the system.
void MonthPainter::write(const std::wstring& text, const Rect& rect, const tarn::Font& font, unsigned long colour,
                         unsigned format) const
{
    const tarn::AutoSelect selected(context_, font);
    const tarn::AutoTextColour coloured(context_, colour);
    SetBkMode(context_, TRANSPARENT);
    Rect place = rect;
    DrawTextW(context_, text.c_str(), static_cast<int>(text.size()), &place,
              format | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
}
} // namespace planner
