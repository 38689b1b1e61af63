#pragma once

#include "MonthContent.h"

#include <tarn/Rect.h>

#include <optional>

namespace planner {
/// Where the parts of a month's sheet lie in its window, in units of 1/96 inch.
class SheetLayout {
public:
    SheetLayout(const tarn::Size& size, const MonthContent& content) : size_(size), content_(content) {}

    tarn::Rect title() const { return tarn::Rect(0, 0, size_.cx, titleHeight); }
    tarn::Rect previousButton() const { return tarn::Rect(8, 8, 40, titleHeight - 8); }
    tarn::Rect nextButton() const { return tarn::Rect(44, 8, 76, titleHeight - 8); }
    tarn::Rect head(int column) const
    {
        return tarn::Rect(columnLeft(column), titleHeight, columnLeft(column + 1), top);
    }
    tarn::Rect weekNumber(int row) const { return tarn::Rect(0, rowTop(row), left, rowTop(row + 1)); }
    tarn::Rect cell(Day day) const
    {
        const auto row = static_cast<int>(day - content_.first) / 7,
                   column = static_cast<int>(day - content_.first) % 7;
        return tarn::Rect(columnLeft(column), rowTop(row), columnLeft(column + 1), rowTop(row + 1));
    }
    std::optional<Day> dayAt(const tarn::Point& point) const
    {
        for (Day day = content_.first; day <= content_.last; ++day)
            if (cell(day).contains(point))
                return day;
        return std::nullopt;
    }

private:
    static constexpr int titleHeight = 46, top = titleHeight + 24, left = 34;

    // All the room is given away, to the unit.
    long columnLeft(int column) const { return left + (size_.cx - left) * column / 7; }
    long rowTop(int row) const { return top + (size_.cy - top) * row / content_.weeks(); }

    tarn::Size size_;
    const MonthContent& content_;
};
} // namespace planner
