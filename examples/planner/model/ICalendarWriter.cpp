#include "ICalendar.h"

#include "ICalendarValues.h"
#include "Text.h"

#include <tarn/BasicString.h>

#include <cstdlib>

namespace planner {
namespace {
constexpr int firstYearOfRules = 1970;

std::string offsetText(int milliseconds)
{
    const int minutes = std::abs(milliseconds) / static_cast<int>(minuteLength);
    return tarn::BasicString<char>::fromFormat("%c%02d%02d", milliseconds < 0 ? '-' : '+', minutes / 60, minutes % 60);
}

class CalendarWriter {
public:
    explicit CalendarWriter(const Zone& zone) : zone_(zone), stamp_(writeTime(tarn::Time::now(), false) + 'Z') {}

    std::string write(const std::vector<Event>& events, const Progress& progress)
    {
        add("BEGIN:VCALENDAR");
        add("VERSION:2.0");
        add("PRODID:-//Tarn++//Planner//EN");
        std::set<std::string> zones;
        for (const Event& event : events)
            if (!event.allDay && event.zone != Zone::system && event.zone != "UTC")
                zones.insert(event.zone);
        for (const std::string& zone : zones)
            addZone(Zone(zone));
        for (std::size_t i = 0; i < events.size(); ++i) {
            addEvent(events[i]);
            if (progress)
                progress(i + 1, events.size());
        }
        add("END:VCALENDAR");
        return std::move(text_);
    }

private:
    void add(const std::string& line) { text_ += folded(line); }

    void addText(const char* name, const std::wstring& text)
    {
        if (!text.empty())
            add(std::string(name) + ':' + escaped(text));
    }

    static std::string timeOf(const char* name, const Event& event, Local local)
    {
        std::string line = name;
        if (event.allDay)
            return line + ";VALUE=DATE:" + writeTime(local, true);
        const bool isUTC = event.zone == "UTC";
        if (!isUTC && event.zone != Zone::system)
            line += ";TZID=" + event.zone;
        return line + ':' + writeTime(local, false) + (isUTC ? "Z" : "");
    }

    void addEvent(const Event& event)
    {
        add("BEGIN:VEVENT");
        addText("UID", event.uid);
        add("DTSTAMP:" + stamp_);
        add(timeOf("DTSTART", event, event.start));
        add(timeOf("DTEND", event, event.end));
        addText("SUMMARY", event.subject);
        addText("LOCATION", event.place);
        addText("DESCRIPTION", event.note);
        addText("CATEGORIES", event.category);
        if (event.recurrence)
            add("RRULE:" + writeRule(event, event.zone == Zone::system ? zone_ : Zone(event.zone)));
        for (const Local exception : event.exceptions)
            add(timeOf("EXDATE", event, exception));
        add("END:VEVENT");
    }

    void addZone(const Zone& zone)
    {
        const int year = Reckoning().dateOf(today(zone)).year;
        const tarn::TimeZone rules = zone.forYear(year);
        const int standard = rules.GetStandardOffset(), daylight = standard + rules.GetDSTOffset();
        add("BEGIN:VTIMEZONE");
        add("TZID:" + zone.name());
        if (!rules.UseDaylightTime())
            addObservance("STANDARD", standard, standard, 0, "");
        constexpr Local step = hourLength / 2; // No clock changes between.
        const Local end = midnightOf(Reckoning().firstOfMonth(year + 1, 0));
        for (Local at = midnightOf(Reckoning().firstOfMonth(year, 0)); at < end; at += step) {
            const bool isDaylight = rules.InDaylightTime(at);
            if (isDaylight && !rules.InDaylightTime(at - step))
                addChange("DAYLIGHT", standard, daylight, at);
            else if (!isDaylight && rules.InDaylightTime(at - step))
                addChange("STANDARD", daylight, standard, at);
        }
        add("END:VTIMEZONE");
    }

    // By the clock that was right until then. Such a rule begins with the first time that it names.
    void addChange(const char* kind, int offsetFrom, int offsetTo, const tarn::Time& change)
    {
        const Local local = change + offsetFrom;
        Reckoning weeks;
        const Date date = weeks.dateOf(dayOf(local));
        const bool isLast = weeks.dateOf(dayOf(local) + 7).month != date.month;
        const int week = isLast ? -1 : (date.day + 6) / 7;
        weeks.firstDayOfWeek = weeks.weekdayOf(dayOf(local));
        const Day last = isLast ? weeks.lastOfMonth(firstYearOfRules, date.month)
                                : weeks.firstOfMonth(firstYearOfRules, date.month) + 7 * week - 1;
        tarn::RecurrenceRule rule;
        rule.frequency = tarn::RecurrenceRule::Frequency::yearly;
        rule.byMonth = {static_cast<tarn::GregorianCalendar::Month>(date.month)};
        rule.byDay = {{static_cast<tarn::GregorianCalendar::DayOfWeek>(weeks.firstDayOfWeek), week}};
        addObservance(kind, offsetFrom, offsetTo, midnightOf(weeks.firstOfWeek(last)) + timeOfDay(local),
                      tarn::formatRecurrenceRuleA(rule));
    }

    void addObservance(const char* kind, int offsetFrom, int offsetTo, Local start, const std::string& rule)
    {
        add(std::string("BEGIN:") + kind);
        add("DTSTART:" + writeTime(start, false));
        if (!rule.empty())
            add("RRULE:" + rule);
        add("TZOFFSETFROM:" + offsetText(offsetFrom));
        add("TZOFFSETTO:" + offsetText(offsetTo));
        add(std::string("END:") + kind);
    }

    const Zone& zone_;
    std::string stamp_;
    std::string text_;
};
} // namespace

std::string writeICalendar(const std::vector<Event>& events, const Zone& zone, const Progress& progress)
{
    return CalendarWriter(zone).write(events, progress);
}
} // namespace planner
