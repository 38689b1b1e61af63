#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

#include <memory>
#include <vector>

namespace tarn {
/// Something that has happened in a watched folder.
struct FolderChange {
    /// `lost` says that more happened than the platform could keep, so that the folder has to be looked through.
    enum kind { added, removed, modified, renamed, lost };
    /// Which of them it is.
    kind what = lost;
    /// Below the watched folder; empty for what was lost.
    BasicString<wchar_t> name = {};
    /// Where something was renamed, the name that it had.
    BasicString<wchar_t> oldName = {};
};

/// Tells what happens to the files and folders in a folder, from its construction on: nothing between two calls is
/// missed without `lost` saying so.
///
/// A program that writes a file is seen as several modifications, the first of them while it is writing. What is moved
/// into another folder is removed and added. One thread at a time uses an object. Throws WindowsError "Can't watch
/// folder "PATH"" and, later, "Can't watch folder", when it is deleted, for instance.
class TARN_API FolderWatch {
public:
    /// With `recursive` also in the folders inside.
    explicit FolderWatch(const wchar_t* folder, bool recursive = true);
    /// The source is good for nothing then.
    ///@{
    FolderWatch(FolderWatch&& other) noexcept;
    FolderWatch& operator=(FolderWatch&& other) noexcept;
    ///@}
    ~FolderWatch();

    /// Waits until something has happened, and gives what there is; nothing when the time is up.
    std::vector<FolderChange> getChanges(unsigned timeoutMs);
    /// Signaled when getChanges(0) has something, to wait for it with other handles. Lent.
    void* getEvent() const;

private:
    class Watch;

    std::unique_ptr<Watch> watch_;
};
} // namespace tarn
