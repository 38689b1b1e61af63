#pragma once

#include <tarn/Cloneable.h>
#include <tarn/Export.h>
#include <tarn/Time.h>
#include <tarn/TimeZone.h>

#include <cstdint>

namespace tarn {
namespace detail {
/// Keeps a note of an object about itself: a copy begins without.
template <class T> struct Note {
    Note() = default;
    Note(const Note&) noexcept {}
    Note& operator=(const Note&) noexcept
    {
        value = T();
        return *this;
    }
    T value = T();
};
} // namespace detail

/// An instant and its fields (year, month, hour and so on), each made from the other when it is asked for.
///
/// Give a calendar an instant with setTime() and read fields, or set() fields and ask getTime(). Fields
/// are numbered by Field and not range-checked: pass numbers below FieldCount. Reading may compute, also
/// in a const calendar, so threads that share one need a lock. There is no virtual destructor: delete a
/// calendar, and what Clone() gives, through its own type.
class TARN_API Calendar : public Cloneable {
public:
    /// The numbers of the fields.
    enum Field {
        FieldEra,
        /// Within the era, from 1.
        FieldYear,
        /// January is 0.
        FieldMonth,
        /// Of the year before or after on some days around New Year.
        FieldWeekOfYear,
        /// 0 for days before the month's first week.
        FieldWeekOfMonth,
        /// From 1.
        FieldDayOfMonth,
        /// From 1.
        FieldDayOfYear,
        /// Sunday is 1.
        FieldDayOfWeek,
        /// 2 on the month's second Monday; set -1 for the last.
        FieldDayOfWeekInMonth,
        /// 0 before noon, 1 after.
        FieldAmPm,
        /// Of the half day, 0 to 11.
        FieldHour,
        /// 0 to 23.
        FieldHourOfDay,
        FieldMinute,
        FieldSecond,
        FieldMillisecond,
        /// Milliseconds to add to UTC in standard time.
        FieldZoneOffset,
        /// Milliseconds to add on top; 0 outside daylight time.
        FieldDstOffset,
        FieldCount
    };

    // The virtual operations stand in the order of their slots, whatever their access.
protected:
    /// Makes the instant from the fields.
    virtual void computeTime() = 0;
    /// Makes every field from the instant.
    virtual void computeFields() = 0;
    /// The field as it is stored, without computing anything.
    virtual int internalGet(unsigned field) const = 0;
    /// Only stores: the instant is not outdated by it.
    virtual void internalSet(int field, int value) = 0;

public:
    /// Sets one field and outdates the instant, which is computed when it is next asked for.
    virtual void set(unsigned field, int value) = 0;
    /// Moves the calendar; larger fields follow.
    virtual void add(unsigned field, int amount) = 0;
    /// Moves one field round within its range; larger fields stay. This form takes as many single steps
    /// as the amount says.
    virtual void roll(unsigned field, int amount);
    /// One step up or down.
    virtual void roll(unsigned field, bool up) = 0;
    /// The least value of all.
    virtual int getMinimum(int field) = 0;
    /// The greatest value of all.
    virtual int getMaximum(int field) = 0;
    /// The greatest of the values at which ranges begin.
    virtual int getGreatestMinimum(int field) = 0;
    /// The least of the values at which ranges end.
    virtual int getLeastMaximum(int field) = 0;
    /// The least value at the calendar's date. Tries values on a Clone(), whose memory is then given back
    /// without running its destructor: override this in a calendar class that owns anything.
    virtual int getActualMinimum(int field);
    /// The greatest value at the calendar's date.
    virtual int getActualMaximum(int field) = 0;

    /// Computes what is missing, then gives the field.
    int get(unsigned field) const
    {
        const int* const fields = readyFields_.value;
        const bool isPutOff = isWeekField(field) && (shortcuts_.value & weeksArePutOff) != 0;
        return fields && !isPutOff ? fields[field] : completed(field);
    }

    /// The instant; getTime() computes it from the fields when they were set since. setTime() computes the fields.
    ///@{
    Time getTime() { return Time(getTimeInMillis()); }
    void setTime(const Time& time) { setTimeInMillis(time); }
    ///@}

    /// The fields stay as they are until they are next computed: call setTime(getTime()) to see them in
    /// the new zone.
    ///@{
    void SetTimeZone(const TimeZone& zone) { zone_ = zone; }
    const TimeZone& GetTimeZone() const { return zone_; }
    ///@}

    /// A lenient calendar, as every calendar is at first, takes fields out of range as a distance (the
    /// 32nd of January is the 1st of February). One that is not refuses nothing: it only leaves the fields
    /// as they were set until they are next computed. Compare with getActualMaximum() to refuse a date.
    ///@{
    void setLenient(bool lenient) { lenient_ = lenient; }
    bool isLenient() const { return lenient_; }
    ///@}

protected:
    /// In TimeZone::current().
    Calendar();
    /// In a copy of this zone.
    explicit Calendar(const TimeZone& zone);
    /// A copy has fields, instant and zone of its own.
    ///@{
    Calendar(const Calendar&) = default;
    Calendar& operator=(const Calendar&) = default;
    ///@}
    ~Calendar() = default;

    /// As getTime() and setTime().
    ///@{
    std::int64_t getTimeInMillis()
    {
        if (!isTimeSet_)
            updateTime();
        return time_;
    }
    void setTimeInMillis(std::int64_t time);
    ///@}

    /// Brings the instant and the fields up to date.
    void complete()
    {
        if (!isTimeSet_)
            updateTime();
        if (!areFieldsSet_) {
            computeFields();
            areFieldsSet_ = areAllFieldsSet_ = true;
        }
    }

private:
    friend class GregorianCalendar;

    static constexpr bool isWeekField(unsigned field)
    {
        constexpr unsigned fields = 1u << FieldWeekOfYear | 1u << FieldWeekOfMonth | 1u << FieldDayOfWeekInMonth;
        return (fields >> field % 32 & 1) != 0; // Numbers that are no fields may take the long way.
    }
    int completed(unsigned field) const;
    void updateTime();

    /// What GregorianCalendar puts off or takes a short way for, when the object is of just that class.
    enum Shortcut : unsigned char {
        /// All fields count as computed, whatever their stamps say.
        stampsArePutOff = 1,
        /// The week fields are out of date.
        weeksArePutOff = 2,
        /// FieldDayOfWeek holds the day since the epoch that it and FieldDayOfYear come from.
        daysArePutOff = 4,
        /// Year to second were set at once, and nothing since.
        dateAndTimeSet = 8,
    };

protected:
    // Mutable, because reading a const calendar computes what is missing.
    /// A copy of what SetTimeZone() was given.
    TimeZone zone_;

private:
    // Two members stand where the alignment leaves room.
    /// The fields while all but those of weeks may be read without a virtual call; otherwise null.
    mutable detail::Note<const int*> readyFields_;

protected:
    /// The instant, in milliseconds since 1970-01-01 00:00:00 UTC.
    mutable std::int64_t time_ = 0;
    /// `time_` is valid.
    mutable bool isTimeSet_ = false;
    /// The fields agree with `time_`.
    mutable bool areFieldsSet_ = false;
    /// All fields come from computeFields(), not only from set().
    mutable bool areAllFieldsSet_ = false;
    /// As setLenient().
    bool lenient_ = true;

private:
    /// Of Shortcut.
    mutable detail::Note<unsigned char> shortcuts_;
};
} // namespace tarn
