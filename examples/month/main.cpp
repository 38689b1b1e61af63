// Prints a month as a calendar sheet with week numbers, and when the clocks change this year:
//
//   month                              this month, with weeks by ISO 8601
//   month 10 1582                      October 1582, where ten days are missing
//   month 2 4800 BC
//   month --first=sunday --minimal=1   weeks as counted in the United States
//   month --zone=-03:30                what the date is elsewhere (the system's zone unless given)

#include <tarn/BasicString.h>
#include <tarn/Exception.h>
#include <tarn/GregorianCalendar.h>
#include <tarn/TimeText.h>

#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

using tarn::Calendar;
using tarn::GregorianCalendar;

namespace {
const char* const months[] = {"January", "February", "March",     "April",   "May",      "June",
                              "July",    "August",   "September", "October", "November", "December"};
const char* const days[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

struct Options {
    int firstDay = GregorianCalendar::Monday;
    int minimalDays = 4;
    std::string zone;
    std::vector<std::string> words; ///< Month, year, "BC".
};

int numberIn(const std::string& text, int least, int greatest)
{
    std::size_t end = 0;
    int value = 0;
    try {
        value = std::stoi(text, &end);
    } catch (const std::exception&) {
    }
    if (end != text.size() || text.empty() || value < least || value > greatest)
        throw tarn::Exception("\"" + text + "\" is not a number from " + std::to_string(least) + " to " +
                              std::to_string(greatest));
    return value;
}

int weekdayNamed(const std::string& name)
{
    for (int day = 0; day < 7; ++day)
        if (tarn::BasicString<char>(days[day]).toLower() == tarn::BasicString<char>(name).toLower())
            return day + GregorianCalendar::Sunday;
    throw tarn::Exception("\"" + name + "\" is not the English name of a weekday");
}

Options readOptions(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto valueOf = [&](std::string_view name) { return word.substr(name.size()); };
        if (word.starts_with("--first="))
            options.firstDay = weekdayNamed(valueOf("--first="));
        else if (word.starts_with("--minimal="))
            options.minimalDays = numberIn(valueOf("--minimal="), 1, 7);
        else if (word.starts_with("--zone="))
            options.zone = valueOf("--zone=");
        else if (word.starts_with("--"))
            throw tarn::Exception("Unknown option " + word + "; there are --first=, --minimal= and --zone=");
        else
            options.words.push_back(word);
    }
    return options;
}

// "+01:00" as a zone: what a time of day with that offset lacks to UTC.
tarn::TimeZone zoneWithOffset(const std::string& offset)
{
    tarn::TimeZone zone;
    zone.SetStandardOffset(static_cast<int>(-tarn::parseISOTime(("1970-01-01T00:00" + offset).c_str())));
    return zone;
}

// Goes to the first of the month that the words name, or of the present one.
void goToMonth(GregorianCalendar& calendar, const std::vector<std::string>& words)
{
    const bool bc = !words.empty() && tarn::BasicString<char>(words.back()).toUpper() == "BC";
    const std::size_t numbers = words.size() - (bc ? 1 : 0);
    if (numbers > 2 || (bc && numbers < 2))
        throw tarn::Exception("Give a month (1 to 12), a year and perhaps BC");
    calendar.setTime(tarn::Time::now());
    calendar.set(Calendar::FieldDayOfMonth, 1);
    if (numbers > 0)
        calendar.set(Calendar::FieldMonth, numberIn(words[0], 1, 12) - 1);
    if (numbers > 1)
        calendar.set(Calendar::FieldYear, numberIn(words[1], 1, calendar.getLeastMaximum(Calendar::FieldYear)));
    if (bc)
        calendar.set(Calendar::FieldEra, GregorianCalendar::BC);
    calendar.set(Calendar::FieldHourOfDay, 12); // The day's middle exists on every day.
}

std::string dateText(const GregorianCalendar& calendar)
{
    return std::to_string(calendar.get(Calendar::FieldDayOfMonth)) + " " + months[calendar.get(Calendar::FieldMonth)] +
           " " + std::to_string(calendar.get(Calendar::FieldYear)) +
           (calendar.get(Calendar::FieldEra) == GregorianCalendar::BC ? " BC" : "");
}

void printSheet(GregorianCalendar calendar, const GregorianCalendar& today)
{
    const int month = calendar.get(Calendar::FieldMonth), firstDay = calendar.getFirstDayOfWeek();
    std::printf("%s %d%s\n\nWeek", months[month], calendar.get(Calendar::FieldYear),
                calendar.get(Calendar::FieldEra) == GregorianCalendar::BC ? " BC" : "");
    for (int i = 0; i < 7; ++i)
        std::printf(" %4.3s", days[(firstDay - 1 + i) % 7]);
    bool newRow = true;
    for (; calendar.get(Calendar::FieldMonth) == month; calendar.add(Calendar::FieldDayOfMonth, 1)) {
        const int column = (calendar.get(Calendar::FieldDayOfWeek) - firstDay + 7) % 7;
        if (newRow || column == 0)
            std::printf("\n%4d%*s", calendar.get(Calendar::FieldWeekOfYear), column * 5, "");
        newRow = false;
        const bool isToday = dateText(calendar) == dateText(today);
        const std::string day = std::to_string(calendar.get(Calendar::FieldDayOfMonth));
        std::printf(" %4s", (isToday ? "[" + day + "]" : day).c_str());
    }
    std::printf("\n\nToday is %s, in the week %d of %d.\n", dateText(today).c_str(),
                today.get(Calendar::FieldWeekOfYear), GregorianCalendar(today).getISOYear());
}

// Looks for the changes between daylight and standard time hour by hour, then to the millisecond.
void printTransitions(int year)
{
    const tarn::TimeZone zone = tarn::TimeZone::currentForYear(year);
    std::printf("\nThe system's zone in %d:", year);
    GregorianCalendar calendar(zone);
    calendar.Clear();
    calendar.set(year, GregorianCalendar::January, 1);
    std::int64_t last = calendar.getTime();
    calendar.add(Calendar::FieldYear, 1);
    const std::int64_t end = calendar.getTime();

    bool any = false;
    constexpr std::int64_t hour = 3600000;
    for (; last < end; last += hour) {
        if (zone.InDaylightTime(last) == zone.InDaylightTime(last + hour))
            continue;
        std::int64_t before = last, after = last + hour;
        while (after - before > 1) {
            const std::int64_t middle = before + (after - before) / 2;
            (zone.InDaylightTime(middle) == zone.InDaylightTime(before) ? before : after) = middle;
        }
        std::printf("\n  from %s to %s", tarn::formatISOTimeA(before, zone).c_str(),
                    tarn::formatISOTimeA(after, zone).c_str());
        any = true;
    }
    const std::string offset = tarn::formatISOTimeA(last, zone).substr(23);
    std::printf(any ? "\n" : " %s all year\n", offset == "Z" ? "UTC" : ("UTC" + offset).c_str());
}
} // namespace

int main(int argc, char** argv)
{
    try {
        const Options options = readOptions(argc, argv);
        GregorianCalendar today;
        today.setTime(tarn::Time::now());
        const int year = today.get(Calendar::FieldYear);
        today.SetTimeZone(options.zone.empty() ? tarn::TimeZone::currentForYear(year) : zoneWithOffset(options.zone));
        today.setFirstDayOfWeek(options.firstDay);
        today.setMinimalDaysInFirstWeek(options.minimalDays);
        today.setTime(today.getTime());

        GregorianCalendar calendar(today);
        goToMonth(calendar, options.words);
        printSheet(calendar, today);
        printTransitions(year);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "month: %s\n", e.what());
        return 1;
    }
    return 0;
}
