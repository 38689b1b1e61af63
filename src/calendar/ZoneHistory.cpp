#include "ZoneHistory.h"

#include "Arithmetic.h"
#include "PlatformZone.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace tarn {
namespace {
// After so many years weekdays and leap years come round again.
constexpr int cycle = 400;
constexpr std::int64_t millisPerCycle = 146097 * millisPerDay;

int totalOf(const TimeZone::Offsets& offsets) { return offsets.standard + offsets.daylight; }

std::int64_t remainderOfCycle(std::int64_t millis)
{
    const std::int64_t remainder = millis % millisPerCycle;
    return remainder < 0 ? remainder + millisPerCycle : remainder;
}

// The first or last of the years for which the registry has rules of their own; none when it has the same for all.
std::optional<int> yearInTables(const DYNAMIC_TIME_ZONE_INFORMATION& zone, const wchar_t* name)
{
    const std::wstring key = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones\\" +
                             std::wstring(zone.TimeZoneKeyName) + L"\\Dynamic DST";
    DWORD year = 0, size = sizeof year;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, RRF_RT_REG_DWORD, nullptr, &year, &size) != ERROR_SUCCESS)
        return std::nullopt;
    return static_cast<int>(std::clamp<DWORD>(year, 1900, 2200)); // More would be damage.
}
} // namespace

// What the tables have for one year.
struct ZoneHistory::Year {
    explicit Year(const TIME_ZONE_INFORMATION& information)
        : start(information.DaylightDate), end(information.StandardDate),
          hasDaylight(start.wMonth != 0 && end.wMonth != 0)
    {
        const int outside = -static_cast<int>(information.Bias + information.StandardBias) * millisPerMinute;
        const int change =
            hasDaylight ? static_cast<int>(information.StandardBias - information.DaylightBias) * millisPerMinute : 0;
        // Where the tables take time off in winter, standard time is what they have for that.
        standard = {outside + std::min(change, 0), std::max(-change, 0)};
        daylight = {standard.standard, std::max(change, 0)};
    }

    Offsets standard{}, daylight{}; // As the tables call them.
    SYSTEMTIME start, end;
    bool hasDaylight;
};

ZoneHistory::ZoneHistory(const DYNAMIC_TIME_ZONE_INFORMATION& zone)
{
    // With a year more on either side: what the platform takes for the years outside is its affair.
    const int first = yearInTables(zone, L"FirstEntry").value_or(2000) - 1;
    const int last = std::max(first, yearInTables(zone, L"LastEntry").value_or(first)) + 1;
    std::vector<Year> years;
    for (int year = first; year <= last; ++year)
        years.emplace_back(zoneInformation(year, &zone));
    for (int year = first - cycle; year <= last + cycle; ++year)
        append(year, years[static_cast<std::size_t>(std::clamp(year, first, last) - first)]);
    const Year& latest = years.back();
    latest_ = {latest.standard.standard, std::max(latest.standard.daylight, latest.daylight.daylight)};
    constexpr std::int64_t clocksApart = 2 * millisPerDay; // At most.
    begin_ = newYear(first - cycle) + clocksApart;
    end_ = newYear(last + cycle) + clocksApart;
}

// A transition at the year's very beginning says that the year begins so, and one in its last millisecond that it
// ends so: they are none. The year begins by the clocks of the one before.
void ZoneHistory::append(int year, const Year& rules)
{
    const std::int64_t begin = newYear(year), end = newYear(year + 1) - 1;
    const std::int64_t localStart = transitionIn(year, rules.start), localEnd = transitionIn(year, rules.end);
    const bool beginsInDaylight =
        rules.hasDaylight && (localStart <= begin || (localEnd > begin && localEnd < localStart));
    const Offsets& first = beginsInDaylight ? rules.daylight : rules.standard;
    change(begin - totalOf(periods_.empty() ? first : periods_.back().offsets), first);
    if (!rules.hasDaylight)
        return;
    const auto startDaylight = [&] {
        if (localStart > begin && localStart < end)
            change(localStart - totalOf(rules.standard), rules.daylight);
    };
    if (!beginsInDaylight)
        startDaylight();
    if (localEnd > begin && localEnd < end)
        change(localEnd - totalOf(rules.daylight), rules.standard);
    if (beginsInDaylight)
        startDaylight();
}

void ZoneHistory::change(std::int64_t time, const Offsets& offsets)
{
    if (periods_.empty() || (offsets != periods_.back().offsets && time > periods_.back().begin))
        periods_.push_back({time, offsets});
    else
        periods_.back().offsets = offsets;
}

const ZoneHistory& ZoneHistory::of(const DYNAMIC_TIME_ZONE_INFORMATION& zone)
{
    // Never freed: zones refer to them without being counted.
    static auto& known = *new std::map<std::wstring, std::unique_ptr<const ZoneHistory>>;
    static std::mutex mutex;
    const std::wstring name = zone.TimeZoneKeyName + std::wstring(zone.DynamicDaylightTimeDisabled ? 1 : 0, L'\\');
    const std::lock_guard lock(mutex);
    auto& history = known[name];
    if (!history)
        history.reset(new ZoneHistory(zone));
    return *history;
}

ZoneHistory::Offsets ZoneHistory::at(std::int64_t time) const
{
    static const std::int64_t firstDaylight = newYear(1);
    if (time < firstDaylight)
        return {periods_.front().offsets.standard, 0};
    if (time < begin_)
        time = begin_ + remainderOfCycle(time - begin_);
    else if (time >= end_)
        time = end_ - millisPerCycle + remainderOfCycle(time - end_);
    const auto next = std::ranges::upper_bound(periods_, time, {}, &Period::begin);
    return next == periods_.begin() ? next->offsets : std::prev(next)->offsets;
}

// Clocks are not changed twice in two days, and never by more than one.
TimeZone::Instants ZoneHistory::instantsOf(std::int64_t local) const
{
    const std::int64_t before = wrappingSubtract(local, totalOf(at(wrappingSubtract(local, millisPerDay))));
    const std::int64_t after = wrappingSubtract(local, totalOf(at(wrappingAdd(local, millisPerDay))));
    const auto isShownAt = [&](std::int64_t time) { return wrappingAdd(time, totalOf(at(time))) == local; };
    return instantsAmong(before, isShownAt(before), after, before != after && isShownAt(after));
}
} // namespace tarn
