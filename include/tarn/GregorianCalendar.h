#pragma once

#include <tarn/Calendar.h>
#include <tarn/Export.h>
#include <tarn/GregorianCalendarBase.h>
#include <tarn/Layout.h>

#include <cstdint>
#include <initializer_list>
#include <utility>

namespace tarn {
/// The calendar in use: Julian before the cutover (1582-10-15 unless changed), Gregorian from it on.
///
///     GregorianCalendar calendar((TimeZone()));
///     calendar.Clear();
///     calendar.set(2000, GregorianCalendar::February, 29);
///     calendar.add(Calendar::FieldYear, 1);
///     calendar.get(Calendar::FieldDayOfMonth); // 28
///
/// A new calendar has no instant: call setTime(), or Clear() and set(), before reading. Instants less than
/// the zone's offset away from the ends of time read as 1970-01-01. Nothing but Clone(), the actual maxima
/// and a roll() past the last year allocates.
class TARN_API GregorianCalendar : public GregorianCalendarBase, public Calendar {
public:
    /// In TimeZone::current().
    GregorianCalendar();
    /// In a copy of this zone.
    GregorianCalendar(const TimeZone& zone);
    /// A copy has fields, instant, zone and cutover of its own.
    ///@{
    GregorianCalendar(const GregorianCalendar& other);
    GregorianCalendar& operator=(const GregorianCalendar& other);
    ///@}

    /// A copy to be deleted as a GregorianCalendar.
    Cloneable* Clone() const override;

protected:
    void computeTime() override;
    void computeFields() override;
    int internalGet(unsigned field) const override
    {
        if (isPutOff(weeksArePutOff) && isWeekField(field))
            finishWeeks();
        return fields_[field];
    }
    void internalSet(int field, int value) override { fields_[field] = value; }

public:
    /// Of fields that contradict each other the ones set last count. The hour is FieldHour with FieldAmPm
    /// only when FieldHour was set after FieldHourOfDay; setting FieldAmPm alone does not choose it. A
    /// FieldZoneOffset that was set replaces the zone's, and FieldDstOffset then counts too, set or not.
    ///@{
    void set(unsigned field, int value) override;
    void set(int year, int month, int date);
    void set(int year, int month, int date, int hour, int minute);
    void set(int year, int month, int date, int hour, int minute, int second);
    ///@}
    /// By set() or computed.
    bool isSet(int field) const { return isPutOff(stampsArePutOff) || stamps_[field] != 0; }
    /// Unsets every field.
    void Clear();
    /// Unsets one field.
    void Clear(int field);

    /// As Calendar's, with fewer calls.
    ///@{
    Time getTime() { return Time(isTimeSet_ ? time_ : timeOfFields()); }
    void setTime(const Time& time);
    ///@}

    /// Moves by years, months, or fixed lengths of time. Years and months clamp the day to the new month;
    /// in the era BC later months still go to the greater year number, so move by days there. Steps of
    /// half a day and more keep the clock's time across a change to or from daylight time, as do
    /// FieldZoneOffset and FieldDstOffset, which move by milliseconds.
    void add(unsigned field, int amount) override;
    /// Moves one field round within its actual range, at the same cost for any amount; larger fields stay
    /// and a day beyond the end of the new month becomes its last. Weeks keep the weekday unless the month
    /// or year ends before it; FieldDayOfWeek stays in its week, or where that leaves the month goes to
    /// the same weekday of the neighbouring week. FieldZoneOffset and FieldDstOffset read the clock's time
    /// as that of the new offset.
    void roll(unsigned field, int amount) override;
    void roll(unsigned field, bool up) override;

    int getMinimum(int field) override;
    int getMaximum(int field) override;
    int getGreatestMinimum(int field) override;
    int getLeastMaximum(int field) override;
    /// As getMinimum().
    int getActualMinimum(int field) override;
    /// Searches with a Clone() for years and weeks. The length of the year goes by the number in FieldYear
    /// as if it were AD: in the era BC ask yearLength(1 - year).
    int getActualMaximum(int field) override;

