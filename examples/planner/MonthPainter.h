#pragma once

#include "SheetLayout.h"

#include <tarn/DeviceContext.h>
#include <tarn/Font.h>

#include <string>

namespace planner {
/// The program's face in some height, as a Font takes it, and weight.
tarn::Font makeFont(int height, int weight);

/// The fonts of a sheet, made once.
struct SheetFonts {
    SheetFonts();

    tarn::Font title, bold, plain, small;
};

/// The colour of a category, by its number.
unsigned long categoryColour(int number);

/// Paints a month on a context.
class MonthPainter {
public:
    MonthPainter(tarn::DeviceContext& context, const SheetFonts& fonts, const SheetLayout& layout,
                 const MonthContent& content, bool hasFocus)
        : context_(context), fonts_(fonts), layout_(layout), content_(content), hasFocus_(hasFocus)
    {
    }

    void paint(const tarn::Size& size) const;

private:
    void paintTitle() const;
    void paintButton(const tarn::Rect& button, bool pointsLeft) const;
    void paintHeads() const;
    void paintWeekNumbers() const;
    void paintDay(Day day) const;
    void paintNumber(Day day, const tarn::Rect& cell) const;
    void paintRemark(Day day, const tarn::Rect& cell) const;
    void paintOccurrences(Day day, const tarn::Rect& cell) const;
    void paintOccurrence(const Occurrence& occurrence, Day day, const tarn::Rect& line) const;
    void frame(const tarn::Rect& rect, unsigned long colour) const;
    void write(const std::wstring& text, const tarn::Rect& rect, const tarn::Font& font, unsigned long colour,
               unsigned format) const;
    bool isInMonth(Day day) const;

    tarn::DeviceContext& context_;
    const SheetFonts& fonts_;
    const SheetLayout& layout_;
    const MonthContent& content_;
    bool hasFocus_;
};
} // namespace planner
