#include <tarn/FolderWatch.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "../system/AsyncFile.h"
#include "LongPath.h"
#include "OpenShared.h"

#include <cstddef>
#include <utility>

namespace tarn {
namespace {
constexpr DWORD bufferSize = 64 * 1024; // More is refused for a folder of another machine.

FreshHandle openToWatch(const wchar_t* folder)
{
    return openShared(
        longPath(folder), FILE_LIST_DIRECTORY, [&] { return "Can't watch folder " + quoted(folder); },
        FILE_FLAG_OVERLAPPED);
}
} // namespace

// A read is always under way, so that the platform notes what happens. Of the two buffers one is being filled.
class FolderWatch::Watch {
public:
    Watch(const wchar_t* folder, bool recursive)
        : recursive_(recursive), folder_(openToWatch(folder), "Can't watch folder")
    {
        begin();
    }

    void* getEvent() const { return folder_.getEvent(); }

    std::vector<FolderChange> getChanges(unsigned timeoutMs)
    {
        std::vector<FolderChange> changes;
        const Deadline deadline(timeoutMs);
        if (!folder_.isPending()) // After a failure, which is told again if it lasts.
            begin();
        constexpr int mostReads = 16; // What happens without a pause is no reason never to return.
        while (changes.empty() && folder_.wait(deadline)) {
            for (int reads = 0; reads < mostReads && folder_.isReady(); ++reads) {
                const unsigned size = folder_.finish();
                std::swap(filling_, filled_);
                begin();
                if (size == 0)
                    noteLoss(changes);
                else
                    read(changes);
            }
        }
        return changes;
    }

private:
    void begin() { folder_.beginWatch(filling_.data(), bufferSize, recursive_); }

    void noteLoss(std::vector<FolderChange>& changes)
    {
        oldName_.clear();
        changes.push_back({});
    }

    void read(std::vector<FolderChange>& changes)
    {
        for (const char* at = reinterpret_cast<const char*>(filled_.data());;) {
            const auto& record = *reinterpret_cast<const FILE_NOTIFY_INFORMATION*>(at);
            note(record.Action,
                 BasicString<wchar_t>(record.FileName, record.FileNameLength / static_cast<DWORD>(sizeof(wchar_t))),
                 changes);
            if (record.NextEntryOffset == 0)
                return;
            at += record.NextEntryOffset;
        }
    }

    void note(DWORD action, const BasicString<wchar_t>& name, std::vector<FolderChange>& changes)
    {
        switch (action) {
        case FILE_ACTION_ADDED:
            changes.push_back({FolderChange::added, name});
            break;
        case FILE_ACTION_REMOVED:
            changes.push_back({FolderChange::removed, name});
            break;
        case FILE_ACTION_MODIFIED:
            changes.push_back({FolderChange::modified, name});
            break;
        case FILE_ACTION_RENAMED_OLD_NAME: // The new name follows, perhaps with the next read.
            oldName_ = name;
            break;
        case FILE_ACTION_RENAMED_NEW_NAME:
            changes.push_back({FolderChange::renamed, name, std::exchange(oldName_, {})});
            break;
        }
    }

    const bool recursive_;
    BasicString<wchar_t> oldName_;
    std::vector<DWORD> filling_ = std::vector<DWORD>(bufferSize / sizeof(DWORD));
    std::vector<DWORD> filled_ = std::vector<DWORD>(bufferSize / sizeof(DWORD));
    AsyncFile folder_; // Last, because it ends what writes into the buffers.
};

FolderWatch::FolderWatch(const wchar_t* folder, bool recursive) : watch_(std::make_unique<Watch>(folder, recursive)) {}
FolderWatch::FolderWatch(FolderWatch&& other) noexcept = default;
FolderWatch& FolderWatch::operator=(FolderWatch&& other) noexcept = default;
FolderWatch::~FolderWatch() = default;

std::vector<FolderChange> FolderWatch::getChanges(unsigned timeoutMs) { return watch_->getChanges(timeoutMs); }
void* FolderWatch::getEvent() const { return watch_->getEvent(); }
} // namespace tarn
