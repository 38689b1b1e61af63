#pragma once

#include "Days.h"

#include <tarn/ComboBox.h>
#include <tarn/Dialog.h>
#include <tarn/DialogValues.h>

namespace planner {
/// Asks for a month and a year.
class GoToDialog : public tarn::Dialog {
public:
    GoToDialog(HWND owner, const Date& date);

    int year() const { return year_; }
    int month() const { return month_; }

    bool onInitDialog(tarn::Window& focus) override;
    void onCommand(tarn::Window* sender, unsigned short code, unsigned short id) override;

private:
    int year_, month_;
    tarn::DialogValues values_;
    tarn::ComboBox months_;
};
} // namespace planner
