#pragma once

#include <tarn/GregorianCalendar.h>

#include <algorithm>
#include <array>
#include <cstdint>

/// The calendar once more, written down step by step with no thought of speed: nothing is put off, noted or
/// taken together. For numbers of a size that no step overflows. It has no roll.
class Model {
public:
    using C = tarn::Calendar;
    using G = tarn::GregorianCalendar;

    explicit Model(const tarn::TimeZone& zone) : zone_(zone) {}

    void set(unsigned field, int value)
    {
        isTimeSet_ = areFieldsSet_ = false;
        fields_[field] = value;
        stamps_[field] = nextStamp_++;
    }
    void Clear()
    {
        fields_ = stamps_ = {};
        isTimeSet_ = areFieldsSet_ = areAllFieldsSet_ = false;
    }
    void Clear(int field)
    {
        fields_[field] = stamps_[field] = 0;
        isTimeSet_ = areFieldsSet_ = areAllFieldsSet_ = false;
    }
    void setTime(std::int64_t time)
    {
        time_ = time;
        isTimeSet_ = true;
        computeFields();
        areFieldsSet_ = areAllFieldsSet_ = true;
    }
    std::int64_t getTime()
    {
        if (!isTimeSet_) {
            computeTime();
            if (lenient_ || !areAllFieldsSet_)
                areFieldsSet_ = false;
            isTimeSet_ = true;
        }
        return time_;
    }
    int get(unsigned field)
    {
        getTime();
        if (!areFieldsSet_) {
            computeFields();
            areFieldsSet_ = areAllFieldsSet_ = true;
        }
        return fields_[field];
    }
    /// Whatever the field holds, also when it is out of date.
    int raw(unsigned field) const { return fields_[field]; }
    bool isSet(int field) const { return stamps_[field] != 0; }
    void setLenient(bool lenient) { lenient_ = lenient; }
    void SetTimeZone(const tarn::TimeZone& zone) { zone_ = zone; }
    void setFirstDayOfWeek(int day) { firstDayOfWeek_ = day; }
    void setMinimalDaysInFirstWeek(int days) { minimalDays_ = days; }
    void setGregorianChange(std::int64_t cutover)
    {
        cutover_ = floorDivide(cutover, millisPerDay) * millisPerDay;
        Model calendar(zone_);
        calendar.setTime(cutover);
        cutoverYear_ = calendar.astronomicalYear();
    }

    void add(unsigned field, int amount)
    {
        if (amount == 0)
            return;
        get(field);
        switch (field) {
        case C::FieldEra:
            set(C::FieldEra, std::clamp(fields_[C::FieldEra] + amount, 0, 1));
            break;
        case C::FieldYear: {
            const bool ad = fields_[C::FieldEra] == G::AD;
            const int year = ad ? fields_[C::FieldYear] + amount : fields_[C::FieldYear] - amount;
            set(C::FieldYear, year > 0 ? year : 1 - year);
            if (year <= 0)
                set(C::FieldEra, ad ? G::BC : G::AD);
            pinDayOfMonth();
            break;
        }
        case C::FieldMonth: {
            const int month = fields_[C::FieldMonth] + amount;
            set(C::FieldYear, fields_[C::FieldYear] + static_cast<int>(floorDivide(month, 12)));
            set(C::FieldMonth, static_cast<int>(month - 12 * floorDivide(month, 12)));
            pinDayOfMonth();
            break;
        }
        default: {
            constexpr std::int64_t day = millisPerDay,
                                   units[C::FieldCount] = {0,     0,    0,       7 * day, 7 * day, day,
                                                           day,   day,  7 * day, day / 2, 3600000, 3600000,
                                                           60000, 1000, 1,       1,       1};
            const bool keepsClock = units[field] >= millisPerDay / 2 || field >= C::FieldZoneOffset;
            const int before = fields_[C::FieldDstOffset];
            setTime(time_ + amount * units[field]);
            if (keepsClock)
                setTime(time_ + before - fields_[C::FieldDstOffset]);
        }
        }
    }

