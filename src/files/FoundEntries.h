#pragma once

#include <tarn/FolderWalk.h>
#include <tarn/Windows.h>

#include <memory>

namespace tarn {
struct CloseSearch {
    void operator()(void* search) const { FindClose(search); }
};

/// All but name, path and depth.
void fillIn(FolderEntry& entry, const WIN32_FIND_DATAW& data);

/// The entries of one folder, one after the other, without "." and "..".
class FoundEntries {
public:
    /// `opened` is the path for the platform, `shown` that for messages. Throws "Can't read folder "PATH"".
    FoundEntries(const BasicString<wchar_t>& opened, const BasicString<wchar_t>& shown);

    /// Fills in all but path and depth. False at the end. Throws as the constructor.
    bool next(FolderEntry& entry);

private:
    WIN32_FIND_DATAW data_{};
    bool isFresh_ = false; // The data have not been given yet.
    std::unique_ptr<void, CloseSearch> search_;
    BasicString<wchar_t> shown_;
};
} // namespace tarn
