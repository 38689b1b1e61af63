#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

namespace tarn {
/// The folders that programs need, wherever they are on this machine.
enum class KnownFolder {
    /// The user's data of programs, on this machine: make a folder of your own in it.
    localAppData,
    /// The user's data of programs, on every machine where the user signs in.
    roamingAppData,
    /// Data of programs for all users.
    programData,
    /// The user's own folder, and what is in it.
    ///@{
    profile,
    documents,
    downloads,
    desktop,
    pictures,
    ///@}
    /// The user's part of the start menu, and what starts when the user signs in.
    ///@{
    startMenuPrograms,
    startup,
    ///@}
    /// The user's temporary files.
    temporary,
    /// Programs with the width of this one.
    programFiles,
    /// The system's own.
    ///@{
    fonts,
    windows,
    system
    ///@}
};

/// The path of a folder, without a separator at its end. Throws WindowsError "Can't find known folder".
///@{
TARN_API BasicString<wchar_t> getKnownFolder(KnownFolder folder);
/// One of the platform's `FOLDERID_` identifiers.
TARN_API BasicString<wchar_t> getKnownFolder(const GUID& id);
///@}
} // namespace tarn
