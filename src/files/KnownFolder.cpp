#include <tarn/KnownFolder.h>

#include "../foundation/Check.h"
#include "../foundation/TaskMemory.h"
#include "LongPath.h"

#include <knownfolders.h>
#include <shlobj.h>

namespace tarn {
namespace {
constexpr const char* notFound = "Can't find known folder";

BasicString<wchar_t> temporaryFolder()
{
    wchar_t path[MAX_PATH + 1] = L"";
    ensure(GetTempPathW(MAX_PATH + 1, path), notFound);
    return withoutSeparator(path);
}
} // namespace

BasicString<wchar_t> getKnownFolder(KnownFolder folder)
{
    switch (folder) {
    case KnownFolder::localAppData:
        return getKnownFolder(FOLDERID_LocalAppData);
    case KnownFolder::roamingAppData:
        return getKnownFolder(FOLDERID_RoamingAppData);
    case KnownFolder::programData:
        return getKnownFolder(FOLDERID_ProgramData);
    case KnownFolder::profile:
        return getKnownFolder(FOLDERID_Profile);
    case KnownFolder::documents:
        return getKnownFolder(FOLDERID_Documents);
    case KnownFolder::downloads:
        return getKnownFolder(FOLDERID_Downloads);
    case KnownFolder::desktop:
        return getKnownFolder(FOLDERID_Desktop);
    case KnownFolder::pictures:
        return getKnownFolder(FOLDERID_Pictures);
    case KnownFolder::startMenuPrograms:
        return getKnownFolder(FOLDERID_Programs);
    case KnownFolder::startup:
        return getKnownFolder(FOLDERID_Startup);
    case KnownFolder::temporary:
        return temporaryFolder();
    case KnownFolder::programFiles:
        return getKnownFolder(FOLDERID_ProgramFiles);
    case KnownFolder::fonts:
        return getKnownFolder(FOLDERID_Fonts);
    case KnownFolder::windows:
        return getKnownFolder(FOLDERID_Windows);
    case KnownFolder::system:
        return getKnownFolder(FOLDERID_System);
    }
    throwWindowsError(ERROR_INVALID_PARAMETER, notFound);
}

BasicString<wchar_t> getKnownFolder(const GUID& id)
{
    wchar_t* path = nullptr;
    const HRESULT result = SHGetKnownFolderPath(id, 0, nullptr, &path);
    const TaskText owned(path);
    if (FAILED(result)) // Of the platform's errors, and so with the code that lies in it.
        throwWindowsError(
            static_cast<unsigned long>(HRESULT_FACILITY(result) == FACILITY_WIN32 ? HRESULT_CODE(result) : result),
            notFound);
    return path;
}
} // namespace tarn
