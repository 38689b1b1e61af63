#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Time.h>

#include <cstddef>
#include <iterator>
#include <memory>

namespace tarn {
/// What is known of a file or folder without opening it.
struct FolderEntry {
    /// The name alone, and with the folder as it was given in front.
    ///@{
    BasicString<wchar_t> name;
    BasicString<wchar_t> path;
    ///@}
    /// The platform's `FILE_ATTRIBUTE_` bits.
    unsigned long attributes = 0;
    /// In bytes; 0 for folders.
    unsigned long long size = 0;
    /// As far as the file system keeps them.
    ///@{
    Time creationTime;
    Time lastAccessTime;
    Time lastWriteTime;
    ///@}
    /// A symbolic link or a junction, whatever it leads to.
    bool isLink = false;
    /// 0 in the folder that is walked.
    unsigned depth = 0;

    /// Also for a link to a folder.
    bool isFolder() const { return (attributes & 0x10) != 0; }
};

/// Which entries a FolderWalk gives.
struct WalkOptions {
    /// Also what is in the folders inside, each right behind its folder.
    bool recursive = false;
    /// Links to folders are walked like folders, but for one that leads back to where the walk came from.
    bool followLinks = false;
    /// A folder that may not be read is passed over, where the walk would throw. Not the outermost.
    bool skipUnreadable = false;
};

/// The files and folders in a folder, in no promised order:
///
///     for (const FolderEntry& entry : FolderWalk(L"C:\\Data", WalkOptions{.recursive = true}))
///         if (!entry.isFolder())
///             total += entry.size;
///
/// Reads while it goes, so that what changes meanwhile may be seen or not. Paths may be of any length. Throws
/// WindowsError "Can't read folder "PATH"", and as WindowsFile::getFullPath() does.
class TARN_API FolderWalk {
public:
    class Iterator;

    /// Throws at once when the folder cannot be read.
    explicit FolderWalk(const wchar_t* folder, const WalkOptions& options = {});
    /// The source is at its end.
    ///@{
    FolderWalk(FolderWalk&& other) noexcept;
    FolderWalk& operator=(FolderWalk&& other) noexcept;
    ///@}
    ~FolderWalk();

    /// Goes on to the next entry, before the first one, too; false when there is none.
    bool next();
    /// Where the walk is; valid until next().
    const FolderEntry& getEntry() const;
    /// Does not enter the folder where the walk is.
    void skipFolder();

    /// For a loop over all: goes on from where the walk is.
    ///@{
    inline Iterator begin();
    std::default_sentinel_t end() const { return {}; }
    ///@}

private:
    class Search;

    std::unique_ptr<Search> search_;
};

/// Reads one entry after the other, as often as the walk does: once.
class FolderWalk::Iterator {
public:
    /// What the standard asks of an input iterator.
    ///@{
    using value_type = FolderEntry;
    using difference_type = std::ptrdiff_t;

    explicit Iterator(FolderWalk& walk) : walk_(walk.next() ? &walk : nullptr) {}
    const FolderEntry& operator*() const { return walk_->getEntry(); }
    const FolderEntry* operator->() const { return &walk_->getEntry(); }
    Iterator& operator++()
    {
        if (!walk_->next())
            walk_ = nullptr;
        return *this;
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const { return !walk_; }
    ///@}

private:
    FolderWalk* walk_;
};

FolderWalk::Iterator FolderWalk::begin() { return Iterator(*this); }
} // namespace tarn
