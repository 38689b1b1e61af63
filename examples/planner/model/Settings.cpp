#include "Settings.h"

#include "Text.h"

#include <tarn/Exception.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>

namespace planner {
namespace {
// A value of another type is as good as none.
template <class Read> void tryTo(Read read)
{
    try {
        read();
    } catch (const std::exception&) {
    }
}

void readNumber(const tarn::RegistryKey& key, const wchar_t* name, int least, int greatest, int& value)
{
    tryTo([&] {
        const auto stored = static_cast<int>(key.getDWordValue(name));
        if (stored >= least && stored <= greatest)
            value = stored;
    });
}

// The cutover is stored as a date of the Gregorian calendar, which it begins.
void readCutover(const tarn::RegistryKey& key, Reckoning& reckoning)
{
    tryTo([&] { reckoning.cutover = parseCutover(key.getStringValue(L"Cutover")); });
}

void readPlacement(const tarn::RegistryKey& key, std::optional<WINDOWPLACEMENT>& placement)
{
    tryTo([&] {
        WINDOWPLACEMENT stored{};
        unsigned long size = sizeof stored, type = 0;
        const bool isThere = key.getValue(L"Placement", reinterpret_cast<unsigned char*>(&stored), size, type);
        if (isThere && type == REG_BINARY && size == sizeof stored && stored.length == sizeof stored)
            placement = stored;
    });
}
} // namespace

const wchar_t* const Settings::registryKey = L"Software\\Tarn++\\Examples\\Planner";

Settings Settings::load(HKEY parent, const wchar_t* subkey)
{
    Settings settings;
    tarn::RegistryKey key;
    if (!key.open(parent, subkey, KEY_READ))
        return settings;
    Reckoning& reckoning = settings.reckoning;
    readNumber(key, L"FirstDayOfWeek", tarn::GregorianCalendar::Sunday, tarn::GregorianCalendar::Saturday,
               reckoning.firstDayOfWeek);
    readNumber(key, L"MinimalDaysInFirstWeek", 1, 7, reckoning.minimalDaysInFirstWeek);
    readCutover(key, reckoning);
    tryTo([&] { settings.zone = Zone(narrow(key.getStringValue(L"Zone"))).name(); });
    tryTo([&] { settings.recentFile = key.getStringValue(L"RecentFile"); });
    readPlacement(key, settings.placement);
    return settings;
}

void Settings::save(HKEY parent, const wchar_t* subkey) const
{
    const auto key = tarn::RegistryKey::createOwned(parent, subkey, KEY_WRITE);
    key.setValue(L"FirstDayOfWeek", reckoning.firstDayOfWeek);
    key.setValue(L"MinimalDaysInFirstWeek", reckoning.minimalDaysInFirstWeek);
    key.setValue(L"Cutover", cutoverText(reckoning.cutover).c_str());
    key.setValue(L"Zone", widened(zone).c_str());
    key.setValue(L"RecentFile", recentFile.c_str());
    if (placement)
        key.setValue(L"Placement", reinterpret_cast<const unsigned char*>(&*placement), sizeof *placement, REG_BINARY);
}
} // namespace planner
