#include "ICalendar.h"

#include "ICalendarValues.h"
#include "Text.h"

#include <tarn/BasicString.h>
#include <tarn/Exception.h>

#include <algorithm>
#include <optional>

namespace planner {
namespace {
// What says nothing that the planner would keep or show.
const std::set<std::string> administrative = {"DTSTAMP", "CREATED", "LAST-MODIFIED", "SEQUENCE",
                                              "PRODID",  "VERSION", "CALSCALE",      "X-WR-CALNAME"};
const std::set<std::string> understood = {"UID",     "SUMMARY", "LOCATION", "DESCRIPTION", "CATEGORIES",
                                          "DTSTART", "DTEND",   "DURATION", "RRULE"};

constexpr std::size_t mostRemarks = 20; // More would not fit on a screen.

/// The lines of one VEVENT, made into an Event when all are there.
class EventLines {
public:
    EventLines(int number, const Zone& zone, ImportedCalendar& calendar)
        : number_(number), zone_(zone), calendar_(calendar)
    {
    }

    void add(const ContentLine& line)
    {
        if (line.name == "EXDATE")
            exceptions_.push_back(line);
        else if (understood.contains(line.name) && lines_.emplace(line.name, line).second)
            return;
        else if (line.name == "RECURRENCE-ID")
            isChangedOccurrence_ = true;
        else if (understood.contains(line.name) && line.name != "CATEGORIES" && line.name != "RRULE")
            line.refuse("a second " + line.name);
        else if (!administrative.contains(line.name))
            ++calendar_.notUnderstood["the property " + line.name];
    }

    void finish()
    {
        // Its UID is that of the whole series, which it must not replace.
        if (isChangedOccurrence_) {
            ++calendar_.notUnderstood["a single day of a series that differs (RECURRENCE-ID)"];
            return;
        }
        Event event;
        event.uid = unescaped(required("UID"));
        event.subject = text("SUMMARY");
        if (event.subject.empty())
            event.subject = L"(no subject)";
        event.place = text("LOCATION");
        event.note = text("DESCRIPTION");
        setCategory(event);
        setTimes(event);
        try {
            event.validate();
        } catch (const tarn::Exception& e) {
            required("DTSTART").refuse(e.what());
        }
        calendar_.events.push_back(std::move(event));
    }

private:
    const ContentLine* find(const std::string& name) const
    {
        const auto found = lines_.find(name);
        return found == lines_.end() ? nullptr : &found->second;
    }

    const ContentLine& required(const std::string& name) const
    {
        const ContentLine* const line = find(name);
        if (!line || line->value.empty())
            ContentLine{"", {}, "", number_}.refuse("the event that begins here has no " + name);
        return *line;
    }

    std::wstring text(const std::string& name) const
    {
        const ContentLine* const line = find(name);
        return line ? unescaped(*line) : std::wstring();
    }

    // A comma that is no part of a name separates several, of which the first one counts.
    void setCategory(Event& event) const
    {
        const ContentLine* const line = find("CATEGORIES");
        if (!line)
            return;
        ContentLine first = *line;
        for (std::size_t i = 0; i < first.value.size(); ++i) {
            if (first.value[i] == '\\')
                ++i;
            else if (first.value[i] == ',')
                first.value.resize(i);
        }
        if (first.value.size() != line->value.size())
            ++calendar_.notUnderstood["a second category"];
        event.category = unescaped(first);
    }

    void setTimes(Event& event) const
    {
        const ContentLine& startLine = required("DTSTART");
        const CalendarTime start = withKnownZone(readTime(startLine, startLine.value));
        event.start = start.local;
        event.allDay = start.isDate;
        event.zone = start.zone;
        event.end = endOf(start);
        if (event.end < event.start)
            startLine.refuse("the event ends before it begins");
        if (event.allDay && event.end == event.start)
            event.end += dayLength;
        if (const ContentLine* const line = find("RRULE")) {
            event.recurrence = readRule(*line, start, clockOf(start));
            if (!event.recurrence)
                ++calendar_.notUnderstood["a rule of repetition (only the first day is there)"];
        }
        setExceptions(event, start);
    }

    Local endOf(const CalendarTime& start) const
    {
        const ContentLine *const endLine = find("DTEND"), *const durationLine = find("DURATION");
        if (endLine && durationLine)
            durationLine->refuse("the event has both DTEND and DURATION");
        if (endLine) {
            const CalendarTime end = withKnownZone(readTime(*endLine, endLine->value));
            if (end.isDate != start.isDate)
                endLine->refuse("start and end are not of the same kind");
            return byClockOf(start, end);
        }
        if (!durationLine)
            return start.isDate ? start.local + dayLength : start.local;
        const Duration duration = readDuration(*durationLine);
        if (start.isDate && duration.time != 0)
            durationLine->refuse("an all-day event lasts whole days");
        const Local end = start.local + duration.days * dayLength;
        if (duration.time == 0)
            return end;
        const Zone clock = clockOf(start);
        return clock.toLocal(tarn::Time(clock.toTime(end) + duration.time));
    }

    void setExceptions(Event& event, const CalendarTime& start) const
    {
        for (const ContentLine& line : exceptions_)
            for (const std::string& value : split(line.value, ','))
                addException(event, start, withKnownZone(readTime(line, value)));
    }

    void addException(Event& event, const CalendarTime& start, const CalendarTime& exception) const
    {
        if (exception.isDate == start.isDate)
            event.exceptions.push_back(byClockOf(start, exception));
        else
            ++calendar_.notUnderstood["an EXDATE of another kind than its event"];
    }

