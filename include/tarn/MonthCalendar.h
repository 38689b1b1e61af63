#pragma once

#include <tarn/Export.h>
#include <tarn/Size.h>
#include <tarn/Window.h>

#include <chrono>
#include <utility>

namespace tarn {
/// The days of a month or several, to choose one or, with the style `MCS_MULTISELECT`, several in a row. It tells its
/// parent of a change with `MCN_SELCHANGE` and of a choice with `MCN_SELECT`, which come to onNotify(). Dates are those
/// of the Gregorian calendar from 1601 on. Failures throw WindowsError.
class TARN_API MonthCalendar : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id; getSizeOfMonth() is the room that a month needs.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);
    /// Of one month, in pixels, in the control's font. Throws "Can't get size of month calendar".
    Size getSizeOfMonth() const;

    /// The day selected: today unless set. For several days take getSelection(). Throws "Can't get date of month
    /// calendar".
    std::chrono::year_month_day getDate() const;
    /// Throws "Can't set date of month calendar", also for one that there is not.
    void setDate(const std::chrono::year_month_day& date) const;
    /// With `MCS_MULTISELECT` the first day selected and the last one. Throws "Can't get date of month calendar".
    std::pair<std::chrono::year_month_day, std::chrono::year_month_day> getSelection() const;
    /// Throws "Can't set date of month calendar".
    void setSelection(const std::chrono::year_month_day& first, const std::chrono::year_month_day& last) const;
    /// How many days can be selected with `MCS_MULTISELECT`, 7 unless set. Throws "Can't set date of month calendar".
    void setLongestSelection(unsigned days) const;
    /// Which days the user can choose. Throws "Can't set range of month calendar".
    void setRange(const std::chrono::year_month_day& first, const std::chrono::year_month_day& last) const;
    /// Which day is shown as today's.
    void setToday(const std::chrono::year_month_day& date) const;
    /// As the user has chosen for the system unless set.
    void setFirstDayOfWeek(std::chrono::weekday day) const;
};
} // namespace tarn
