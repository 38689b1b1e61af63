#pragma once

#include <tarn/Export.h>
#include <tarn/Window.h>

#include <chrono>
#include <optional>

namespace tarn {
/// A field for a date, with a calendar that drops down, or for a time (`DTS_TIMEFORMAT`). It tells its parent of a
/// change with `DTN_DATETIMECHANGE`, which comes to onNotify(). Dates are those of the Gregorian calendar from 1601 on.
/// Failures throw WindowsError.
class TARN_API DateTimePicker : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// The date, and the time with it in local time: now unless set. Nothing when the user has emptied a field with the
    /// style `DTS_SHOWNONE`. Throw "Can't get time of date picker".
    ///@{
    std::optional<SYSTEMTIME> getTime() const;
    std::optional<std::chrono::year_month_day> getDate() const;
    ///@}
    /// Throws "Can't set time of date picker", also for a time that there is not.
    void setTime(const SYSTEMTIME& time) const;
    /// The time of the day stays. Throws the same.
    void setDate(const std::chrono::year_month_day& date) const;
    /// Empties a field with the style `DTS_SHOWNONE`. Throws the same.
    void clear() const;
    /// Which dates the user can choose. Throws "Can't set range of date picker".
    void setRange(const std::chrono::year_month_day& first, const std::chrono::year_month_day& last) const;
    /// How the field shows it, "dd MMM yyyy HH:mm" for instance; null as the user has chosen for the system. Throws
    /// "Can't set format of date picker".
    ///@{
    void setFormat(const char* format) const;
    void setFormat(const wchar_t* format) const;
    ///@}
};
} // namespace tarn