    // A zone that is not known counts as the planner's.
    CalendarTime withKnownZone(CalendarTime time) const
    {
        if (time.zone == "Etc/UTC" || time.zone == "GMT")
            time.zone = "UTC";
        if (!Zone::isKnown(time.zone)) {
            calendar_.unknownZones.insert(time.zone);
            time.zone = Zone::system;
        }
        return time;
    }

    Zone clockOf(const CalendarTime& time) const { return time.zone == Zone::system ? zone_ : Zone(time.zone); }

    Local byClockOf(const CalendarTime& wanted, const CalendarTime& time) const
    {
        if (time.isDate || time.zone == wanted.zone)
            return time.local;
        return clockOf(wanted).toLocal(clockOf(time).toTime(time.local));
    }

    int number_;
    const Zone& zone_;
    ImportedCalendar& calendar_;
    std::map<std::string, ContentLine> lines_;
    std::vector<ContentLine> exceptions_;
    bool isChangedOccurrence_ = false;
};

/// Follows the components into each other.
class CalendarReader {
public:
    CalendarReader(std::string_view text, const Zone& zone) : lines_(text), size_(text.size()), zone_(zone) {}

    ImportedCalendar read(const Progress& progress)
    {
        while (readLine())
            if (progress)
                progress(lines_.position(), size_);
        ContentLine end;
        end.number = std::max(lines_.lineNumber(), 1);
        if (!hasBegun_)
            end.refuse("the file is empty");
        if (!open_.empty())
            leaveOut([&] { end.refuse("the file ends inside of " + open_.back()); });
        return std::move(calendar_);
    }

private:
    // A line that cannot be read takes the event with it that it is in, and nothing else. What does not begin as a
    // calendar is none.
    bool readLine()
    {
        bool isThere = true;
        const auto readNext = [&] {
            ContentLine line;
            isThere = lines_.next(line);
            if (isThere)
                take(line);
        };
        if (hasBegun_)
            leaveOut(readNext);
        else
            readNext();
        hasBegun_ = hasBegun_ || isThere;
        return isThere;
    }

    template <class Read> void leaveOut(Read read)
    {
        try {
            read();
        } catch (const tarn::Exception& e) {
            calendar_.leftOut.push_back(e.what());
            isSpoiled_ = true;
        }
    }

    void take(ContentLine& line)
    {
        if (line.name == "BEGIN" || line.name == "END")
            line.value = tarn::BasicString<char>(line.value).toUpper();
        if (line.name == "BEGIN")
            begin(line);
        else if (open_.empty())
            line.refuse("BEGIN:VCALENDAR is missing");
        else if (line.name == "END")
            end(line);
        else if (event_ && open_.back() == "VEVENT")
            event_->add(line);
        else if (open_.size() == 1 && !administrative.contains(line.name))
            ++calendar_.notUnderstood["the property " + line.name];
    }

    void begin(const ContentLine& line)
    {
        if (open_.empty() != (line.value == "VCALENDAR"))
            line.refuse(open_.empty() ? "BEGIN:VCALENDAR is missing" : "a calendar inside of " + open_.back());
        const bool isInCalendar = open_.size() == 1;
        if (isInCalendar && line.value == "VEVENT") {
            event_.emplace(line.number, zone_, calendar_);
            isSpoiled_ = false;
        } else if (line.value != "VCALENDAR" && (event_ || isInCalendar) && line.value != "VTIMEZONE") {
            ++calendar_.notUnderstood["the component " + line.value];
        }
        open_.push_back(line.value);
    }

    void end(const ContentLine& line)
    {
        const auto opened = std::find(open_.rbegin(), open_.rend(), line.value);
        if (opened == open_.rend())
            line.refuse("END:" + line.value + " without its BEGIN");
        const bool isMissing = opened != open_.rbegin();
        const std::string innermost = open_.back();
        open_.erase(opened.base() - 1, open_.end());
        if (event_ && open_.size() <= 1) {
            EventLines event = std::move(*event_);
            event_.reset();
            if (!isMissing && !isSpoiled_)
                event.finish();
        }
        if (isMissing)
            line.refuse("END:" + line.value + " inside of " + innermost);
    }

    ContentLineReader lines_;
    std::size_t size_;
    const Zone& zone_;
    ImportedCalendar calendar_;
    std::vector<std::string> open_;
    std::optional<EventLines> event_;
    bool isSpoiled_ = false; // The event has a line that could not be read.
    bool hasBegun_ = false;
};
} // namespace

std::wstring ImportedCalendar::remarks() const
{
    std::vector<std::wstring> all;
    for (const std::string& reason : leftOut)
        all.push_back(L"Left out: " + widened(reason) + L'\n');
    for (const auto& [what, count] : notUnderstood) {
        std::wstring remark = L"Not understood: " + shortened(fromUTF8(what), 60);
        if (count != 1)
            remark += L", " + std::to_wstring(count) + L" times";
        all.push_back(remark + L".\n");
    }
    for (const std::string& zone : unknownZones)
        all.push_back(L"The time zone " + fromUTF8(quoted(zone)) +
                      L" is not known: its times are taken as those of your zone.\n");
    const std::size_t shown = all.size() <= mostRemarks ? all.size() : mostRemarks - 1;
    std::wstring text;
    for (std::size_t i = 0; i < shown; ++i)
        text += all[i];
    if (shown < all.size())
        text += L"And " + std::to_wstring(all.size() - shown) + L" more.\n";
    return text;
}

ImportedCalendar readICalendar(std::string_view text, const Zone& zone, const Progress& progress)
{
    return CalendarReader(text, zone).read(progress);
}
} // namespace planner
