#pragma once

#include "Document.h"

#include <tarn/ListView.h>

#include <vector>

namespace planner {
/// The appointments of a day, with their times, subjects, places and categories.
class DayList : public tarn::ListView {
public:
    void create(HWND parent);
    void show(std::vector<Occurrence> occurrences, Day day);
    /// Gives the columns the window's width.
    void layOut() const;

    const Occurrence* selected() const; ///< Null when none is.

private:
    std::vector<Occurrence> occurrences_;
};
} // namespace planner
