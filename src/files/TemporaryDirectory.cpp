#include <tarn/TemporaryDirectory.h>

#include <tarn/Exception.h>
#include <tarn/Windows.h>
#include <tarn/WindowsFile.h>

#include "../foundation/Throw.h"
#include "../foundation/Quoted.h"

#include <cerrno>
#include <cstdlib>
#include <memory>

#include <shellapi.h>

namespace tarn {
static_assert(sizeof(TemporaryDirectory) == sizeof(BasicString<wchar_t>));

namespace {
struct FreeText {
    void operator()(wchar_t* text) const { std::free(text); }
};

struct CloseSearch {
    void operator()(void* search) const { FindClose(search); }
};

// Deletes the links to other folders that lie in a folder, at any depth; false when one of them stays.
bool deleteLinks(const BasicString<wchar_t>& folder)
{
    WIN32_FIND_DATAW entry;
    void* const first = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (first == INVALID_HANDLE_VALUE)
        return true;
    const std::unique_ptr<void, CloseSearch> search(first);
    bool all = true;
    do {
        const BasicString<wchar_t> name = entry.cFileName;
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) || name == L"." || name == L"..")
            continue;
        const BasicString<wchar_t> path = folder + L'\\' + name;
        const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        all = (isLink ? RemoveDirectoryW(path.c_str()) : deleteLinks(path)) && all;
    } while (FindNextFileW(first, &entry));
    return all;
}

void deleteTree(BasicString<wchar_t> path)
{
    // Not every shell stops at a link, and what it leads to is not ours.
    if (!deleteLinks(path))
        return;
    path.push_back(L'\0'); // A list of names, which an empty one ends.
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = path.c_str();
    operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION;
    SHFileOperationW(&operation);
}
} // namespace

BasicString<wchar_t> TemporaryDirectory::getTemporaryName(const wchar_t* directory, const wchar_t* prefix)
{
    const std::unique_ptr<wchar_t, FreeText> name(StringHelper<wchar_t>::tempnam(directory, prefix));
    if (!name)
        throwError(CRTError(errno, "Can't create temporary name"));
    return name.get();
}

TemporaryDirectory::TemporaryDirectory(const wchar_t* directory, const wchar_t* prefix)
    : path_(WindowsFile::getFullPath(getTemporaryName(directory, prefix).c_str()))
{
    if (StringHelper<wchar_t>::mkdir(path_.c_str()) != 0) {
        const int error = errno;
        throwError(CRTError(error, "Can't create temporary directory " + quoted(path_.c_str())));
    }
}

TemporaryDirectory::~TemporaryDirectory()
{
    if (path_.empty())
        return;
    try {
        deleteTree(path_);
    } catch (...) { // Without memory the folder stays.
    }
}
} // namespace tarn
