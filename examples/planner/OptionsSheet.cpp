#include "OptionsSheet.h"

#include "Ids.h"
#include "Text.h"

#include <tarn/Exception.h>

#include <algorithm>

namespace planner {
namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);
constexpr const wchar_t* usersZone = L"The system's time zone";
// Where the Gregorian calendar began when.
constexpr const wchar_t* cutovers[] = {L"1582-10-15", L"1583-01-22", L"1700-03-01",
                                       L"1752-09-14", L"1918-02-14", L"1923-03-01"};
} // namespace

OptionsPage::OptionsPage(unsigned short resource, Settings& settings)
    : PropertyPage(resource, program), settings_(settings)
{
}

void OptionsPage::onCommand(tarn::Window* sender, unsigned short code, unsigned short id)
{
    if (code == CBN_SELCHANGE || code == CBN_EDITCHANGE)
        setChanged();
    PropertyPage::onCommand(sender, code, id);
}

bool OptionsPage::onApply()
{
    apply();
    applied();
    return false;
}

WeeksPage::WeeksPage(Settings& settings) : OptionsPage(PAGE_WEEKS, settings) {}

bool WeeksPage::onInitDialog(tarn::Window&)
{
    firstDay_.attach(*this, ID_FIRST_DAY);
    for (int weekday = tarn::GregorianCalendar::Sunday; weekday <= tarn::GregorianCalendar::Saturday; ++weekday)
        firstDay_.addString(weekdayName(weekday));
    firstDay_.setCurrentSelection(
        static_cast<unsigned>(settings_.reckoning.firstDayOfWeek - tarn::GregorianCalendar::Sunday));
    minimalDays_.attach(*this, ID_MINIMAL_DAYS);
    minimalDays_.addString(L"is that of 1 January");
    for (int days = 2; days <= 6; ++days)
        minimalDays_.addString((L"has at least " + std::to_wstring(days) + L" days").c_str());
    minimalDays_.addString(L"is the first whole week");
    minimalDays_.setCurrentSelection(static_cast<unsigned>(settings_.reckoning.minimalDaysInFirstWeek - 1));
    return true;
}

void WeeksPage::apply()
{
    settings_.reckoning.firstDayOfWeek = firstDay_.getCurrentSelection() + tarn::GregorianCalendar::Sunday;
    settings_.reckoning.minimalDaysInFirstWeek = minimalDays_.getCurrentSelection() + 1;
}

TimePage::TimePage(Settings& settings) : OptionsPage(PAGE_TIME, settings) {}

bool TimePage::onInitDialog(tarn::Window&)
{
    zone_.attach(*this, ID_ZONE);
    zone_.addString(usersZone);
    unsigned selected = 0;
    for (const std::string& name : Zone::names()) {
        const int index = zone_.addString(widened(name).c_str());
        if (name == settings_.zone)
            selected = static_cast<unsigned>(index);
    }
    zone_.setCurrentSelection(selected);
    cutover_.attach(*this, ID_CUTOVER);
    for (const wchar_t* cutover : cutovers)
        cutover_.addString(cutover);
    cutover_.setText(cutoverText(settings_.reckoning.cutover).c_str());
    return true;
}

// Asked before the page is left or the settings are taken: true stays here.
bool TimePage::onDeactivate()
{
    try {
        readCutover();
        setText(ID_HINT, L"");
        return false;
    } catch (const tarn::Exception& e) {
        setText(ID_HINT, tarn::whatW(e));
        cutover_.setFocus();
        return true;
    }
}

void TimePage::apply()
{
    const int zone = zone_.getCurrentSelection();
    settings_.zone = zone > 0 ? Zone::names()[static_cast<std::size_t>(zone - 1)] : Zone::system;
    settings_.reckoning.cutover = readCutover();
}

Day TimePage::readCutover() const { return parseCutover(trimmed(cutover_.getTextW())); }

OptionsSheet::OptionsSheet(HWND owner, Settings& settings, const std::function<void()>& applied)
    : sheet_(owner, TEXT_OPTIONS, 0, program), weeks_(settings), time_(settings)
{
    weeks_.applied = time_.applied = applied;
    sheet_.addPage(&weeks_);
    sheet_.addPage(&time_);
}
} // namespace planner