    int getActualMaximum(int field)
    {
        switch (field) {
        case C::FieldDayOfMonth:
            get(0);
            return monthLength(fields_[C::FieldMonth], astronomicalYear());
        case C::FieldDayOfYear:
            get(0);
            return yearLength(fields_[C::FieldYear]);
        case C::FieldWeekOfYear:
        case C::FieldWeekOfMonth:
        case C::FieldDayOfWeekInMonth: {
            get(0);
            Model copy(*this);
            copy.lenient_ = true;
            if (field != C::FieldDayOfWeekInMonth)
                copy.set(C::FieldDayOfWeek, firstDayOfWeek_);
            int value = field == C::FieldWeekOfYear ? 52 : 4;
            const int end = field == C::FieldWeekOfYear ? 53 : 6;
            int result = value;
            for (; value <= end; ++value) {
                copy.set(static_cast<unsigned>(field), value);
                if (copy.get(static_cast<unsigned>(field)) != value)
                    break;
                result = value;
            }
            return result;
        }
        default:
            return G(zone_).getMaximum(field);
        }
    }
    int getISOYear()
    {
        const int week = get(C::FieldWeekOfYear), year = fields_[C::FieldYear];
        if (fields_[C::FieldMonth] != G::January)
            return week == 1 ? year + 1 : year;
        return week >= 52 ? year - 1 : year;
    }

private:
    static constexpr std::int64_t millisPerDay = 86400000;
    static constexpr int lengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

    static std::int64_t floorDivide(std::int64_t n, std::int64_t d) { return n >= 0 ? n / d : (n + 1) / d - 1; }
    /// Never negative.
    static int modulo(std::int64_t n, int d) { return static_cast<int>((n % d + d) % d); }
    static bool isLeap(bool gregorian, std::int64_t year)
    {
        return year % 4 == 0 && (!gregorian || year % 100 != 0 || year % 400 == 0);
    }
    static int daysBefore(int month, bool leap)
    {
        int days = 0;
        for (int i = 0; i < month; ++i)
            days += lengths[i] + (i == 1 && leap);
        return days;
    }
    bool isLeapYear(int year) const { return isLeap(year >= cutoverYear_, year); }
    int yearLength(int year) const { return isLeapYear(year) ? 366 : 365; }
    int monthLength(int month, int year) const { return lengths[month] + (month == 1 && isLeapYear(year)); }
    int astronomicalYear() const
    {
        return fields_[C::FieldEra] == G::AD ? fields_[C::FieldYear] : 1 - fields_[C::FieldYear];
    }
    void pinDayOfMonth()
    {
        const int length = monthLength(fields_[C::FieldMonth], astronomicalYear());
        if (fields_[C::FieldDayOfMonth] > length)
            set(C::FieldDayOfMonth, length);
    }

    int offset(int era, int millisInDay) const
    {
        return zone_.GetOffset(static_cast<G::Era>(era), fields_[C::FieldYear],
                               static_cast<G::Month>(fields_[C::FieldMonth]), fields_[C::FieldDayOfMonth],
                               static_cast<G::DayOfWeek>(fields_[C::FieldDayOfWeek]), millisInDay);
    }

    void computeFields()
    {
        const int raw = zone_.GetStandardOffset();
        std::int64_t local = time_ + raw;
        timeToFields(local, false);
        int millis = modulo(local, millisPerDay);
        const int dstOffset = offset(fields_[C::FieldEra], millis) - raw;
        millis += dstOffset;
        if (millis >= millisPerDay) {
            local += dstOffset;
            millis -= static_cast<int>(millisPerDay);
            timeToFields(local, false);
        }
        fields_[C::FieldMillisecond] = millis % 1000;
        fields_[C::FieldSecond] = millis / 1000 % 60;
        fields_[C::FieldMinute] = millis / 60000 % 60;
        fields_[C::FieldHourOfDay] = millis / 3600000;
        fields_[C::FieldAmPm] = fields_[C::FieldHourOfDay] / 12;
        fields_[C::FieldHour] = fields_[C::FieldHourOfDay] % 12;
        fields_[C::FieldZoneOffset] = raw;
        fields_[C::FieldDstOffset] = dstOffset;
        stamps_.fill(1);
    }

