#include <tarn/FolderWalk.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "FoundEntries.h"
#include "LongPath.h"
#include "OpenShared.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tarn {
static_assert(FILE_ATTRIBUTE_DIRECTORY == 0x10);
static_assert(std::input_iterator<FolderWalk::Iterator>);

namespace {
// Tells a folder from all others, whatever names lead to it.
struct FolderIdentity {
    DWORD volume = 0, high = 0, low = 0;
    bool operator==(const FolderIdentity&) const = default;
};

FolderIdentity identityOf(const BasicString<wchar_t>& path, const BasicString<wchar_t>& shown)
{
    const auto failed = [&] { return "Can't read folder " + quoted(shown.c_str()); };
    const FreshHandle folder = openShared(path, FILE_READ_ATTRIBUTES, failed);
    BY_HANDLE_FILE_INFORMATION info{};
    ensure(GetFileInformationByHandle(folder.get(), &info), failed);
    return {info.dwVolumeSerialNumber, info.nFileIndexHigh, info.nFileIndexLow};
}
} // namespace

// The folders that are open: the one where the walk is, and those around it.
class FolderWalk::Search {
public:
    Search(const wchar_t* folder, const WalkOptions& options)
        : options_(options), shown_(withoutSeparator(folder)), opened_(withoutSeparator(longPath(folder)))
    {
        enter();
    }

    bool next()
    {
        if (std::exchange(entering_, false))
            enterFolder();
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.entries.next(entry_)) {
                take(level);
                return true;
            }
            levels_.pop_back();
        }
        return false;
    }

    const FolderEntry& getEntry() const { return entry_; }
    void skipFolder() { entering_ = false; }

private:
    struct Level {
        FoundEntries entries;
        FolderIdentity identity; // Where links are followed.
        std::size_t shownLength, openedLength;
    };

    void take(const Level& level)
    {
        shown_.resize(level.shownLength);
        opened_.resize(level.openedLength);
        (shown_ += L'\\') += entry_.name.c_str();
        (opened_ += L'\\') += entry_.name.c_str();
        entry_.path = shown_;
        entry_.depth = static_cast<unsigned>(levels_.size() - 1);
        entering_ = options_.recursive && entry_.isFolder() && (!entry_.isLink || options_.followLinks);
    }

    void enterFolder()
    {
        try {
            enter();
        } catch (const WindowsError&) {
            if (!options_.skipUnreadable)
                throw;
        }
    }

    void enter()
    {
        FolderIdentity identity;
        if (options_.followLinks) {
            identity = identityOf(opened_, shown_);
            const auto isSame = [&](const Level& level) { return level.identity == identity; };
            if (std::any_of(levels_.begin(), levels_.end(), isSame))
                return;
        }
        levels_.push_back({FoundEntries(opened_, shown_), identity, shown_.size(), opened_.size()});
    }

    const WalkOptions options_;
    BasicString<wchar_t> shown_, opened_; // The path where the walk is, as it was given and for the platform.
    std::vector<Level> levels_;
    FolderEntry entry_;
    bool entering_ = false; // The entry is a folder to be walked next.
};

FolderWalk::FolderWalk(const wchar_t* folder, const WalkOptions& options)
    : search_(std::make_unique<Search>(folder, options))
{
}
FolderWalk::FolderWalk(FolderWalk&& other) noexcept = default;
FolderWalk& FolderWalk::operator=(FolderWalk&& other) noexcept = default;
FolderWalk::~FolderWalk() = default;

bool FolderWalk::next() { return search_ && search_->next(); }
const FolderEntry& FolderWalk::getEntry() const { return search_->getEntry(); }
void FolderWalk::skipFolder() { search_->skipFolder(); }
} // namespace tarn
