#include "Events.h"

std::string calendarWith(const std::string& lines)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" + lines + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

planner::Event eventIn(const char* lines)
{
    return planner::readICalendar(calendarWith(std::string("UID:1\r\n") + lines), planner::Zone("Europe/Berlin"))
        .events.at(0);
}

std::vector<planner::Local> startsOf(const char* lines, const char* from, const char* to)
{
    return eventIn(lines).starts(at(from), at(to));
}
