#include "FoundEntries.h"

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"

#include <string_view>

namespace tarn {
namespace {
[[noreturn]] void throwUnreadable(const BasicString<wchar_t>& folder)
{
    throwLastError([&] { return "Can't read folder " + quoted(folder.c_str()); });
}

// Only a name surrogate leads elsewhere: files that are kept in the cloud are reparse points, too.
bool isLink(const WIN32_FIND_DATAW& data)
{
    return (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) && IsReparseTagNameSurrogate(data.dwReserved0);
}
} // namespace

void fillIn(FolderEntry& entry, const WIN32_FIND_DATAW& data)
{
    entry.attributes = data.dwFileAttributes;
    entry.size = static_cast<unsigned long long>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    entry.creationTime = Time::fromFileTime(data.ftCreationTime);
    entry.lastAccessTime = Time::fromFileTime(data.ftLastAccessTime);
    entry.lastWriteTime = Time::fromFileTime(data.ftLastWriteTime);
    entry.isLink = isLink(data);
}

FoundEntries::FoundEntries(const BasicString<wchar_t>& opened, const BasicString<wchar_t>& shown) : shown_(shown)
{
    void* const search = FindFirstFileExW((opened + L"\\*").c_str(), FindExInfoBasic, &data_, FindExSearchNameMatch,
                                          nullptr, FIND_FIRST_EX_LARGE_FETCH);
    isFresh_ = search != INVALID_HANDLE_VALUE;
    if (isFresh_)
        search_.reset(search);
    else if (GetLastError() != ERROR_FILE_NOT_FOUND) // Which an empty root folder says.
        throwUnreadable(shown_);
}

bool FoundEntries::next(FolderEntry& entry)
{
    while (search_) {
        if (!isFresh_ && !FindNextFileW(search_.get(), &data_)) {
            if (GetLastError() != ERROR_NO_MORE_FILES)
                throwUnreadable(shown_);
            search_.reset();
            break;
        }
        isFresh_ = false;
        const std::wstring_view name = data_.cFileName;
        if (name == L"." || name == L"..")
            continue;
        entry.name = data_.cFileName;
        fillIn(entry, data_);
        return true;
    }
    return false;
}
} // namespace tarn