    /// A DayOfWeek: Sunday unless changed.
    ///@{
    void setFirstDayOfWeek(int dayOfWeek)
    {
        finish();
        firstDayOfWeek_ = dayOfWeek;
    }
    int getFirstDayOfWeek() const { return firstDayOfWeek_; }
    ///@}
    /// How many days of a week must lie in the year or month for it to be the first: 4 with weeks from
    /// Monday gives the weeks of ISO 8601. A day of a week that two years share may be numbered one off
    /// (2000-01-01 reads 53 for 52): ask the day that decides which year has it, by ISO 8601 Thursday.
    ///@{
    void setMinimalDaysInFirstWeek(int days)
    {
        finish();
        minimalDaysInFirstWeek_ = days;
    }
    int getMinimalDaysInFirstWeek() const { return minimalDaysInFirstWeek_; }
    ///@}

    /// Dates change over at the start of the cutover's day in UTC. What was computed before stays: call
    /// setTime(getTime()) to see the fields by the new cutover.
    void setGregorianChange(const Time& cutover);

    /// Whether daylight time is in force at the calendar's instant.
    bool InDaylightTime();
    /// The year that the week of FieldWeekOfYear belongs to.
    int getISOYear();

    /// `year` is astronomical: 0 is 1 BC.
    int monthLength(int month, int year) const;
    /// In the year and era that the fields hold.
    int monthLength(int month) const;
    /// In days; `year` is astronomical.
    int yearLength(int year) const { return isLeapYear(year) ? 366 : 365; }
    /// By the number in FieldYear as if it were AD: in the era BC call yearLength(1 - year).
    int yearLength() const;

    /// Between instants in milliseconds since 1970-01-01 and Julian days, which are whole days here: 1970-01-01 is
    /// 2440588, and an instant counts to the day in which it lies in UTC.
    ///@{
    static std::int64_t millisToJulianDay(std::int64_t millis);
    static std::int64_t JulianDayToMillis(std::int64_t julianDay);
    ///@}
    /// 0 is a Monday.
    static DayOfWeek julianDayToDayOfWeek(std::int64_t julianDay);

private:
    bool isPutOff(Shortcut shortcut) const { return (shortcuts_.value & shortcut) != 0; }
    void finish() const;
    void finishWeeks() const;
    void copyFields(const GregorianCalendar& other);
    void outdate(Shortcut shortcut);

    static int aggregateStamp(int a, int b);
    void renumberStamps();
    int astronomicalYear() const;

    void store(unsigned field, int value);
    template <int... fields, class... Values> void setEach(Shortcut shortcut, Values... values);
    void setEachOfDerived(std::initializer_list<std::pair<int, int>> settings);

    void computeOwnFields();
    void computeFieldsInto(int* values) const;
    void computeFieldsOfDerived();
    void storeFields(const int* values, std::initializer_list<int> fields);
    void storeDate(const int* values);
    int offsetOfDay(Era era, const int* values, int millisInDay) const;
    void computeWeeks(int* values) const;
    bool isInFirstWeekOfNextYear(const int* values) const;
    int weekNumber(int dayOfPeriod, int dayOfWeek) const;

    std::int64_t computeJulianDay(bool gregorian, int year, int& plainDay) const;
    std::int64_t dateInFirstWeek(std::int64_t before, std::int64_t& first) const;
    std::int64_t dateOfWeek(std::int64_t before, int weekField) const;
    std::int64_t dateOfWeekday(std::int64_t before, int year) const;
    std::int64_t millisInDayOfFields() const;
    std::int64_t timeOfFields();
    bool computeTimeOfDateAndTime();
    void subtractDaylightTime(int epochDay, int millisInDay);
    void computeTimeOfFields();
    int localOffset(Era era, int year, int plainDay, std::int64_t midnight, std::int64_t timeOfDay);
    bool boundsCheck(int value, int field);
    bool validateFields();

    void addYears(int amount);
    void addMonths(int amount);
    void addTime(std::int64_t delta, bool keepClock);
    void pinDayOfMonth();
    void rollYears(unsigned field, int amount);
    void rollDays(unsigned field, int amount);
    void rollOffset(unsigned field, int amount);
    void shiftKeepingClock(std::int64_t delta);

    std::int64_t getEpochDay();
    std::int64_t shownDay() const;
    int BaseGetActualMaximum(int field);
    int greatestYear();

    int nextStamp_ = 2;
    int firstDayOfWeek_ = Sunday;
    int minimalDaysInFirstWeek_ = 1;
    mutable int fields_[FieldCount] = {};
    /// 0 unset, 1 computed, from 2 on the order of set() calls.
    mutable int stamps_[FieldCount] = {};
};
TARN_LAYOUT(GregorianCalendar, 240, 248);
} // namespace tarn
