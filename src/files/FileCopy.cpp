#include <tarn/FileSystem.h>

#include "../foundation/Check.h"
#include "../foundation/LastErrorKept.h"
#include "../foundation/Quoted.h"
#include "DeleteTree.h"
#include "LongPath.h"

#include <exception>
#include <utility>

// What copies, moves and removes.

namespace tarn {
namespace {
using Path = BasicString<wchar_t>;

bool goesOn(const FileOptions& options, const FileProgress& progress)
{
    return !options.onProgress || options.onProgress(progress);
}

// One file while the platform copies it.
struct Copying {
    const FileOptions& options;
    const wchar_t* path;
    bool ended = false;
    std::exception_ptr failure = nullptr; // Of the handler: it must not pass the platform's frames.

    static DWORD CALLBACK report(LARGE_INTEGER size, LARGE_INTEGER done, LARGE_INTEGER, LARGE_INTEGER, DWORD, DWORD,
                                 HANDLE, HANDLE, void* data)
    {
        Copying& copying = *static_cast<Copying*>(data);
        try {
            copying.ended = !goesOn(copying.options, {copying.path, static_cast<unsigned long long>(done.QuadPart),
                                                      static_cast<unsigned long long>(size.QuadPart)});
        } catch (...) {
            copying.failure = std::current_exception();
            copying.ended = true;
        }
        return copying.ended ? PROGRESS_CANCEL : PROGRESS_CONTINUE;
    }
};

bool copyFile(const Path& from, const Path& to, const FolderEntry& entry, const FileOptions& options)
{
    if (!goesOn(options, {entry.path.c_str(), 0, entry.size}))
        return false;
    Copying copying{options, entry.path.c_str()};
    const DWORD flags = COPY_FILE_COPY_SYMLINK | (options.replace ? 0 : COPY_FILE_FAIL_IF_EXISTS);
    const bool copied = CopyFileExW(from.c_str(), to.c_str(), options.onProgress ? &Copying::report : nullptr, &copying,
                                    nullptr, flags);
    const DWORD error = copied ? ERROR_SUCCESS : GetLastError();
    if (copying.failure)
        std::rethrow_exception(copying.failure);
    if (copying.ended)
        return false;
    if (!copied)
        throwError(WindowsError(error, "Can't copy " + quoted(entry.path.c_str())));
    return true;
}

void createTarget(const Path& folder, const FolderEntry& entry, bool mayBeThere)
{
    if (CreateDirectoryW(folder.c_str(), nullptr))
        return;
    const DWORD error = GetLastError();
    if (error != ERROR_ALREADY_EXISTS || !mayBeThere || !FileSystem::isFolder(folder.c_str()))
        throwError(WindowsError(error, "Can't copy " + quoted(entry.path.c_str())));
}

bool isInside(const Path& path, const Path& folder)
{
    const int length = static_cast<int>(folder.size());
    return path.size() >= folder.size() &&
           ensure(CompareStringOrdinal(path.c_str(), length, folder.c_str(), length, TRUE), "Can't compare paths") ==
               CSTR_EQUAL &&
           (path.size() == folder.size() || path[folder.size()] == L'\\');
}

bool copyFolder(const wchar_t* from, const Path& longFrom, const Path& longTo, const FolderEntry& top,
                const FileOptions& options)
{
    if (isInside(longTo, longFrom))
        throwError(WindowsError(ERROR_INVALID_PARAMETER, "Can't copy " + quoted(from)));
    FolderWalk walk(from, WalkOptions{.recursive = true}); // Before there is anything of the copy.
    if (!goesOn(options, {from}))
        return false;
    createTarget(longTo, top, options.replace);
    const std::size_t prefix = withoutSeparator(from).size() + 1; // Of the paths that the walk shows.
    while (walk.next()) {
        const FolderEntry& entry = walk.getEntry();
        const Path target = longTo + L'\\' + entry.path.substr(prefix);
        if (!entry.isFolder()) {
            if (!copyFile(longFrom + L'\\' + entry.path.substr(prefix), target, entry, options))
                return false;
        } else if (!entry.isLink) {
            if (!goesOn(options, {entry.path.c_str()}))
                return false;
            createTarget(target, entry, options.replace);
        }
    }
    return true;
}

bool deleteOne(const Path& path, DWORD attributes)
{
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str());
}

void removeOne(const wchar_t* path, const Path& opened, DWORD attributes)
{
    if (deleteOne(opened, attributes))
        return;
    if (attributes & FILE_ATTRIBUTE_READONLY) {
        SetFileAttributesW(opened.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
        if (deleteOne(opened, attributes))
            return;
        const LastErrorKept kept;
        SetFileAttributesW(opened.c_str(), attributes);
    }
    throwLastError([&] { return "Can't remove " + quoted(path); });
}
} // namespace

bool FileSystem::copy(const wchar_t* from, const wchar_t* to, const FileOptions& options)
{
    const Path longFrom = withoutSeparator(longPath(from)), longTo = withoutSeparator(longPath(to));
    const FolderEntry entry = getEntry(from);
    if (!entry.isFolder())
        return copyFile(longFrom, longTo, entry, options);
    return copyFolder(from, longFrom, longTo, entry, options);
}

bool FileSystem::move(const wchar_t* from, const wchar_t* to, const FileOptions& options)
{
    const Path longFrom = longPath(from), longTo = longPath(to);
    if (!goesOn(options, {from}))
        return false;
    if (MoveFileExW(longFrom.c_str(), longTo.c_str(), options.replace ? MOVEFILE_REPLACE_EXISTING : 0))
        return true;
    if (GetLastError() != ERROR_NOT_SAME_DEVICE)
        throwLastError([&] { return "Can't move " + quoted(from); });
    return copy(from, to, options) && remove(from);
}

bool FileSystem::remove(const wchar_t* path, const FileOptions& options)
{
    const Path opened = longPath(path);
    const DWORD attributes = GetFileAttributesW(opened.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        if (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND)
            return true;
        throwLastError([&] { return "Can't remove " + quoted(path); });
    }
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY) || getEntry(path).isLink) {
        if (!goesOn(options, {path}))
            return false;
        removeOne(path, opened, attributes);
        return true;
    }
    DeletionFailure failure;
    if (!deleteTree(path, failure,
                    [&](const wchar_t* inside) { return goesOn(options, {withoutPrefix(inside).c_str()}); }))
        return false;
    if (GetFileAttributesW(opened.c_str()) == INVALID_FILE_ATTRIBUTES)
        return true;
    if (failure.error == ERROR_SUCCESS) // Somebody has put something into it meanwhile.
        failure = {path, ERROR_DIR_NOT_EMPTY};
    throwError(WindowsError(failure.error, "Can't remove " + quoted(withoutPrefix(failure.path).c_str())));
}
} // namespace tarn
