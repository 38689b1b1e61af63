#include <tarn/TimeZone.h>
#include <tarn/Windows.h>

#include "../foundation/Check.h"
#include "PlatformZone.h"
#include "ZoneHistory.h"
#include "ZoneNames.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace tarn {
namespace {
template <class Ch> bool isEqual(std::string_view text, std::basic_string_view<Ch> name)
{
    return std::ranges::equal(text, name, {}, {}, [](Ch c) { return static_cast<wchar_t>(c); });
}

/// The name that Windows has for a zone; empty for one that has none but its own.
template <class Ch> std::string_view windowsNameOf(std::basic_string_view<Ch> name)
{
    for (const ZoneNames& zone : zoneNames) {
        std::string_view others = zone.others;
        for (std::size_t end = 0; (end = others.find(' ')) != others.npos; others.remove_prefix(end + 1))
            if (isEqual(others.substr(0, end), name))
                return zone.windows;
    }
    return {};
}

template <class Ch> DYNAMIC_TIME_ZONE_INFORMATION zoneOf(const Ch* text)
{
    const std::basic_string_view<Ch> name = text ? text : std::basic_string_view<Ch>();
    DYNAMIC_TIME_ZONE_INFORMATION zone{};
    if (const std::string_view windowsName = windowsNameOf(name); !windowsName.empty())
        std::ranges::copy(windowsName, zone.TimeZoneKeyName);
    else if (!name.empty() && name.size() < std::size(zone.TimeZoneKeyName))
        std::ranges::copy(name, zone.TimeZoneKeyName);
    else // Without a name the system takes what else the structure has, and with one that is too long a part of it.
        throwError(WindowsError(ERROR_FILE_NOT_FOUND, std::string(noInformationOf(text))));
    return zone;
}
} // namespace

TimeZone TimeZone::named(const char* name) { return TimeZone(ZoneHistory::of(zoneOf(name))); }
TimeZone TimeZone::named(const wchar_t* name) { return TimeZone(ZoneHistory::of(zoneOf(name))); }

TimeZone TimeZone::named(const char* name, int year)
{
    const DYNAMIC_TIME_ZONE_INFORMATION zone = zoneOf(name);
    return forYear(year, &zone);
}

TimeZone TimeZone::named(const wchar_t* name, int year)
{
    const DYNAMIC_TIME_ZONE_INFORMATION zone = zoneOf(name);
    return forYear(year, &zone);
}
} // namespace tarn