    void timeToFields(std::int64_t local, bool quick)
    {
        const std::int64_t rawDay = floorDivide(local, millisPerDay);
        std::int64_t year = 0, dayOfYear = 0;
        const bool gregorian = local >= cutover_;
        if (gregorian) {
            const std::int64_t epochDay = rawDay + 719162, c400 = floorDivide(epochDay, 146097);
            std::int64_t rest = epochDay - 146097 * c400;
            const std::int64_t c100 = rest / 36524;
            rest %= 36524;
            const std::int64_t c4 = rest / 1461;
            rest %= 1461;
            const std::int64_t c1 = rest / 365;
            year = 400 * c400 + 100 * c100 + 4 * c4 + c1;
            dayOfYear = rest % 365;
            if (c100 == 4 || c1 == 4)
                dayOfYear = 365;
            else
                ++year;
        } else {
            year = floorDivide(4 * (rawDay + 719530), 1461);
            dayOfYear = rawDay + 719164 - 365 * (year - 1) - floorDivide(year - 1, 4);
        }
        const bool leap = isLeap(gregorian, year);
        const int dayOfWeek = modulo(rawDay + 719163, 7) + 1;
        const std::int64_t correction = dayOfYear < (leap ? 60 : 59) ? 0 : leap ? 1 : 2;
        const int month = static_cast<int>((12 * (dayOfYear + correction) + 6) / 367);
        fields_[C::FieldEra] = year < 1 ? G::BC : G::AD;
        fields_[C::FieldYear] = static_cast<int>(year < 1 ? 1 - year : year);
        fields_[C::FieldMonth] = month;
        fields_[C::FieldDayOfMonth] = static_cast<int>(dayOfYear) - daysBefore(month, leap) + 1;
        fields_[C::FieldDayOfWeek] = dayOfWeek;
        fields_[C::FieldDayOfYear] = static_cast<int>(dayOfYear) + 1;
        if (quick)
            return;

        const int d = static_cast<int>(dayOfYear) + 1;
        const int place = (dayOfWeek - firstDayOfWeek_ + 7) % 7;
        const int first = modulo(dayOfWeek - firstDayOfWeek_ - d + 1, 7);
        int week = (first + d - 1) / 7;
        if (7 - first >= minimalDays_) {
            ++week;
            const int length = yearLength(fields_[C::FieldYear]);
            const int last = modulo(length - d + place, 7);
            if (d > 359 && 6 - last >= minimalDays_ && d - place + 7 > length)
                week = 1;
        } else if (week == 0) {
            week = weekNumber(d + yearLength(static_cast<int>(year) - 1), (dayOfWeek + 6) % 7);
        }
        fields_[C::FieldWeekOfYear] = week;
        fields_[C::FieldWeekOfMonth] = weekNumber(fields_[C::FieldDayOfMonth], dayOfWeek);
        fields_[C::FieldDayOfWeekInMonth] = (fields_[C::FieldDayOfMonth] - 1) / 7 + 1;
    }
    int weekNumber(int dayOfPeriod, int dayOfWeek) const
    {
        const int first = modulo(dayOfWeek - firstDayOfWeek_ - dayOfPeriod + 1, 7);
        return (first + dayOfPeriod - 1) / 7 + (7 - first >= minimalDays_);
    }

    void computeTime()
    {
        int year = isSet(C::FieldYear) ? fields_[C::FieldYear] : 1970;
        const int era = isSet(C::FieldEra) && fields_[C::FieldEra] == G::BC ? G::BC : G::AD;
        if (era == G::BC)
            year = 1 - year;
        const bool gregorian = year >= cutoverYear_;
        std::int64_t julianDay = computeJulianDay(gregorian, year);
        if (gregorian != ((julianDay - 2440588) * millisPerDay >= cutover_))
            julianDay = computeJulianDay(!gregorian, year);
        std::int64_t millis = (julianDay - 2440588) * millisPerDay;

        std::int64_t millisInDay = 0;
        const int hourOfDay = stamps_[C::FieldHourOfDay], hour = stamps_[C::FieldHour];
        if (std::max(hourOfDay, hour) != 0)
            millisInDay = hourOfDay >= hour ? fields_[C::FieldHourOfDay]
                                            : fields_[C::FieldHour] + 12 * std::int64_t(fields_[C::FieldAmPm]);
        millisInDay = millisInDay * 60 + (isSet(C::FieldMinute) ? fields_[C::FieldMinute] : 0);
        millisInDay = millisInDay * 60 + (isSet(C::FieldSecond) ? fields_[C::FieldSecond] : 0);
        millisInDay = millisInDay * 1000 + (isSet(C::FieldMillisecond) ? fields_[C::FieldMillisecond] : 0);
        millis += millisInDay;

        int zoneOffset = fields_[C::FieldZoneOffset], dstOffset = fields_[C::FieldDstOffset];
        if (stamps_[C::FieldZoneOffset] < 2) {
            zoneOffset = zone_.GetStandardOffset();
            const int rest = modulo(millis, millisPerDay);
            if (!lenient_ && isSet(C::FieldMonth) && isSet(C::FieldDayOfMonth) && millisInDay == rest) {
                Model date(*this);
                date.fields_[C::FieldDayOfWeek] = G::julianDayToDayOfWeek(julianDay);
                dstOffset = date.offset(era, rest) - zoneOffset;
            } else {
                timeToFields(millis, true);
                dstOffset = offset(era, rest) - zoneOffset;
            }
        }
        time_ = millis - zoneOffset - dstOffset;
    }

