#include "Holidays.h"

using tarn::GregorianCalendar;

namespace planner {
namespace {
constexpr int firstEaster = 326, firstLabourDay = 1890;

// The day of the full moon and the Sunday after it, counted from 22 March: by the table of the Julian
// calendar, and with its two corrections of 1582.
int julianEaster(int year)
{
    const int moon = (19 * (year % 19) + 15) % 30;
    const int sunday = (2 * (year % 4) + 4 * (year % 7) - moon + 34) % 7;
    return moon + sunday;
}

int gregorianEaster(int year)
{
    const int golden = year % 19, century = year / 100;
    const int moon = (19 * golden + century - century / 4 - (century - (century + 8) / 25 + 1) / 3 + 15) % 30;
    const int weekday = (32 + 2 * (century % 4) + 2 * (year % 100 / 4) - moon - year % 100 % 4) % 7;
    return moon + weekday - 7 * ((golden + 11 * moon + 22 * weekday) / 451);
}
} // namespace

std::optional<Day> easterOf(int year, const Reckoning& reckoning)
{
    if (year < firstEaster)
        return std::nullopt;
    const auto earliest = reckoning.dayOf({year, GregorianCalendar::March, 22});
    if (!earliest)
        return std::nullopt; // The cutover took that spring's days away.
    return *earliest + (*earliest >= reckoning.cutover ? gregorianEaster(year) : julianEaster(year));
}

std::map<Day, const wchar_t*> holidaysOf(int year, const Reckoning& reckoning)
{
    std::map<Day, const wchar_t*> holidays;
    const auto add = [&](int month, int day, const wchar_t* name) {
        if (const auto date = reckoning.dayOf({year, month, day}))
            holidays.emplace(*date, name);
    };
    if (const auto easter = easterOf(year, reckoning)) {
        holidays = {{*easter - 2, L"Good Friday"},    {*easter, L"Easter Sunday"},    {*easter + 1, L"Easter Monday"},
                    {*easter + 39, L"Ascension Day"}, {*easter + 49, L"Whit Sunday"}, {*easter + 50, L"Whit Monday"}};
        add(GregorianCalendar::January, 1, L"New Year's Day");
        add(GregorianCalendar::January, 6, L"Epiphany");
        add(GregorianCalendar::November, 1, L"All Saints' Day");
        add(GregorianCalendar::December, 25, L"Christmas Day");
        add(GregorianCalendar::December, 26, L"St Stephen's Day");
    }
    if (year >= firstLabourDay)
        add(GregorianCalendar::May, 1, L"Labour Day");
    return holidays;
}
} // namespace planner
