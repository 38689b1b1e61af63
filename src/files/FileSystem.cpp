#include <tarn/FileSystem.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "DeleteTree.h"
#include "FoundEntries.h"
#include "LongPath.h"
#include "OpenShared.h"

#include <optional>

// What is asked and changed; FileCopy.cpp has what copies and removes.

namespace tarn {
namespace {
using Path = BasicString<wchar_t>;

std::optional<DWORD> attributesIfThere(const wchar_t* path) noexcept
{
    try {
        const DWORD attributes = GetFileAttributesW(longPath(path).c_str());
        return attributes == INVALID_FILE_ATTRIBUTES ? std::nullopt : std::optional(attributes);
    } catch (...) { // What names nothing.
        return std::nullopt;
    }
}
} // namespace

bool FileSystem::exists(const wchar_t* path) noexcept { return attributesIfThere(path).has_value(); }

bool FileSystem::isFolder(const wchar_t* path) noexcept
{
    return (attributesIfThere(path).value_or(0) & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool FileSystem::isFile(const wchar_t* path) noexcept
{
    return !(attributesIfThere(path).value_or(FILE_ATTRIBUTE_DIRECTORY) & FILE_ATTRIBUTE_DIRECTORY);
}

FolderEntry FileSystem::getEntry(const wchar_t* path)
{
    const Path opened = longPath(path);
    FolderEntry entry;
    WIN32_FIND_DATAW data{};
    WIN32_FILE_ATTRIBUTE_DATA attributes{};
    ensure(GetFileAttributesExW(opened.c_str(), GetFileExInfoStandard, &attributes),
           [&] { return "Can't get attributes of " + quoted(path); });
    data.dwFileAttributes = attributes.dwFileAttributes;
    data.ftCreationTime = attributes.ftCreationTime;
    data.ftLastAccessTime = attributes.ftLastAccessTime;
    data.ftLastWriteTime = attributes.ftLastWriteTime;
    data.nFileSizeHigh = attributes.nFileSizeHigh;
    data.nFileSizeLow = attributes.nFileSizeLow;
    if (attributes.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) // Only a search tells what kind it is.
        FindClose(FindFirstFileExW(opened.c_str(), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr, 0));
    fillIn(entry, data);
    entry.path = path;
    const Path bare = withoutSeparator(opened);
    entry.name = bare.substr(bare.find_last_of(L'\\') + 1);
    return entry;
}

void FileSystem::setAttributes(const wchar_t* path, unsigned long attributes)
{
    ensure(SetFileAttributesW(longPath(path).c_str(), attributes),
           [&] { return "Can't set attributes of " + quoted(path); });
}

namespace {
void setTimesOf(const wchar_t* path, const FILETIME* creation, const FILETIME* lastAccess, const FILETIME* lastWrite)
{
    const auto failed = [&] { return "Can't set times of " + quoted(path); };
    const FreshHandle file = openShared(longPath(path), FILE_WRITE_ATTRIBUTES, failed);
    ensure(SetFileTime(file.get(), creation, lastAccess, lastWrite), failed);
}
} // namespace

void FileSystem::setTimes(const wchar_t* path, Time creation, Time lastAccess, Time lastWrite)
{
    const FILETIME times[] = {creation.toFileTime(), lastAccess.toFileTime(), lastWrite.toFileTime()};
    setTimesOf(path, &times[0], &times[1], &times[2]);
}

void FileSystem::setLastWriteTime(const wchar_t* path, Time time)
{
    const FILETIME fileTime = time.toFileTime();
    setTimesOf(path, nullptr, nullptr, &fileTime);
}

void FileSystem::createFolder(const wchar_t* path)
{
    const Path folder = longPath(path);
    if (CreateDirectoryW(folder.c_str(), nullptr))
        return;
    if (GetLastError() == ERROR_PATH_NOT_FOUND) {
        // Whether those above are there or cannot be made, the last one tells.
        for (std::size_t end = 4; (end = folder.find(L'\\', end)) != folder.npos; ++end)
            CreateDirectoryW(folder.substr(0, end).c_str(), nullptr);
        if (CreateDirectoryW(folder.c_str(), nullptr))
            return;
    }
    const DWORD error = GetLastError();
    if (!isFolder(path))
        throwError(WindowsError(error, "Can't create folder " + quoted(path)));
}
} // namespace tarn
