#include "ICalendarValues.h"

#include <tarn/Exception.h>
#include <tarn/TimeText.h>

#include <algorithm>
#include <cstdlib>

namespace planner {
namespace {
bool areDigits(std::string_view text)
{
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// "19971102T133000" as "1997-11-02T13:30:00", which the library reads and checks.
std::string withSeparators(const ContentLine& line, const std::string& value)
{
    const bool isDate = value.size() == 8;
    if ((!isDate && (value.size() != 15 || value[8] != 'T' || !areDigits(value.substr(9)))) ||
        !areDigits(value.substr(0, 8)))
        line.refuse(quoted(value) + " is not a date or a time");
    std::string text = value.substr(0, 4) + '-' + value.substr(4, 2) + '-' + value.substr(6, 2);
    if (!isDate)
        text += 'T' + value.substr(9, 2) + ':' + value.substr(11, 2) + ':' + value.substr(13, 2);
    return text;
}

std::string zoneOf(const ContentLine& line, bool isUTC)
{
    if (isUTC)
        return "UTC";
    const Parameter* const zone = line.find("TZID");
    return zone ? zone->values.front() : Zone::system;
}
} // namespace

CalendarTime readTime(const ContentLine& line, const std::string& value)
{
    const bool isUTC = value.ends_with('Z');
    const std::string text = withSeparators(line, value.substr(0, value.size() - isUTC));
    const bool isDate = text.size() == 10;
    const Parameter* const kind = line.find("VALUE");
    if ((kind && isDate != (kind->values.front() == "DATE")) || (isDate && isUTC))
        line.refuse(quoted(value) + " is not of the kind that the line says");
    try {
        return {tarn::parseISOTime(text.c_str()), isDate, isDate ? Zone::system : zoneOf(line, isUTC)};
    } catch (const tarn::Exception& e) {
        line.refuse(e.what());
    }
}

std::string writeTime(Local local, bool isDate)
{
    std::string text = tarn::formatISOTimeA(local);
    if (text.size() != std::string_view("0000-00-00T00:00:00.000Z").size())
        throw tarn::Exception("An iCalendar file cannot hold the date " + text);
    text.resize(isDate ? 10 : 19);
    std::erase_if(text, [](char c) { return c == '-' || c == ':'; });
    return text;
}

// P1W, or P1DT2H30M with any of the parts; a sign may stand before.
Duration readDuration(const ContentLine& line)
{
    std::string_view text = line.value;
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    Duration duration{0, 0};
    bool hasParts = false, isTime = false;
    const auto refuse = [&] { line.refuse(quoted(line.value) + " is not a duration"); };
    if (!text.starts_with('P'))
        refuse();
    for (text.remove_prefix(1); !text.empty(); hasParts = true) {
        if (!isTime && text.front() == 'T') {
            isTime = true;
            text.remove_prefix(1);
        }
        const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
        if (digits == 0 || digits > 6 || digits == text.size())
            refuse();
        const std::int64_t number = std::atol(std::string(text.substr(0, digits)).c_str());
        const char unit = text[digits];
        if (!isTime && (unit == 'D' || unit == 'W'))
            duration.days += number * (unit == 'W' ? 7 : 1);
        else if (isTime && (unit == 'H' || unit == 'M' || unit == 'S'))
            duration.time += number * (unit == 'H' ? hourLength : unit == 'M' ? minuteLength : 1000);
        else
            refuse();
        text.remove_prefix(digits + 1);
    }
    if (!hasParts || isNegative)
        refuse();
    return duration;
}
} // namespace planner
