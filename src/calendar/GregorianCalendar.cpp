#include <tarn/GregorianCalendar.h>

#include "Arithmetic.h"
#include "DayNumbers.h"
#include "Exactly.h"
#include "FieldValues.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <utility>

namespace tarn {
namespace {
// In the order of the field numbers. The greatest minimum is the minimum.
constexpr int minima[] = {0, 1, 0, 1, 0, 1, 1, 1, -1, 0, 0, 0, 0, 0, 0, -43200000, 0};
constexpr int leastMaxima[] = {1, 292269054, 11, 52, 4, 28, 365, 7, 4, 1, 11, 23, 59, 59, 999, 43200000, 3600000};
constexpr int maxima[] = {1, 292278994, 11, 53, 6, 31, 366, 7, 6, 1, 11, 23, 59, 59, 999, 43200000, 3600000};

constexpr int unset = 0;
constexpr int computed = 1;
} // namespace

GregorianCalendar::GregorianCalendar() = default;
GregorianCalendar::GregorianCalendar(const TimeZone& zone) : Calendar(zone) {}

GregorianCalendar::GregorianCalendar(const GregorianCalendar& other) : GregorianCalendarBase(other), Calendar(other)
{
    copyFields(other);
}

GregorianCalendar& GregorianCalendar::operator=(const GregorianCalendar& other)
{
    if (this == &other)
        return *this;
    GregorianCalendarBase::operator=(other);
    Calendar::operator=(other);
    copyFields(other);
    return *this;
}

// Nothing is put off in the copy: it may be part of an object of a derived class.
void GregorianCalendar::copyFields(const GregorianCalendar& other)
{
    nextStamp_ = other.nextStamp_;
    firstDayOfWeek_ = other.firstDayOfWeek_;
    minimalDaysInFirstWeek_ = other.minimalDaysInFirstWeek_;
    std::ranges::copy(other.fields_, fields_);
    std::ranges::copy(other.stamps_, stamps_);
    shortcuts_.value = other.shortcuts_.value;
    finish();
}

Cloneable* GregorianCalendar::Clone() const { return new GregorianCalendar(*this); }

void GregorianCalendar::set(unsigned field, int value) { store(field, value); }

// Before any field is changed, what was put off is done from the fields as they are.
[[gnu::noinline]] void GregorianCalendar::finish() const
{
    if (isPutOff(daysArePutOff))
        setDays(fields_, fields_[FieldDayOfWeek]);
    if (isPutOff(weeksArePutOff))
        finishWeeks();
    if (isPutOff(stampsArePutOff))
        std::ranges::fill(stamps_, computed);
    shortcuts_.value = 0;
}

void GregorianCalendar::finishWeeks() const
{
    computeWeeks(fields_);
    shortcuts_.value &= static_cast<unsigned char>(~weeksArePutOff);
}

inline void GregorianCalendar::outdate(Shortcut shortcut)
{
    // The instant of a date and time set at once has new days, mostly before anybody asks for the old ones.
    const unsigned char kept = shortcut == dateAndTimeSet ? daysArePutOff : 0;
    if (shortcuts_.value & ~(kept | dateAndTimeSet)) [[unlikely]]
        finish();
    shortcuts_.value = static_cast<unsigned char>(shortcut | (shortcuts_.value & kept));
    readyFields_.value = nullptr;
    isTimeSet_ = areFieldsSet_ = false;
}

inline void GregorianCalendar::store(unsigned field, int value)
{
    outdate(Shortcut());
    if (nextStamp_ == INT_MAX)
        renumberStamps();
    fields_[field] = value;
    stamps_[field] = nextStamp_++;
}

// Two thousand million sets use the stamps up. The least numbers of the same order make room again.
[[gnu::noinline, gnu::cold]] void GregorianCalendar::renumberStamps()
{
    int old[FieldCount];
    std::copy(std::begin(stamps_), std::end(stamps_), old);
    for (int& stamp : stamps_)
        if (stamp > computed)
            stamp = 2 + static_cast<int>(std::count_if(std::begin(old), std::end(old), [&stamp](int other) {
                        return other > computed && other < stamp;
                    }));
    nextStamp_ = 2 + FieldCount;
}

[[gnu::noinline]] void GregorianCalendar::setEachOfDerived(std::initializer_list<std::pair<int, int>> settings)
{
    for (const auto& [field, value] : settings)
        set(static_cast<unsigned>(field), value);
}

template <int... fields, class... Values> inline void GregorianCalendar::setEach(Shortcut shortcut, Values... values)
{
    if (!isExactly(*this)) {
        setEachOfDerived({std::pair(fields, values)...});
        return;
    }
    outdate(shortcut);
    if (nextStamp_ > INT_MAX - static_cast<int>(sizeof...(fields)))
        renumberStamps();
    ((fields_[fields] = values, stamps_[fields] = nextStamp_++), ...);
}

void GregorianCalendar::set(int year, int month, int date)
{
    setEach<FieldYear, FieldMonth, FieldDayOfMonth>(Shortcut(), year, month, date);
}

void GregorianCalendar::set(int year, int month, int date, int hour, int minute)
{
    setEach<FieldYear, FieldMonth, FieldDayOfMonth, FieldHourOfDay, FieldMinute>(Shortcut(), year, month, date, hour,
                                                                                 minute);
}

void GregorianCalendar::set(int year, int month, int date, int hour, int minute, int second)
{
    setEach<FieldYear, FieldMonth, FieldDayOfMonth, FieldHourOfDay, FieldMinute, FieldSecond>(
        dateAndTimeSet, year, month, date, hour, minute, second);
}

void GregorianCalendar::Clear()
{
    shortcuts_.value = 0;
    readyFields_.value = nullptr;
    std::ranges::fill(fields_, 0);
    std::ranges::fill(stamps_, unset);
    isTimeSet_ = areFieldsSet_ = areAllFieldsSet_ = false;
}

void GregorianCalendar::Clear(int field)
{
    outdate(Shortcut());
    areAllFieldsSet_ = false;
    fields_[field] = 0;
    stamps_[field] = unset;
}

int GregorianCalendar::getMinimum(int field) { return minima[field]; }
int GregorianCalendar::getMaximum(int field) { return maxima[field]; }
int GregorianCalendar::getGreatestMinimum(int field) { return minima[field]; }
int GregorianCalendar::getLeastMaximum(int field) { return leastMaxima[field]; }
int GregorianCalendar::getActualMinimum(int field) { return getMinimum(field); }

void GregorianCalendar::setGregorianChange(const Time& cutover)
{
    finish();
    GregorianCalendarBase::setGregorianChange(cutover, zone_);
}

bool GregorianCalendar::InDaylightTime()
{
    if (!zone_.UseDaylightTime())
        return false;
    complete();
    return internalGet(FieldDstOffset) != 0;
}

int GregorianCalendar::getISOYear()
{
    complete();
    const int year = internalGet(FieldYear);
    const int week = internalGet(FieldWeekOfYear);
    if (internalGet(FieldMonth) != January)
        return week == 1 ? year + 1 : year;
    return week >= 52 ? year - 1 : year;
}

int GregorianCalendar::monthLength(int month, int year) const
{
    return daysInMonth[isLeapYear(year)][floorRemainder(month, 12)];
}

int GregorianCalendar::monthLength(int month) const { return monthLength(month, astronomicalYear()); }

int GregorianCalendar::yearLength() const { return yearLength(internalGet(FieldYear)); }

int GregorianCalendar::astronomicalYear() const
{
    const int year = internalGet(FieldYear);
    return internalGet(FieldEra) == AD ? year : wrappingSubtract(1, year);
}

std::int64_t GregorianCalendar::millisToJulianDay(std::int64_t millis)
{
    return floorQuotient(millis, millisPerDay) + epochJulianDay;
}

std::int64_t GregorianCalendar::JulianDayToMillis(std::int64_t julianDay)
{
    return wrappingMultiply(wrappingSubtract(julianDay, epochJulianDay), millisPerDay);
}

GregorianCalendar::DayOfWeek GregorianCalendar::julianDayToDayOfWeek(std::int64_t julianDay)
{
    const std::int64_t next = wrappingAdd(julianDay, 1);
    const int rest = next == static_cast<int>(next) ? static_cast<int>(next) % 7 : static_cast<int>(next % 7);
    return static_cast<DayOfWeek>(rest < 0 ? rest + 8 : rest + 1);
}

bool GregorianCalendar::boundsCheck(int value, int field)
{
    return getMinimum(field) <= value && value <= getMaximum(field);
}

bool GregorianCalendar::validateFields()
{
    for (int field = 0; field < FieldCount; ++field) {
        const bool dependsOnDate = field == FieldDayOfMonth || field == FieldDayOfYear;
        if (isSet(field) && !dependsOnDate && !boundsCheck(fields_[field], field))
            return false;
    }
    const int day = fields_[FieldDayOfMonth];
    if (isSet(FieldDayOfMonth) && (day < getMinimum(FieldDayOfMonth) || day > monthLength(fields_[FieldMonth])))
        return false;
    const int dayOfYear = fields_[FieldDayOfYear];
    if (isSet(FieldDayOfYear) && (dayOfYear < 1 || dayOfYear > yearLength()))
        return false;
    return !isSet(FieldDayOfWeekInMonth) || fields_[FieldDayOfWeekInMonth] != 0;
}

std::int64_t GregorianCalendar::getEpochDay()
{
    complete();
    const std::int64_t offset = (std::int64_t(internalGet(FieldZoneOffset)) + internalGet(FieldDstOffset)) / 1000;
    return floorDivide(time_ / 1000 + offset, std::int64_t(86400));
}
} // namespace tarn
