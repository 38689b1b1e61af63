#include "DeleteTree.h"

#include <tarn/Windows.h>

#include "../foundation/LastErrorKept.h"
#include "../foundation/NativeCall.h"
#include "../system/FreshHandle.h"
#include "FoundEntries.h"
#include "LongPath.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn {
namespace {
using Path = BasicString<wchar_t>;

constexpr DWORD linkItself = FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS;

FreshHandle openEntry(const Path& path, DWORD access, DWORD share)
{
    void* const handle = CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, linkItself, nullptr);
    return FreshHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

bool isRealFolder(const FreshHandle& folder)
{
    BY_HANDLE_FILE_INFORMATION info{};
    return GetFileInformationByHandle(folder.get(), &info) && !(info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

// Wine shows a link to a file as that file, and in place of a link it deletes what the link leads to.
bool linksAreHidden()
{
    static const bool hidden = GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
    return hidden;
}

// Opens an entry of an open folder, which spares Wine the way to it: for links that are hidden, each file has to be
// open before it is deleted.
FreshHandle openInFolder(const FreshHandle& folder, std::wstring_view name, DWORD access, DWORD share)
{
    CountedName counted(name);
    OBJECT_ATTRIBUTES attributes = below(folder.get(), counted, OBJ_CASE_INSENSITIVE);
    IO_STATUS_BLOCK ignored{};
    HANDLE handle = nullptr;
    const DWORD error = callNative<HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*, IO_STATUS_BLOCK*, ULONG, ULONG>(
        "NtOpenFile", &handle, access | SYNCHRONIZE, &attributes, &ignored, share,
        FILE_SYNCHRONOUS_IO_NONALERT | FILE_OPEN_REPARSE_POINT | FILE_OPEN_FOR_BACKUP_INTENT);
    if (error == ERROR_SUCCESS)
        return FreshHandle(handle);
    SetLastError(error);
    return {};
}

bool deleteOpen(const FreshHandle& entry)
{
    FILE_DISPOSITION_INFO deleted{TRUE};
    return SetFileInformationByHandle(entry.get(), FileDispositionInfo, &deleted, sizeof deleted);
}

// What is read-only has to be writable for it, and a file may have another name outside of the tree.
bool deleteReadOnly(const FreshHandle& entry)
{
    FILE_BASIC_INFO basic{};
    GetFileInformationByHandleEx(entry.get(), FileBasicInfo, &basic, sizeof basic);
    FILE_BASIC_INFO writable{};
    writable.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    SetFileInformationByHandle(entry.get(), FileBasicInfo, &writable, sizeof writable);
    const bool deleted = deleteOpen(entry);
    const LastErrorKept kept;
    SetFileInformationByHandle(entry.get(), FileBasicInfo, &basic, sizeof basic);
    return deleted;
}

constexpr DWORD toDelete = DELETE | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES;
constexpr DWORD sharedWithAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Keeps no frame of the stack for a level, since a tree may have 16,000 of them.
class TreeDeletion {
public:
    TreeDeletion(Path folder, DeletionFailure& failure, const std::function<bool(const wchar_t*)>& goOn)
        : path_(std::move(folder)), failure_(failure), goOn_(goOn)
    {
    }

    bool run()
    {
        enter();
        while (!levels_.empty() && !ended_) {
            path_.resize(levels_.back().pathLength);
            if (levels_.back().folders.empty())
                leave();
            else {
                path_ += L'\\' + levels_.back().folders.back();
                levels_.back().folders.pop_back();
                enter();
            }
        }
        return !ended_;
    }

private:
    struct Level {
        FreshHandle folder;
        std::wstring name; // As the platform tells it for the handle, and only where links are hidden.
        std::size_t pathLength;
        std::vector<Path> folders; // Inside, to be visited.
    };

    // Deletes the files of the folder and notes its folders.
    void enter()
    {
        // Open without FILE_SHARE_DELETE, so that nobody can put a link in its place meanwhile.
        FreshHandle folder = openEntry(path_, FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE);
        if (!folder || !isRealFolder(folder)) {
            noteFailure();
            return;
        }
        std::wstring name = linksAreHidden() ? std::wstring(nameOf(folder)) : std::wstring();
        levels_.push_back({std::move(folder), std::move(name), path_.size(), {}});

        WIN32_FIND_DATAW entry;
        void* const first = FindFirstFileExW((path_ + L"\\*").c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch,
                                             nullptr, FIND_FIRST_EX_LARGE_FETCH);
        if (first == INVALID_HANDLE_VALUE) {
            noteFailure();
            return;
        }
        const std::unique_ptr<void, CloseSearch> search(first);
        const std::size_t length = path_.size();
        do {
            visit(entry);
        } while (!ended_ && FindNextFileW(first, &entry));
        path_.resize(length);
        if (!ended_ && GetLastError() != ERROR_NO_MORE_FILES)
            noteFailure();
    }

    void visit(const WIN32_FIND_DATAW& entry)
    {
        const std::wstring_view name = entry.cFileName;
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if (isFolder && !isLink) {
            if (name != L"." && name != L"..")
                levels_.back().folders.emplace_back(entry.cFileName);
            return;
        }
        path_.resize(levels_.back().pathLength);
        (path_ += L'\\') += name;
        if (!goesOn())
            return;
        if (linksAreHidden() || !(isFolder ? RemoveDirectoryW(path_.c_str()) : DeleteFileW(path_.c_str())))
            deleteByHandle(name, (entry.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0);
    }

    void deleteByHandle(std::wstring_view name, bool readOnly)
    {
        const FreshHandle entry = linksAreHidden() ? openInFolder(levels_.back().folder, name, toDelete, sharedWithAll)
                                                   : openEntry(path_, toDelete, sharedWithAll);
        if (!entry || (linksAreHidden() && leadsElsewhere(entry, name)) ||
            !(readOnly ? deleteReadOnly(entry) : deleteOpen(entry)))
            noteFailure();
    }

    // A link that is hidden has opened what it leads to.
    bool leadsElsewhere(const FreshHandle& entry, std::wstring_view name)
    {
        const std::wstring& folder = levels_.back().name;
        SetLastError(ERROR_NOT_SUPPORTED); // For the case that the name can be had, and is another.
        const std::wstring_view opened = nameOf(entry);
        return opened.size() != folder.size() + 1 + name.size() || !opened.starts_with(folder) ||
               !opened.ends_with(name);
    }

    std::wstring_view nameOf(const FreshHandle& entry)
    {
        auto* const info = reinterpret_cast<FILE_NAME_INFO*>(nameBuffer_.data());
        if (!GetFileInformationByHandleEx(entry.get(), FileNameInfo, info, static_cast<DWORD>(nameBuffer_.size())))
            return {};
        return {info->FileName, info->FileNameLength / sizeof(wchar_t)};
    }

    void noteFailure()
    {
        const DWORD error = GetLastError();
        if (failure_.error == ERROR_SUCCESS)
            failure_ = {path_, error};
    }

    bool goesOn()
    {
        ended_ = goOn_ && !goOn_(path_.c_str());
        return !ended_;
    }

    void leave()
    {
        levels_.pop_back();
        if (!goesOn())
            return;
        if (RemoveDirectoryW(path_.c_str()))
            return;
        const FreshHandle folder = openEntry(path_, toDelete, sharedWithAll);
        if (!folder || !deleteReadOnly(folder))
            noteFailure();
    }

    static constexpr std::size_t longestName = 32'768;

    Path path_;
    DeletionFailure& failure_;
    const std::function<bool(const wchar_t*)>& goOn_;
    bool ended_ = false;
    std::vector<Level> levels_;
    std::vector<char> nameBuffer_ = std::vector<char>(sizeof(FILE_NAME_INFO) + longestName * sizeof(wchar_t));
};
} // namespace

bool deleteTree(const wchar_t* folder, DeletionFailure& failure, const std::function<bool(const wchar_t*)>& goOn)
{
    return TreeDeletion(longPath(folder), failure, goOn).run();
}
} // namespace tarn