    std::int64_t computeJulianDay(bool gregorian, int year) const
    {
        const auto both = [](int a, int b) { return a == 0 || b == 0 ? 0 : std::max(a, b); };
        const int weekday = stamps_[C::FieldDayOfWeek];
        const int month = stamps_[C::FieldMonth], dayOfMonth = stamps_[C::FieldDayOfMonth];
        const int weekOfMonth = both(stamps_[C::FieldWeekOfMonth], weekday);
        const int weekdayInMonth = both(stamps_[C::FieldDayOfWeekInMonth], weekday);
        const int dayOfYear = stamps_[C::FieldDayOfYear], weekOfYear = both(stamps_[C::FieldWeekOfYear], weekday);
        const int best = std::max({dayOfMonth, month, weekOfMonth, weekdayInMonth, dayOfYear, weekOfYear});
        const bool useMonth =
            best != 0 && (best == month || best == dayOfMonth || best == weekOfMonth || best == weekdayInMonth);
        int monthValue = 0;
        if (useMonth && month != 0) {
            year += static_cast<int>(floorDivide(fields_[C::FieldMonth], 12));
            monthValue = modulo(fields_[C::FieldMonth], 12);
        }
        std::int64_t before = 365 * (std::int64_t(year) - 1) + floorDivide(year - 1, 4) + 1721423;
        if (gregorian)
            before += 2 - floorDivide(year - 1, 100) + floorDivide(year - 1, 400);
        if (useMonth)
            before += daysBefore(monthValue, isLeap(gregorian, year));

        if (best == 0)
            return before + 1;
        if (useMonth && (best == dayOfMonth || best == month))
            return before + (dayOfMonth != 0 ? fields_[C::FieldDayOfMonth] : 1);
        if (!useMonth && best == dayOfYear)
            return before + fields_[C::FieldDayOfYear];

        int first = G::julianDayToDayOfWeek(before + 1) - firstDayOfWeek_;
        if (first < 0)
            first += 7;
        const int place = isSet(C::FieldDayOfWeek) ? fields_[C::FieldDayOfWeek] - firstDayOfWeek_ : 0;
        std::int64_t date = 1 - first + place;
        if (useMonth && best != weekOfMonth) {
            if (date < 1)
                date += 7;
            const int ordinal = fields_[C::FieldDayOfWeekInMonth];
            if (ordinal >= 0)
                return before + date + 7 * (ordinal - 1);
            const int length = monthLength(modulo(fields_[C::FieldMonth], 12), year);
            return before + date + 7 * ((length - date) / 7 + ordinal + 1);
        }
        if (7 - first < minimalDays_)
            date += 7;
        return before + date + 7 * (fields_[useMonth ? C::FieldWeekOfMonth : C::FieldWeekOfYear] - 1);
    }

    tarn::TimeZone zone_;
    std::int64_t time_ = 0;
    bool isTimeSet_ = false, areFieldsSet_ = false, areAllFieldsSet_ = false, lenient_ = true;
    std::int64_t cutover_ = -12219292800000;
    int cutoverYear_ = 1582;
    int nextStamp_ = 2, firstDayOfWeek_ = 1, minimalDays_ = 1;
    std::array<int, C::FieldCount> fields_{}, stamps_{};
};
