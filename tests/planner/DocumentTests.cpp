#include "Test.h"

#include <ScratchFolder.h>

#include "DocumentFile.h"
#include "Events.h"
#include "SafeFile.h"
#include "Text.h"

using namespace planner;

namespace {
Event eventNamed(const std::wstring& uid)
{
    Event event;
    event.uid = uid;
    event.subject = L"\u00C4 subject";
    event.category = L"Shared";
    event.note = L"two\nlines";
    event.zone = "Europe/Berlin";
    event.start = at("2026-03-28T23:30");
    event.end = at("2026-03-29T01:00");
    event.recurrence.emplace().frequency = Recurrence::weekly;
    event.recurrence->until = at("2026-05-01");
    event.exceptions = {at("2026-04-04T23:30")};
    return event;
}
} // namespace

TEST_CASE("Document: what is saved is loaded, with categories shared as before")
{
    const ScratchFolder folder;
    Document document;
    document.put(eventNamed(L"1"));
    document.put(eventNamed(L"2"));
    saveDocument(document, folder.file(L"a.planner"));
    const DocumentPtr loaded = loadDocument(folder.file(L"a.planner"));
    CHECK(loaded->events() == document.events());
    CHECK(loaded->appointments().at(0)->category() == loaded->appointments().at(1)->category());
    CHECK(loaded->categories().size() == 1);
}

TEST_CASE("Document: an appointment is found by its UID when others have gone")
{
    Document document;
    for (const wchar_t* uid : {L"1", L"2", L"3"})
        CHECK_FALSE(document.put(eventNamed(uid)));
    document.remove(document.appointments().front());
    Event changed = eventNamed(L"3");
    changed.subject = L"Changed";
    CHECK(document.put(changed));
    CHECK(document.events() == std::vector{eventNamed(L"2"), changed});
    CHECK_FALSE(document.put(eventNamed(L"1")));
}

TEST_CASE("Document: damage is noticed wherever it is")
{
    const ScratchFolder folder;
    Document document;
    document.put(eventNamed(L"1"));
    const std::wstring file = folder.file(L"a.planner");
    saveDocument(document, file);
    const std::string whole = readWholeFile(file);
    const auto expectRefused = [&](const std::string& content) {
        folder.write("a.planner", content);
        CHECK_THROWS_AS(loadDocument(file), Exception);
    };
    for (std::size_t length = 0; length < whole.size(); ++length)
        expectRefused(whole.substr(0, length));
    for (std::size_t i = 0; i < whole.size(); ++i)
        expectRefused(std::string(whole).replace(i, 1, 1, static_cast<char>(whole[i] ^ 0x10)));
    expectRefused(whole + "x");
    const auto refuses = [&](const std::string& content, const char* reason) {
        folder.write("a.planner", content);
        expectError<Exception>([&] { loadDocument(file); }, '"' + narrow(file) + "\" " + reason);
    };
    refuses("BEGIN:VCALENDAR", "is not a planner document");
    refuses(std::string(whole).replace(8, 1, 1, '\x02'), "has the version 2, which this program cannot read");
    refuses(std::string(whole).replace(40, 1, 1, '!'), "is damaged: the check-sum is wrong");
}

TEST_CASE("Document: what takes place on a day goes by the planner's clock")
{
    Document document;
    document.put(eventNamed(L"1"));
    const auto on = [&](const char* day, const char* zone) {
        return document.occurrences(dayOf(at(day)), dayOf(at(day)), Zone(zone)).size();
    };
    CHECK(on("2026-03-29", "Europe/Berlin") == 1); // It goes on after midnight.
    CHECK(on("2026-03-29", "UTC") == 0);           // 22:30 to midnight.
    CHECK(on("2026-04-12", "Asia/Tokyo") == 1);    // A Saturday's late evening in Berlin.
    CHECK(on("2026-04-11", "Asia/Tokyo") == 0);
    CHECK(on("2026-04-04", "Europe/Berlin") == 0); // Left out.
}

TEST_CASE("Zone: clocks change when the zone's rule says, to the millisecond")
{
    const auto local = [](const char* zone, const char* time) { return Zone(zone).toLocal(parseISOTime(time)); };
    CHECK(local("Europe/Berlin", "2026-03-29T00:59:59.999Z") == at("2026-03-29T01:59:59.999"));
    CHECK(local("Europe/Berlin", "2026-03-29T01:00:00.000Z") == at("2026-03-29T03:00:00.000"));
    CHECK(local("Europe/Berlin", "1969-07-01T00:00:00.000Z") == at("1969-07-01T01:00:00.000")); // No daylight time yet.
    for (const std::string& name : Zone::names())
        CHECK(Zone::isKnown(name));
    const auto instant = [](const char* time) { return Zone("Europe/Berlin").toTime(at(time)); };
    CHECK(instant("2026-03-29T02:30:00") == parseISOTime("2026-03-29T01:30:00Z")); // Left out.
    CHECK(instant("2026-10-25T02:00:00") == parseISOTime("2026-10-25T00:00:00Z")); // Shown twice.
    CHECK(instant("2026-10-25T03:00:00") == parseISOTime("2026-10-25T02:00:00Z"));
}
