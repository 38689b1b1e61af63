#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/FolderWalk.h>
#include <tarn/Time.h>

#include <functional>

namespace tarn {
/// How far a FileSystem operation has come.
struct FileProgress {
    /// The file or folder at hand.
    const wchar_t* path = nullptr;
    /// Of this file, in bytes; 0 and 0 where nothing is copied.
    ///@{
    unsigned long long done = 0;
    unsigned long long size = 0;
    ///@}
};

/// How to copy, move or remove.
struct FileOptions {
    /// Files that are there already are replaced, where they would be an error. Folders are filled up.
    bool replace = false;
    /// Called before and while each file and folder is dealt with, on the thread that called; false ends the work.
    /// An exception ends it, too, and is passed on.
    std::function<bool(const FileProgress&)> onProgress = {};
};

/// What is done with files and folders by their names. Names may be of any length, and a
/// `std::filesystem::path` is passed by its `c_str()`. Failures throw WindowsError with the path in the text.
class TARN_API FileSystem {
public:
    FileSystem() = delete;

    /// Without an exception: false when there is none, and when it cannot be known. A link is what it leads to.
    ///@{
    static bool exists(const wchar_t* path) noexcept;
    static bool isFolder(const wchar_t* path) noexcept;
    static bool isFile(const wchar_t* path) noexcept;
    ///@}

    /// What a FolderWalk would tell of it, with the depth 0. Throws "Can't get attributes of "PATH"".
    static FolderEntry getEntry(const wchar_t* path);
    /// A set of the platform's `FILE_ATTRIBUTE_` bits. Throws "Can't set attributes of "PATH"".
    static void setAttributes(const wchar_t* path, unsigned long attributes);
    /// Of a file or folder. Throws "Can't set times of "PATH"", and as Time::toFileTime() does.
    ///@{
    static void setTimes(const wchar_t* path, Time creation, Time lastAccess, Time lastWrite);
    static void setLastWriteTime(const wchar_t* path, Time time);
    ///@}

    /// With those above it; one that is there is fine. Throws "Can't create folder "PATH"".
    static void createFolder(const wchar_t* path);

    /// Copies a file, or a folder with everything in it, under a new name; attributes and the time of the last write
    /// are kept. A link to a file is copied as a link, a link to a folder is left out. False when it was ended: what
    /// has been copied stays, but for the file at hand. Throws "Can't copy "PATH"", for a folder into itself, too, and
    /// as FolderWalk and createFolder() do.
    static bool copy(const wchar_t* from, const wchar_t* to, const FileOptions& options = {});
    /// Gives a file or folder a new name. On another drive it is copied, and removed when all was copied. False when
    /// it was ended; nothing has been removed then. Throws "Can't move "PATH"", and as copy() and remove() do.
    static bool move(const wchar_t* from, const wchar_t* to, const FileOptions& options = {});
    /// Deletes a file, or a folder with everything in it, also what is read-only; of a link the link. What is not there
    /// is no error. False when it was ended. Throws "Can't remove "PATH"" for what could not be deleted, when all else
    /// is.
    static bool remove(const wchar_t* path, const FileOptions& options = {});
};
} // namespace tarn
