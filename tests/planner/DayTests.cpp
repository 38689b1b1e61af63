#include "Test.h"

#include <ScratchKey.h>

#include "Events.h"
#include "Holidays.h"
#include "MonthContent.h"
#include "Settings.h"

using namespace planner;

TEST_CASE("Reckoning: the cutover decides which days there are")
{
    const Reckoning rome;
    Reckoning britain;
    britain.cutover = parseCutover(L"1752-09-14");
    const Day fourth = *rome.dayOf({1582, 9, 4});
    CHECK(rome.dateOf(fourth + 1) == Date{1582, 9, 15});
    CHECK_FALSE(rome.dayOf({1582, 9, 10}));
    CHECK(britain.dateOf(*britain.dayOf({1752, 8, 2}) + 1) == Date{1752, 8, 14});
    CHECK(MonthContent::of(Document(), rome, Zone("UTC"), fourth).missingBefore(fourth + 1) == 10);
    CHECK(rome.addMonths(*rome.dayOf({1582, 8, 10}), 1) == rome.cutover);
    CHECK(rome.dateOf(rome.addMonths(*rome.dayOf({1, 0, 31}), -1)) == Date{0, 11, 31});
}

TEST_CASE("Reckoning: a week that two years share has one number")
{
    const Reckoning iso, american{GregorianCalendar::Sunday, 4};
    const auto week = [](const Reckoning& reckoning, const Date& date) {
        return reckoning.weekOf(*reckoning.dayOf(date));
    };
    CHECK((week(iso, {1999, 11, 31}) == 52 && week(iso, {2000, 0, 1}) == 52));
    CHECK((week(iso, {2026, 11, 31}) == 53 && week(iso, {2027, 0, 3}) == 53));
    CHECK((week(american, {2000, 11, 31}) == 1 && week(american, {2001, 0, 1}) == 1));
}

TEST_CASE("Reckoning: what is typed in is read or refused with a reason")
{
    const Reckoning rome;
    CHECK(parseTimeOfDay(L"24:00") == dayLength);
    expectError<Exception>([&] { parseDay(L"1582-10-10", rome); }, "There is no 1582-10-10 in this calendar.");
    expectError<Exception>([&] { parseDay(L"4.10.1582", rome); },
                           "\"4.10.1582\" is not a date. Write it as 1582-10-04.");
    for (const wchar_t* text : {L"", L"25:00", L"9:60", L"9:3x", L"-1:00", L"24:01"})
        CHECK_THROWS_AS(parseTimeOfDay(text), Exception);
    for (const wchar_t* text : {L"1582-10-14", L"2000-01-01", L"soon"})
        CHECK_THROWS_AS(parseCutover(text), Exception);
}

TEST_CASE("Holidays: Easter goes by the calendar in use")
{
    const Reckoning rome;
    Reckoning russia;
    russia.cutover = parseCutover(L"1918-02-14");
    const auto easter = [](int year, const Reckoning& reckoning) {
        return reckoning.dateOf(*easterOf(year, reckoning));
    };
    CHECK(easter(1818, rome) == Date{1818, 2, 22}); // The earliest that there is.
    CHECK(easter(1582, rome) == Date{1582, 3, 15});
    CHECK(easter(1916, russia) == Date{1916, 3, 10});
}

TEST_CASE("Event: a repetition with an end takes place until its last start is taken out")
{
    Event event;
    event.start = event.end = at("2026-11-21T09:00");
    event.recurrence.emplace().count = 2;
    event.exceptions = times({"2026-11-21T09:00"});
    CHECK(event.takesPlace());
    event.exceptions.push_back(at("2026-11-22T09:00"));
    CHECK_FALSE(event.takesPlace());
    event.recurrence->count = 0;
    CHECK(event.takesPlace());
}

TEST_CASE("Settings: what is saved is loaded, and nonsense is ignored")
{
    const ScratchKey key;
    Settings settings;
    settings.reckoning = {1, 7, parseCutover(L"1752-09-14")};
    settings.zone = "Asia/Tokyo";
    settings.recentFile = L"C:\\\u00C4.planner";
    settings.save(key, L"Planner");
    const Settings loaded = Settings::load(key, L"Planner");
    CHECK(loaded.reckoning == settings.reckoning);
    CHECK(loaded.zone == settings.zone);
    CHECK(loaded.recentFile == settings.recentFile);

    key.store(L"Planner", L"FirstDayOfWeek", REG_DWORD, {8, 0, 0, 0});
    key.storeText(L"Planner", L"MinimalDaysInFirstWeek", L"4");
    key.storeText(L"Planner", L"Cutover", L"1500-01-01");
    key.storeText(L"Planner", L"Zone", L"Mars/Olympus");
    key.store(L"Planner", L"Placement", REG_BINARY, {1, 2, 3});
    const Settings damaged = Settings::load(key, L"Planner");
    CHECK(damaged.reckoning == Reckoning());
    CHECK(damaged.zone == Zone::system);
    CHECK_FALSE(damaged.placement);
}
