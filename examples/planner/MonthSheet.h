#pragma once

#include "MonthPainter.h"

#include <tarn/AccessibleItems.h>
#include <tarn/Window.h>

#include <functional>

namespace planner {
/// A month on paper: the keys, the wheel and the mouse select a day of it or turn to another month.
class MonthSheet : public tarn::Window, private tarn::AccessibleItems {
public:
    void create(HWND parent, HINSTANCE program);
    void show(MonthContent content);

    bool onEraseBackground(const tarn::DeviceContext& context) override;
    void onFocusGained(Window* other) override;
    void onFocusLost(Window* other) override;
    void onPaint() override;
    void onLeftButtonDown(unsigned short keys, const tarn::Point& position) override;
    void onLeftButtonDoubleClick(unsigned short keys, const tarn::Point& position) override;
    void onMouseWheel(unsigned short keys, short delta, const tarn::Point& position) override;
    void onKeyDown(UINT key, unsigned short repeat, unsigned char scanCode, bool extended, bool wasDown) override;

    std::function<void(Day)> onSelect; ///< The user chose another day.
    std::function<void()> onOpen;      ///< The user wants to write into the selected day.

private:
    tarn::BasicString<wchar_t> getName() const override;
    int getItemCount() const override { return static_cast<int>(content_.last - content_.first + 1); }
    Item getItem(int index) const override;
    void pressItem(int index) override { onSelect(content_.first + index); }

    tarn::Size units() const;
    SheetLayout layout() const { return SheetLayout(units(), content_); }
    void selectInOtherMonth(int months) const;

    SheetFonts fonts_;
    MonthContent content_;
    int wheel_ = 0; // What the wheel has turned short of a notch.
};
} // namespace planner
