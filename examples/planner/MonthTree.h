#pragma once

#include "Days.h"

#include <tarn/TreeView.h>

#include <functional>
#include <map>
#include <vector>

namespace planner {
/// Years with their months, for some years before and after the one that is shown.
class MonthTree : public tarn::TreeView {
public:
    void show(int year, int month);

    using tarn::TreeView::onReflectedNotification;
    bool onReflectedNotification(const NMTREEVIEWW& notification) override;

    std::function<void(int year, int month)> onSelect; ///< The user chose a month.

private:
    void provide(int year);
    void addYear(int year, HTREEITEM after);

    std::map<int, std::vector<HTREEITEM>> months_; // By year.
    bool isShowing_ = false;                       // Selecting by the program tells nobody.
};
} // namespace planner
