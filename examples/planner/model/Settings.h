#pragma once

#include "Days.h"
#include "Zone.h"

#include <tarn/Windows.h>

#include <optional>
#include <string>

namespace planner {
/// What the program remembers of its user, in a key of the registry.
struct Settings {
    static const wchar_t* const registryKey; ///< The program's own, below `HKEY_CURRENT_USER`.

    Reckoning reckoning;
    std::string zone = Zone::system;
    std::wstring recentFile;
    std::optional<WINDOWPLACEMENT> placement; ///< Of the program's window.

    /// What is missing, or has a value that makes no sense, is as in new settings.
    static Settings load(HKEY parent, const wchar_t* subkey);
    void save(HKEY parent, const wchar_t* subkey) const;
};
} // namespace planner
